#include "tools/render/PluginRunner.h"

#include <algorithm>
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
    PluginRunner::Pointers<float> outputs{};
    std::ranges::transform(sound, outputs.begin(), [](auto& channel) { return channel.data(); });
    runner.Process({}, outputs, Length);
    return sound;
}

TEST(PluginRunner, BeginsAtTheSetValuesInsteadOfMovingThere)
{
    PluginRunner runner;
    ParameterSettings(runner).SetText("Wet", "-40 dB");
    runner.Start(1, Rate, Length);
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
        if (row.channels > 2)
            runner.GetPlugin().SetChannelMode(MChannelMode::Surround);
        runner.Start(row.channels, Rate, Length);
        const std::uint8_t noteOn[] = {0x90, 57, 100};
        const std::uint8_t wheel[] = {0xE0, 0, 0};
        runner.Send(noteOn);
        runner.Send(wheel);
        const auto hz = meter.Measure(Play(runner, row.channels)[0], Rate);
        ASSERT_TRUE(hz) << row.what;
        EXPECT_NEAR(*hz / ExpectedPitch(runner, row.channels).Hz(57, -1.0), 1.0, 1e-7) << row.what;
    }
}

TEST(PluginRunner, TellsWhereTheHostPlays)
{
    PluginRunner runner;
    runner.Start(1, Rate, Length);
    Play(runner, 1);
    EXPECT_FALSE(runner.GetPlugin().GetTime().playing) << "nothing unless told";
    EXPECT_EQ(runner.GetPlugin().GetTime().tempo, 0.0);

    runner.SetTempo(200.0);
    runner.Start(1, Rate, Length);
    const MAudioPluginTime& time = runner.GetPlugin().GetTime();
    EXPECT_TRUE(time.playing && time.transportChanged);
    EXPECT_EQ(time.position, 0.0);
    for (int block = 0; block < 3; ++block)
        Play(runner, 1);
    EXPECT_FALSE(time.transportChanged);
    EXPECT_EQ(time.tempo, 200.0);
    EXPECT_NEAR(time.position, 5.0, 1e-12) << "1.5 s";
    EXPECT_EQ(time.barStart, 4.0);
    EXPECT_NEAR(runner.GetPlugin().GetEventTime(14400), 6.0, 1e-12) << "0.3 s later";
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
