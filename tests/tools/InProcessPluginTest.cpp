#include "tools/render/InProcessPlugin.h"

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

Channels Play(InProcessPlugin& plugin, int channels)
{
    Channels sound(static_cast<std::size_t>(channels), std::vector<float>(Length));
    std::vector<float*> outputs(sound.size());
    std::ranges::transform(sound, outputs.begin(), [](auto& channel) { return channel.data(); });
    plugin.Process({}, outputs, Length);
    return sound;
}

TEST(InProcessPlugin, BeginsAtTheSetValuesInsteadOfMovingThere)
{
    InProcessPlugin plugin;
    ParameterSettings(plugin).SetText("Wet", "-40 dB");
    plugin.Start(1, Rate, Length);
    const Channels sound = Play(plugin, 1);
    for (int i = 0; i < 1000; ++i)
        EXPECT_LE(std::abs(sound[0][static_cast<std::size_t>(i)]), 0.01001f) << i;
}

TEST(InProcessPlugin, PlaysThePitchThatTheParametersAskFor)
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
        InProcessPlugin plugin;
        ParameterSettings settings(plugin);
        for (const auto& [name, text] : row.settings)
            settings.SetText(name, text);
        if (row.channels > 2)
            plugin.GetShell().SetChannelMode(MChannelMode::Surround);
        plugin.Start(row.channels, Rate, Length);
        const std::uint8_t noteOn[] = {0x90, 57, 100};
        const std::uint8_t wheel[] = {0xE0, 0, 0};
        plugin.Send(noteOn, 0);
        plugin.Send(wheel, 0);
        const auto hz = meter.Measure(Play(plugin, row.channels)[0], Rate);
        ASSERT_TRUE(hz) << row.what;
        EXPECT_NEAR(*hz / ExpectedPitch(plugin, row.channels).Hz(57, -1.0), 1.0, 1e-7) << row.what;
    }
}

TEST(InProcessPlugin, TellsWhereTheHostPlays)
{
    InProcessPlugin plugin;
    plugin.Start(1, Rate, Length);
    Play(plugin, 1);
    EXPECT_FALSE(plugin.GetShell().GetTime().playing) << "nothing unless told";
    EXPECT_EQ(plugin.GetShell().GetTime().tempo, 0.0);

    plugin.SetTempo(200.0);
    plugin.Start(1, Rate, Length);
    const MAudioPluginTime& time = plugin.GetShell().GetTime();
    EXPECT_TRUE(time.playing && time.transportChanged);
    EXPECT_EQ(time.position, 0.0);
    for (int block = 0; block < 3; ++block)
        Play(plugin, 1);
    EXPECT_FALSE(time.transportChanged);
    EXPECT_EQ(time.tempo, 200.0);
    EXPECT_NEAR(time.position, 5.0, 1e-12) << "1.5 s";
    EXPECT_EQ(time.barStart, 4.0);
    EXPECT_NEAR(plugin.GetShell().GetEventTime(14400), 6.0, 1e-12) << "0.3 s later";
}

TEST(ExpectedPitch, FollowsConcertPitch)
{
    InProcessPlugin plugin;
    EXPECT_DOUBLE_EQ(ExpectedPitch(plugin, 1).Hz(69, 0.0), 440.0);
    EXPECT_DOUBLE_EQ(ExpectedPitch(plugin, 1).Hz(57, 1.0), 220.0 * std::exp2(2.0 / 12.0));
    ParameterSettings(plugin).SetText("Frequency", "1000 Hz");
    EXPECT_DOUBLE_EQ(ExpectedPitch(plugin, 1).Hz(57, 0.0), 1000.0);
}

} // namespace
