#include "tools/render/PluginRunner.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "effect/MPluginParameterRecord.h"
#include "tools/render/ExpectedPitch.h"
#include "tools/render/FrequencyMeter.h"
#include "tools/render/ParameterSettings.h"

namespace
{

constexpr int Rate = 48000;
constexpr int Length = 24000;

using Channels = std::vector<std::vector<float>>;

Channels Play(PluginRunner& runner, int channels)
{
    Channels sound(static_cast<std::size_t>(channels), std::vector<float>(Length));
    const std::vector<const float*> inputs(static_cast<std::size_t>(channels), nullptr);
    std::vector<float*> outputs;
    for (std::vector<float>& channel : sound)
        outputs.push_back(channel.data());
    runner.Process(inputs.data(), outputs.data(), Length);
    return sound;
}

TEST(PluginRunner, BeginsAtTheSetValuesInsteadOfMovingThere)
{
    PluginRunner runner;
    ParameterSettings(runner).SetText("Wet", "-40 dB");
    runner.Start(1, Rate);
    const Channels sound = Play(runner, 1);
    for (int i = 0; i < 1000; ++i)
        EXPECT_LE(std::abs(sound[0][static_cast<std::size_t>(i)]), 0.01001f) << i;
}

TEST(PluginRunner, PlaysThePitchThatTheParametersAskFor)
{
    struct Case
    {
        const char* what;
        std::vector<std::pair<const char*, const char*>> settings;
        int channels;
    };
    const Case cases[] = {
        {"note alone", {}, 1},
        {"all pitch parameters",
         {{"Octaves", "1"}, {"Semitones", "-5"}, {"Cents", "33.3"}, {"Pitch", "2.34"}},
         2},
        {"frequency", {{"Frequency", "1234.5 Hz"}, {"Octaves", "-1"}}, 1},
        {"spread over one channel", {{"Width", "3"}}, 1},
        {"spread over two", {{"Width", "3"}}, 2},
        {"spread over five", {{"Width", "-7"}}, 5},
        {"spread over eight", {{"Width", "12"}}, 8},
    };
    FrequencyMeter meter;
    for (const Case& row : cases)
    {
        PluginRunner runner;
        ParameterSettings settings(runner);
        for (const auto& [name, text] : row.settings)
            settings.SetText(name, text);
        runner.Start(row.channels, Rate);
        const std::uint8_t noteOn[] = {0x90, 57, 100};
        const std::uint8_t wheel[] = {0xE0, 0, 0};
        runner.Send(noteOn);
        runner.Send(wheel);
        const auto hz = meter.Measure(Play(runner, row.channels)[0], Rate);
        ASSERT_TRUE(hz) << row.what;
        EXPECT_NEAR(*hz / ExpectedPitch(runner, row.channels).Hz(57, -1.0), 1.0, 1e-7) << row.what;
    }
}

TEST(ExpectedPitch, FollowsConcertPitch)
{
    PluginRunner runner;
    EXPECT_DOUBLE_EQ(ExpectedPitch(runner, 1).Hz(69, 0.0), 440.0);
    EXPECT_DOUBLE_EQ(ExpectedPitch(runner, 1).Hz(57, 1.0), 220.0 * std::exp2(2.0 / 12.0));
    ParameterSettings(runner).SetText("Frequency", "1000 Hz");
    EXPECT_DOUBLE_EQ(ExpectedPitch(runner, 1).Hz(57, 0.0), 1000.0);
}

} // namespace
