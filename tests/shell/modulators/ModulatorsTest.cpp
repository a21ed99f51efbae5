#include "shell/modulators/Modulators.h"

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

constexpr int Octaves = 2;
constexpr int Frequency = 7;
constexpr int Shape = 8; ///< of the generator: without an alternate value

/// Holds @p parameter at @p value01 while the modulator runs.
void Pin(MModulator& modulator, const MAudioPlugin& plugin, int parameter, double value01)
{
    modulator.EditTargets(
        [&](MModulator::TargetList& list)
        {
            list[0].Assign(parameter, plugin);
            list[0].Range = {
                .value = value01, .maxValue = value01, .mode = MTargetRange::Mode::Interval};
        });
    modulator.Enabled = true;
}

TEST(Modulators, TheEffectHearsThemAndTheUsersValueStays)
{
    for (const int parameter : {Octaves, Frequency, Shape})
    {
        PluginUnderTest modulated;
        PluginUnderTest reference;
        const double before = modulated->GetParameter(parameter);
        const double pinned = parameter == Octaves ? 1.0 : 0.3;
        const auto expectAlike = [&](double value01, const char* when)
        {
            reference->SetParameter(parameter, value01, false);
            for (int block = 0; block < 20; ++block)
            {
                modulated.Play(256);
                reference.Play(256);
            }
            EXPECT_EQ(modulated.outputs, reference.outputs) << parameter << when;
        };
        MModulator& modulator = modulated->GetModulators()[1];
        Pin(modulator, *modulated, parameter, pinned);
        expectAlike(pinned, ", modulated");
        const auto state = modulated.Store();
        EXPECT_EQ(modulated->GetParameter(parameter), parameter == Shape ? pinned : before);
        modulator.Enabled = false;
        expectAlike(before, ", without");
        EXPECT_EQ(modulated->GetParameter(parameter), before) << parameter;

        modulated.Load(*state);
        reference->InitProcessing(); // as a load does
        expectAlike(pinned, ", loaded");
        modulator.Enabled = false;
        expectAlike(before, ", loaded and without");
    }
}

TEST(Modulators, AutomationDrawsNoLineThroughThem)
{
    PluginUnderTest plugin;
    plugin.Play(1024);
    plugin->SetParameter(Frequency, 0.9, false); // the line to it would begin with this block
    Pin(plugin->GetModulators()[0], *plugin, Frequency, 0.3);
    for (int block = 0; block < 3; ++block)
        plugin.Play(1024);
    EXPECT_NEAR(plugin->GetParameter(Frequency), 0.9, 1e-12);
    EXPECT_EQ(plugin->GetStatistics().interpolatedBlocks, 0);
    plugin->GetModulators()[0].Enabled = false;
    plugin.Play(1024);
    plugin->SetParameter(Frequency, 0.1, false);
    plugin.Play(1024);
    EXPECT_EQ(plugin->GetStatistics().interpolatedBlocks, 1) << "as before";
}

TEST(Modulators, CutBlocksAndHearNotes)
{
    PluginUnderTest plugin;
    MModulator& modulator = plugin->GetModulators()[0];
    const auto pieces = [&plugin]
    {
        const auto before = plugin->GetStatistics().subBlocks;
        plugin.Play(1024);
        return plugin->GetStatistics().subBlocks - before;
    };
    EXPECT_EQ(pieces(), 1);
    modulator.Enabled = true;
    modulator.Frequency = 1.0;
    EXPECT_EQ(pieces(), 4);
    EXPECT_NEAR(modulator.Phase, 1024.0 / 48000.0, 1e-12);
    modulator.MIDIResetEnabled = true;
    modulator.ResetPhase = 0.5;
    plugin.Send({0x95, 60, 100});
    EXPECT_EQ(modulator.Phase, 0.5);
    modulator.Frozen = true;
    EXPECT_EQ(pieces(), 1);
    EXPECT_EQ(modulator.Phase, 0.5);
}

TEST(Modulators, ARefusedStateLeavesThemAsTheyWere)
{
    const PluginUnderTest plugin;
    Pin(plugin->GetModulators()[0], *plugin, Frequency, 0.25);
    plugin->GetModulators()[1].Random.Speed = 3.0;
    const auto state = plugin.Store();
    MXMLItem& list = state->GetRequiredSubItem("LFOs");
    ASSERT_EQ(list.GetSubItems().size(), 2U);
    list.GetSubItems()[0]->GetRequiredSubItem("Random").SetAttribute("Speed", 5.0);
    for (int i = 0; i < 4096; ++i)
        list.GetSubItems()[1]->AddSubItem("Parameter");
    EXPECT_THROW(plugin.Load(*state), MException);
    EXPECT_EQ(plugin->GetModulators()[0].Random.Speed, 0.0);
    EXPECT_EQ(plugin->GetModulators()[1].Random.Speed, 3.0);

    list.Clear(); // of an older version: one modulator, or none
    list.AddSubItem("LFO").AddSubItem("Random").SetAttribute("Speed", -5.0);
    plugin.Load(*state);
    EXPECT_EQ(plugin->GetModulators()[0].Random.Speed, -5.0);
    EXPECT_FALSE(plugin->GetModulators()[0].Enabled);
    EXPECT_EQ(plugin->GetModulators()[1].Random.Speed, 0.0);
}

} // namespace
