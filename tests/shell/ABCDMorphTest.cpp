#include <limits>
#include <set>

#include <gtest/gtest.h>

#include "shell/ABCDMorph.h"
#include "tests/shell/PluginUnderTest.h"
#include "tests/shell/ToldParameters.h"

namespace
{

// Indices of parameters.
constexpr int Dry = 0;
constexpr int Wet = 1;
constexpr int Octaves = 2;
constexpr int Semitones = 3;
constexpr int Shape = 8;

/// With other values in each of the first four slots; the last one is current.
class ABCDMorphSquare : public testing::Test
{
protected:
    ABCDMorphSquare()
    {
        for (const int slot : {0, 1, 2, 3})
        {
            plugin->SelectPresetSlot(slot);
            plugin->SetParameter(Dry, 0.5, false); // the same in all
            plugin->SetParameter(Wet, WetOf[slot], false);
            plugin->SetParameter(Octaves, OctavesOf[slot], false);
            plugin->SetParameter(Semitones, 14.0 / 24.0, false); // falls short of 2 by itself
            plugin->SetParameter(Shape, 0.2 * slot, false);
        }
        plugin->SetAdapter(&listener);
    }
    void TearDown() override { plugin->SetAdapter(nullptr); }

    std::vector<double> GetAll() const
    {
        std::vector<double> all(static_cast<std::size_t>(plugin->GetParameterCount()));
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = plugin->GetParameter(static_cast<int>(i));
        return all;
    }

    static constexpr double WetOf[] = {0.2, 0.4, 0.9, 0.7};
    static constexpr double OctavesOf[] = {0.0, 1.0, 0.5, 0.5};

    const PluginUnderTest plugin;
    ToldParameters listener;
};

TEST_F(ABCDMorphSquare, CornersAreTheirSlots)
{
    std::vector<std::vector<double>> slots;
    slots.reserve(ABCDMorph::CornerCount);
    for (const int slot : {0, 1, 2, 3})
    {
        plugin->SelectPresetSlot(slot);
        slots.push_back(GetAll());
    }
    ABCDMorph morph(*plugin);
    EXPECT_EQ(morph.GetX(), 0.5);
    EXPECT_EQ(morph.GetY(), 0.5);
    for (const int slot : {1, 0, 3, 2})
    {
        const bool isLower = slot >= 2;
        morph.MoveTo(slot % 2, isLower ? 1.0 : 0.0);
        const std::vector<double> all = GetAll();
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_NEAR(all[i], slots[static_cast<std::size_t>(slot)][i], ABCDMorph::LeastChange)
                << plugin->GetParameterName(static_cast<int>(i)).ToUTF8() << " in " << slot;
    }
}

TEST_F(ABCDMorphSquare, BetweenThemEachParameterIsBlended)
{
    struct Case
    {
        double x;
        double y;
        double wet;
    };
    constexpr Case Cases[] = {
        {0.5, 0.5, 0.55}, // the mean
        {0.5, 0.0, 0.3},  {0.0, 0.5, 0.55},
        {1.0, 0.5, 0.55}, {0.25, 0.75, 0.7}, // 3/16 of 0.2, 1/16 of 0.4, 9/16 of 0.9, 3/16 of 0.7
        {-1.0, 7.0, 0.9}, {std::numeric_limits<double>::quiet_NaN(), 0.0, 0.3},
    };
    ABCDMorph morph(*plugin);
    for (const Case& row : Cases)
    {
        listener.told.clear();
        morph.MoveTo(row.x, row.y);
        EXPECT_NEAR(plugin->GetParameter(Wet), row.wet, 1e-6) << row.x << ", " << row.y;
        EXPECT_FALSE(listener.told.contains(Dry)) << "it is the same everywhere";
        EXPECT_FALSE(listener.told.contains(Semitones));
    }
    listener.told.clear();
    morph.MoveTo(1.0, 0.0);
    EXPECT_EQ(listener.told, (std::set<int>{Wet, Octaves, Shape}));
}

TEST_F(ABCDMorphSquare, CancelBringsBackAndConfirmMayKeepTheCorners)
{
    const std::vector<double> before = GetAll();
    const auto expectBefore = [&](const char* when)
    {
        const std::vector<double> all = GetAll();
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_NEAR(all[i], before[i], 1e-9) << when << ", " << i;
    };
    {
        ABCDMorph morph(*plugin);
        morph.MoveTo(0.0, 0.0);
        morph.Cancel();
        expectBefore("cancelled");
    }
    ABCDMorph morph(*plugin);
    EXPECT_TRUE(morph.IsCornerCurrent());
    EXPECT_TRUE(morph.GetQuestion().ToUTF8().starts_with("Preset D is currently selected, "));
    morph.MoveTo(0.0, 0.0);
    morph.Confirm(true);
    EXPECT_EQ(plugin->GetPresetSlots().GetCurrentSlot(), ABCDMorph::FreeSlot);
    EXPECT_EQ(plugin->GetPresetSlots().GetPreviousSlot(), ABCDMorph::FreeSlot);
    EXPECT_NEAR(plugin->GetParameter(Wet), WetOf[0], 1e-6);
    EXPECT_FALSE(ABCDMorph(*plugin).IsCornerCurrent());
    plugin->SelectPresetSlot(3);
    expectBefore("the corner");
    plugin->SelectPresetSlot(ABCDMorph::FreeSlot);
    EXPECT_NEAR(plugin->GetParameter(Wet), WetOf[0], 1e-6);

    plugin->SelectPresetSlot(3);
    ABCDMorph replacing(*plugin);
    replacing.MoveTo(0.5, 0.5);
    replacing.Confirm(false);
    EXPECT_EQ(plugin->GetPresetSlots().GetCurrentSlot(), 3);
    EXPECT_NEAR(plugin->GetParameter(Wet), 0.55, 1e-6);
}

} // namespace
