#include "shell/MTargetRange.h"

#include <gtest/gtest.h>

namespace
{

TEST(MTargetRange, EachModeAtItsEndsAndBetween)
{
    using enum MTargetRange::Mode;
    struct Case
    {
        MTargetRange::Mode mode;
        double value, maxValue, range;
        double atLow, atCentre, atHigh; ///< moving -1, 0 and 1
    };
    constexpr Case Cases[] = {
        {UpAndDown, 0.5, 1.0, 0.4, 0.3, 0.5, 0.7},
        {UpAndDown, 0.1, 1.0, 1.0, 0.0, 0.1, 0.2}, // squeezed by the low end
        {UpAndDown, 0.75, 1.0, 1.0, 0.5, 0.75, 1.0},
        {FullRange, 0.5, 1.0, 0.4, 0.3, 0.5, 0.7},
        {FullRange, 0.1, 1.0, 0.5, 0.0, 0.25, 0.5}, // the centre gives way
        {FullRange, 0.9, 1.0, 0.5, 0.5, 0.75, 1.0},
        {UpOnly, 0.25, 1.0, 0.5, 0.25, 0.5, 0.75},
        {UpOnly, 0.5, 1.0, 1.0, 0.5, 0.75, 1.0},
        {DownOnly, 0.75, 1.0, 0.5, 0.75, 0.5, 0.25},
        {DownOnly, 0.5, 1.0, 1.0, 0.5, 0.25, 0.0},
        {Interval, 0.25, 0.75, 0.1, 0.25, 0.5, 0.75},
        {Interval, 0.75, 0.25, 0.1, 0.75, 0.5, 0.25},
        {static_cast<MTargetRange::Mode>(9), 0.3, 1.0, 1.0, 0.3, 0.3, 0.3},
    };
    for (const Case& row : Cases)
    {
        MTargetRange target{.value = row.value,
                            .maxValue = row.maxValue,
                            .range = row.range,
                            .mode = row.mode,
                            .isInverted = false};
        const auto what = &row - Cases;
        EXPECT_NEAR(target.Map(-1.0), row.atLow, 1e-15) << what;
        EXPECT_NEAR(target.Map(0.0), row.atCentre, 1e-15) << what;
        EXPECT_NEAR(target.Map(1.0), row.atHigh, 1e-15) << what;
        target.isInverted = true;
        EXPECT_NEAR(target.Map(1.0), row.atLow, 1e-15) << what;
    }
}

} // namespace
