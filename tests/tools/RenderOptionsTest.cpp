#include "tools/render/RenderOptions.h"

#include <gtest/gtest.h>

namespace
{

RenderOptions Parse(const std::vector<const char*>& arguments)
{
    std::vector<const char*> line = {"tonvale-render"};
    for (const char* const argument : arguments)
        line.push_back(argument);
    return RenderOptions::Parse(static_cast<int>(line.size()), line.data());
}

TEST(RenderOptions, KeepsSettingsInTheirOrder)
{
    const RenderOptions options = Parse({"--set", "A=1 = one", "--set01=B=0.25", "a.wav", "--set",
                                         "A=2", "--set01", "A=1", "--set", "C=-3 dB"});
    ASSERT_EQ(options.settings.size(), 5u);
    EXPECT_EQ(options.settings[0].name, "A");
    EXPECT_EQ(options.settings[0].text, "1 = one");
    EXPECT_FALSE(options.settings[0].value01);
    EXPECT_EQ(options.settings[1].name, "B");
    EXPECT_EQ(options.settings[1].value01, 0.25);
    EXPECT_EQ(options.settings[2].text, "2");
    EXPECT_EQ(options.settings[3].name, "A");
    EXPECT_EQ(options.settings[3].value01, 1.0);
    EXPECT_EQ(options.settings[4].text, "-3 dB");
    EXPECT_EQ(options.output, "a.wav");
}

TEST(RenderOptions, TakesTheFileInAnyPlace)
{
    for (const auto& arguments : std::vector<std::vector<const char*>>{
             {"a.wav", "--note", "60", "--note", "64"},
             {"--note", "60", "a.wav", "--note", "64"},
             {"--note", "60", "--note", "64", "a.wav"},
             {"--note", "60", "--note", "64", "--", "a.wav"},
         })
    {
        const RenderOptions options = Parse(arguments);
        EXPECT_EQ(options.output, "a.wav");
        EXPECT_EQ(options.notes, (std::vector<int>{60, 64}));
    }
}

TEST(RenderOptions, TakesTheEndsOfEachRange)
{
    const RenderOptions least = Parse({"--note", "0", "--rate", "101", "--block", "1", "--channels",
                                       "1", "--seconds", "1e-9", "a.wav"});
    EXPECT_EQ(least.rate, 101);
    EXPECT_EQ(least.block, 1);
    EXPECT_EQ(least.channels, 1);
    EXPECT_EQ(least.seconds, 1e-9);
    const RenderOptions most = Parse({"--note", "127", "--rate", "6144000", "--block", "16777216",
                                      "--channels", "8", "--seconds", "86400", "a.wav"});
    EXPECT_EQ(most.rate, 6144000);
    EXPECT_EQ(most.block, 16777216);
    EXPECT_EQ(most.channels, 8);
    EXPECT_EQ(most.seconds, 86400.0);
}

TEST(RenderOptions, ReadsAutomationAndLeavesTheRestToTheState)
{
    const RenderOptions options =
        Parse({"--automate", "Shape smoothness:0=0,1.5=1", "--automate=Wet:2e1=.5",
               "--channel-mode", "mono + STEREO", "--no-hq", "--no-bypass", "a.wav"});
    ASSERT_EQ(options.automations.size(), 2u);
    EXPECT_EQ(options.automations[0].name, "Shape smoothness");
    ASSERT_EQ(options.automations[0].points.size(), 2u);
    EXPECT_EQ(options.automations[0].points[1].seconds, 1.5);
    EXPECT_EQ(options.automations[0].points[1].value01, 1.0);
    ASSERT_EQ(options.automations[1].points.size(), 1u);
    EXPECT_EQ(options.automations[1].points[0].seconds, 20.0);
    EXPECT_EQ(options.channelMode, MChannelMode::MonoStereo);
    EXPECT_EQ(options.isHighQuality, false);
    EXPECT_EQ(options.isBypassed, false);

    const RenderOptions plain = Parse({"a.wav"});
    EXPECT_FALSE(plain.channelMode || plain.upsampling || plain.isHighQuality || plain.isBypassed);
}

} // namespace
