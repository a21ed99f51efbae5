#include "dsp/kernels/RealFFT.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"

namespace
{

using namespace kernels;

TEST(RealFFTAllocations, NoneButForTheConstruction)
{
    std::vector<float> time(RealFFT::MaxSize, 0.5f);
    std::vector<Complex> spectrum(RealFFT::MaxSize / 2 + 1);
    for (const int size : {16, 32, 4096, 65536}) // even and odd powers of two
    {
        if (CanCountAllocations())
        {
            EXPECT_GE(AllocationsOf([size] { const RealFFT fft(size); }), 3)
                << "those in shared libraries have to be seen";
            EXPECT_EQ(AllocationsOf([size] { const RealFFT fft(size); }), 2)
                << "what can be shared has to be there by now";
        }
        RealFFT fft(size);
        EXPECT_EQ(AllocationsOf(
                      [&]
                      {
                          fft.Forward(time.data(), spectrum.data());
                          fft.Inverse(spectrum.data(), time.data());
                      }),
                  0)
            << size;
    }
}

} // namespace
