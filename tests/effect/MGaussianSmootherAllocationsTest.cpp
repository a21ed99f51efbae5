#include "effect/MGaussianSmoother.h"

#include <array>
#include <memory>

#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"

namespace
{

TEST(MGaussianSmootherAllocations, NoneButForTheConstruction)
{
    if (CanCountAllocations())
    {
        EXPECT_GT(AllocationsOf([] { const MGaussianSmoother smoother; }), 0);
    }
    const auto smoother = std::make_unique<MGaussianSmoother>();
    std::array<float, MGaussianSmoother::CycleLength> cycle{0.5f};
    EXPECT_EQ(AllocationsOf(
                  [&]
                  {
                      for (const double request : {256.0, 256.0, 3.0, 30.0, 31.0, 0.0, 128.0})
                      {
                          smoother->SetHalfWidth(request);
                          smoother->Process(cycle);
                      }
                  }),
              0);
}

} // namespace
