#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

/// A controller for each parameter, and modulators: the four values of the shape rebuild it.
void Assign(PluginUnderTest& plugin)
{
    MIDIControllers& controllers = plugin->GetControllers();
    for (std::size_t i = 0; i < MIDIControllers::AssignmentCount; ++i)
    {
        MMIDIControllerAssignment& row = controllers.assignments[i];
        row.isEnabled = true;
        row.parameterIndex = static_cast<int>(i) % 12;
        row.controller = static_cast<int>(20 + i);
    }
    controllers.assignments[14].controller = MMIDIControllerAssignment::Pressure;
    controllers.assignments[15].controller = MMIDIControllerAssignment::PitchBend;
    controllers.noteControllers[0].isEnabled = true;
    controllers.noteControllers[0].parameterIndex = 7;
    for (std::size_t i = 0; i < Modulators::Count; ++i)
    {
        MModulator& modulator = plugin->GetModulators()[i];
        modulator.Enabled = true;
        modulator.SetMode(i == 0 ? MModulatorMode::Normal : MModulatorMode::Envelope);
        modulator.EditTargets(
            [&](MModulator::TargetList& list)
            {
                const int first = static_cast<int>(i);
                for (const int target : {5, 6, 7, 8})
                    list.emplace_back().Assign(target + first, *plugin);
                // Of the other modulator: the rate, the shape and the envelope.
                for (const int target : {12, 13, 38})
                    list.emplace_back().Assign(target + 50 * (1 - first), *plugin);
            });
    }
}

void PlayAll(PluginUnderTest& plugin, int blocks)
{
    for (int block = 0; block < blocks; ++block)
    {
        plugin.Send({0x90, block % 128, 100});
        plugin.Send({0x80, block % 128, 0});
        plugin.Send({0xB0, 20 + block % 14, block * 5 % 128});
        plugin.Send({0xB0, block % 5 == 0 ? 123 : 64, block % 128}); // sustain, all notes off
        plugin.Send({0xD0, block % 128, 0});
        plugin.Send({0xE0, 0, block % 128});
        for (int index = 0; index < 8; ++index)
            plugin->SetParameter(index, (block + index) % 10 * 0.1, index % 2 == 0);
        plugin->SetParameter(8 + block % 4, block % 7 * 0.15, false);
        plugin->SetParameter(12 + block % 100, block % 9 * 0.125, false); // of the modulators
        plugin->SetBypassed(block % 50 == 49);
        plugin->GetModulators()[1].Frozen = block % 8 == 0;
        plugin.Play(block % 2 == 0 ? 1000 : 64); // with and without interpolation
    }
}

TEST(AudioPluginAllocations, NoneOnTheAudioThread)
{
    for (const int factor : {1, 4})
        for (const MChannelMode mode :
             {MChannelMode::LeftRight, MChannelMode::MonoStereo, MChannelMode::Left})
        {
            PluginUnderTest plugin;
            Assign(plugin);
            plugin->SetUpsampling(factor, true);
            plugin->SetChannelMode(mode);
            for (int index = 12; index < plugin->GetParameterCount(); ++index)
                plugin->SetParameter(index, 1.0, false); // the largest curves and filters
            PlayAll(plugin, 8);
            const int blocks = factor == 1 ? 500 : 200;
            EXPECT_EQ(AllocationsOf([&] { PlayAll(plugin, blocks); }), 0)
                << factor << ", mode " << static_cast<int>(mode);
        }
}

} // namespace
