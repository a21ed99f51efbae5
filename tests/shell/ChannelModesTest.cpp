#include "shell/ChannelModes.h"

#include <array>

#include <gtest/gtest.h>

namespace
{

using enum MChannelMode;

struct CountCase
{
    MChannelMode mode;
    std::array<int, 4> effectChannels; ///< of 1, 2, 3 and 8 channels
};

constexpr CountCase Counts[] = {
    {LeftRight, {1, 2, 2, 2}}, {Left, {1, 1, 1, 1}},
    {Right, {1, 1, 1, 1}},     {Mono, {1, 1, 1, 1}},
    {Stereo, {1, 1, 1, 1}},    {MonoStereo, {1, 2, 2, 2}},
    {Surround, {1, 2, 3, 8}},  {LeftRightNegative, {1, 2, 2, 2}},
};

TEST(ChannelModes, EffectsGetWhatTheModeWorksOn)
{
    constexpr std::array Channels = {1, 2, 3, 8};
    for (const CountCase& row : Counts)
        for (std::size_t i = 0; i < Channels.size(); ++i)
        {
            const MChannelModeInfo& info = MChannelModeInfo::Get(row.mode);
            EXPECT_EQ(info.CountEffectChannels(Channels[i]), row.effectChannels[i])
                << info.name << ", channels: " << Channels[i];
        }
}

TEST(ChannelModes, AreFoundByTheNamesThatStatesKeep)
{
    MChannelMode mode = LeftRight;
    EXPECT_TRUE(MChannelModeInfo::Find("Mono + Stereo", mode));
    EXPECT_EQ(mode, MonoStereo);
    EXPECT_TRUE(MChannelModeInfo::Find("Left + Right (neg)", mode));
    EXPECT_EQ(mode, LeftRightNegative);
    EXPECT_FALSE(MChannelModeInfo::Find("Quadro", mode));
    EXPECT_EQ(mode, LeftRightNegative);
}

} // namespace
