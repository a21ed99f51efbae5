#include <gtest/gtest.h>

#include "tests/shell/PluginUnderTest.h"

namespace
{

constexpr int Wet = 1; ///< a parameter

TEST(PresetSlots, EachKeepsWhatTheUserLeftInIt)
{
    const PluginUnderTest plugin;
    const double initial = plugin->GetParameter(Wet);
    const auto level = [](int slot) { return 0.1 + 0.1 * slot; };
    for (const int slot : {7, 0, 3, 1, 2, 6, 5, 4})
    {
        plugin->SelectPresetSlot(slot);
        EXPECT_NEAR(plugin->GetParameter(Wet), initial, 1e-9) << slot;
        plugin->SetParameter(Wet, level(slot), false);
        plugin->SetChannelMode(slot < 4 ? MChannelMode::Mono : MChannelMode::Left);
    }
    EXPECT_EQ(plugin->GetPresetSlots().GetPreviousSlot(), 5);
    plugin->SetUpsampling(3, false);
    plugin.Send({0x90, 40, 100});
    for (int slot = 0; slot < PresetSlots::Count; ++slot)
    {
        plugin->SelectPresetSlot(slot);
        EXPECT_NEAR(plugin->GetParameter(Wet), level(slot), 1e-6) << slot;
        EXPECT_EQ(plugin->GetChannelMode(), slot < 4 ? MChannelMode::Mono : MChannelMode::Left);
        EXPECT_EQ(plugin->GetUpsamplingFactor(), 3) << "of the instance, not of the slot";
        EXPECT_FALSE(plugin->IsSuspended());
    }
}

TEST(PresetSlots, CopyGoesToAnyOther)
{
    const PluginUnderTest plugin;
    plugin->SetParameter(Wet, 0.25, false);
    plugin->SelectPresetSlot(2);
    plugin->SetParameter(Wet, 0.75, false);
    plugin->CopyPresetSlot(2, 5);
    plugin->CopyPresetSlot(0, 6);
    plugin->SetParameter(Wet, 0.5, false);
    const auto before = plugin->GetPresetSlots().GetSlot(6);
    EXPECT_NEAR(before->GetAttribute("parameterWet", "").ToDouble(),
                plugin->GetPresetSlots().GetSlot(0)->GetAttribute("parameterWet", "").ToDouble(),
                1e-12);
    plugin->CopyPresetSlot(5, 2);
    EXPECT_NEAR(plugin->GetParameter(Wet), 0.75, 1e-6);
    plugin->CopyPresetSlot(6, 2);
    EXPECT_NEAR(plugin->GetParameter(Wet), 0.25, 1e-6);
    EXPECT_EQ(plugin->GetPresetSlots().GetCurrentSlot(), 2);
}

TEST(PresetSlots, WhatIsNoSlotChangesNothing)
{
    const PluginUnderTest plugin;
    plugin->SelectPresetSlot(4);
    plugin->SetParameter(Wet, 0.25, false);
    for (const int slot : {-1, PresetSlots::Count, 1 << 30})
    {
        plugin->SelectPresetSlot(slot);
        plugin->CopyPresetSlot(slot, 4);
        plugin->CopyPresetSlot(4, slot);
    }
    plugin->SelectPresetSlot(4);
    plugin->CopyPresetSlot(4, 4);
    EXPECT_EQ(plugin->GetPresetSlots().GetCurrentSlot(), 4);
    EXPECT_NEAR(plugin->GetParameter(Wet), 0.25, 1e-6);
}

} // namespace
