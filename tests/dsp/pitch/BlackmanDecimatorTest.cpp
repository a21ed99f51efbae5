#include "dsp/pitch/BlackmanDecimator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace
{

/// In dB, of a cosine of @p frequency in shares of the lower rate.
double LevelBehind(int factor, double frequency)
{
    constexpr int Length = 200; ///< samples at the lower rate
    BlackmanDecimator decimator(factor);
    float peak = 1e-9f;
    for (int i = 0; i < Length * factor; ++i)
    {
        const auto sample =
            static_cast<float>(std::cos(2.0 * std::numbers::pi * frequency * i / factor));
        float output = 0.0f;
        EXPECT_EQ(decimator.GetInputsFor(1), (factor - i % factor) % factor + 1);
        EXPECT_EQ(decimator.Process(&output, &sample, 1), i % factor == 0 ? 1 : 0);
        if (i > 20 * factor)
            peak = std::max(peak, std::abs(output));
    }
    return 20.0 * std::log10(peak);
}

TEST(BlackmanDecimator, PassesWhatIsLowAndStopsWhatWouldFold)
{
    struct Case
    {
        double frequency;
        double least;
        double most; ///< dB
    };
    constexpr Case Cases[] = {{0.0, -0.001, 0.001}, {0.2, -0.1, 0.1},      {0.4, -6.3, -5.8},
                              {0.6, -200.0, -70.0}, {0.93, -200.0, -70.0}, {1.0, -200.0, -70.0}};
    for (const int factor : {2, 3, 8, 250})
        for (const Case& row : Cases)
        {
            const double level = LevelBehind(factor, row.frequency);
            EXPECT_GE(level, row.least) << factor << ", " << row.frequency;
            EXPECT_LE(level, row.most) << factor << ", " << row.frequency;
        }
}

} // namespace
