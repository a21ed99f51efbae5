#include "shell/SmartLearn.h"

#include <optional>

#include <gtest/gtest.h>

#include "tests/shell/PluginUnderTest.h"

namespace
{

constexpr int Dry = 0;
constexpr int Wet = 1;
constexpr int Width = 7;

/// Of the modulator or multiparameter: the parameters that it drives, and the middles of ranges.
template <typename Taught>
std::vector<std::pair<int, double>> GetTargets(Taught& taught)
{
    std::vector<std::pair<int, double>> targets;
    taught.EditTargets(
        [&](const auto& list)
        {
            for (const MModulatorTarget& target : list)
                targets.emplace_back(target.ParameterIndex, target.Range.value);
        });
    return targets;
}

using Targets = std::vector<std::pair<int, double>>;

TEST(SmartLearn, TakesWhatTheUserMovesInItsOrder)
{
    const PluginUnderTest plugin;
    MModulator& modulator = plugin->GetModulators()[0];
    std::optional<SmartLearn> learn(std::in_place, *plugin, modulator, false);
    EXPECT_TRUE(modulator.Frozen);
    learn->Capture();
    EXPECT_EQ(GetTargets(modulator), (Targets{{-1, 0.5}})) << "nothing has moved";

    plugin->SetParameter(Width, 0.25, false);
    learn->Capture();
    plugin->SetParameter(Dry, 0.5, false);
    plugin->SetParameter(Width, 0.75, false);
    plugin->SetParameter(Width, 0.125, false);
    learn->Capture();
    EXPECT_EQ(GetTargets(modulator), (Targets{{Width, 0.125}, {Dry, 0.5}}));
    learn.reset();
    EXPECT_FALSE(modulator.Frozen);

    plugin->SetParameter(Wet, 0.1, false);
    EXPECT_EQ(GetTargets(modulator).size(), 2u);
    learn.emplace(*plugin, modulator, true);
    plugin->SetParameter(Wet, 0.25, false);
    learn->Capture();
    EXPECT_EQ(GetTargets(modulator), (Targets{{Wet, 0.25}}));
}

TEST(SmartLearn, AKnobMovesNothingMeanwhileAndDoesNotDriveItself)
{
    const PluginUnderTest plugin;
    MMultiParameter& knob = plugin->GetMultiParameters()[1];
    {
        SmartLearn learn(*plugin, knob, false);
        plugin->SetParameter(Width, 0.25, false);
        plugin->SetParameter(knob.GetFirstIndex(), 0.9, false);
        learn.Capture();
        EXPECT_EQ(GetTargets(knob), (Targets{{Width, 0.25}}));
        plugin->SetParameter(knob.GetFirstIndex(), 0.0, false);
        EXPECT_EQ(plugin->GetParameter(Width), 0.25);
    }
    plugin->SetParameter(knob.GetFirstIndex(), 0.5, false); // the middle of its range
    EXPECT_EQ(plugin->GetParameter(Width), 0.25);
    plugin->SetParameter(knob.GetFirstIndex(), 0.0, false);
    EXPECT_EQ(plugin->GetParameter(Width), 0.0);
}

} // namespace
