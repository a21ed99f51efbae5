#include "dsp/pitch/MPitchDetectorFFT.h"

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"

namespace
{

TEST(MPitchDetectorFFTAllocations, NoneButForTheRate)
{
    std::vector<float> saw(48000);
    for (std::size_t i = 0; i < saw.size(); ++i)
        saw[i] = static_cast<float>(i % 100) / 100.0f - 0.5f;
    MPitchDetectorFFT detector;
    detector.SetSampleRate(48000.0);
    double hz = 0.0;
    EXPECT_EQ(AllocationsOf(
                  [&]
                  {
                      detector.Reset();
                      hz = detector.Process(saw.data(), static_cast<int>(saw.size()));
                  }),
              0);
    EXPECT_NEAR(hz, 480.0, 0.1);
}

} // namespace
