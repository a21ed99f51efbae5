#include "shell/modulators/MTunedPitchDetector.h"

#include <array>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace
{

constexpr double Rate = 48000.0; // Hz

/// What the detector last tells of a second of a sine of @p hz.
double Hear(MTunedPitchDetector& detector, double hz,
            const MModulatorPitchDetector::Settings& settings)
{
    constexpr int Samples = 480;
    std::array<float, Samples> block{};
    double told = 0.0;
    double phase = 0.0;
    for (int played = 0; played < static_cast<int>(Rate); played += Samples)
    {
        for (float& sample : block)
        {
            sample = static_cast<float>(0.5 * std::sin(2.0 * std::numbers::pi * phase));
            phase += hz / Rate;
        }
        told = detector.Process(block.data(), Samples, settings);
    }
    return told;
}

TEST(MTunedPitchDetector, PullsThePitchToANoteIfTold)
{
    constexpr double Sharp = 450.0; // Hz, 39 cents above 440
    MModulatorPitchDetector::Settings settings{
        .threshold = 0.01, .accuracy = 0.987, .isTuned = false, .tuneSpeed = 1.0, .tuneDepth = 1.0};
    MTunedPitchDetector detector;
    detector.SetSampleRate(Rate);
    EXPECT_NEAR(Hear(detector, Sharp, settings), Sharp, 0.5);
    settings.isTuned = true;
    EXPECT_NEAR(Hear(detector, Sharp, settings), 440.0, 0.5);
    settings.tuneDepth = 0.5;
    EXPECT_NEAR(Hear(detector, Sharp, settings), std::sqrt(440.0 * Sharp), 0.5);
    settings.threshold = 0.2; // above the mean square of the sine
    EXPECT_LT(Hear(detector, Sharp, settings), 20.0);
}

} // namespace
