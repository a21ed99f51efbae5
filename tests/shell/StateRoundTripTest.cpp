// Whole states of random settings, on every way that a state takes.

#include <random>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "host/PluginState.h"
#include "shell/PluginPresets.h"
#include "tests/TemporaryFolder.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

using Bytes = std::vector<std::byte>;

Bytes Save(MAudioPlugin& plugin)
{
    const MMemoryStream stream = pluginstate::Save(plugin);
    return {stream.GetData().begin(), stream.GetData().end()};
}

class Chance
{
public:
    explicit Chance(unsigned seed) : engine(seed) {}

    double Share() { return std::uniform_real_distribution<>(0.0, 1.0)(engine); }
    bool Coin() { return Share() < 0.5; }
    /// 0 to @p count - 1.
    int Below(int count) { return std::uniform_int_distribution<>(0, count - 1)(engine); }
    MString Text()
    {
        constexpr std::u16string_view Letters = u" <>&\"'*\u00E9\n";
        MString text;
        for (int left = Below(9); left > 0; --left)
            text.Append(MString::FromUTF16(Letters.substr(static_cast<std::size_t>(Below(9)), 1)));
        return text;
    }

private:
    std::mt19937 engine;
};

void RandomiseTargets(std::vector<MModulatorTarget>& targets, const MAudioPlugin& plugin,
                      Chance& chance)
{
    targets.resize(static_cast<std::size_t>(1 + chance.Below(5)));
    for (MModulatorTarget& target : targets)
    {
        target.Assign(chance.Below(plugin.GetParameterCount() + 1), plugin);
        target.Range = {.value = chance.Share(),
                        .maxValue = chance.Share(),
                        .range = chance.Share(),
                        .mode = static_cast<MTargetRange::Mode>(chance.Below(6)),
                        .isInverted = chance.Coin()};
        target.ParameterEnabled = chance.Coin();
        target.ShapeEnabled = chance.Coin();
        target.UseFirstRange = chance.Coin();
    }
}

/// All of the state of the current slot.
void Randomise(MQuillfernAudioEffectPlugin& plugin, Chance& chance)
{
    for (int index = 0; index < plugin.GetParameterCount(); ++index)
        plugin.SetParameter(index, chance.Share(), true);
    plugin.SetChannelMode(static_cast<MChannelMode>(chance.Below(7)));
    plugin.SetBypassed(chance.Coin());
    plugin.SetMaxLFOBlockSize(1 + chance.Below(1000));
    plugin.SetCurrentPresetIndex(chance.Below(100) - 10);
    plugin.GetActivePresets().EditPresets = chance.Coin();
    plugin.GetActivePresets().CurrentActivePreset = chance.Below(5);
    for (std::size_t i = 0; i < Modulators::Count; ++i)
    {
        MModulator& modulator = plugin.GetModulators()[i];
        modulator.Enabled = chance.Coin();
        modulator.SetMode(static_cast<MModulatorMode>(chance.Below(5)));
        modulator.Channel = chance.Below(17);
        modulator.ResetPhase = chance.Share();
        modulator.Sync.Enabled = chance.Coin();
        modulator.EditTargets([&](auto& targets) { RandomiseTargets(targets, plugin, chance); });
    }
    for (MMultiParameter& knob : plugin.GetMultiParameters())
    {
        knob.Enabled = chance.Coin();
        knob.DefaultValue = chance.Share();
        knob.SwitchTime = 10.0 * chance.Share();
        knob.ValueMode = chance.Below(2);
        knob.Mode = chance.Below(3);
        knob.EditTargets(
            [&](auto& targets)
            {
                RandomiseTargets(targets, plugin, chance);
                knob.Name = chance.Text();
                knob.Group = chance.Text();
                knob.Info = chance.Text();
            });
    }
    for (MMIDIControllerAssignment& row : plugin.GetControllers().assignments)
    {
        row.isEnabled = chance.Coin();
        row.controller = chance.Below(130);
        row.target.value = chance.Share();
        row.channel = chance.Below(17);
    }
    for (int i = 0; i < MIDIControllers::NoteControllerCount; ++i)
        plugin.GetControllers().AssignNoteController(i, chance.Below(plugin.GetParameterCount()));
}

TEST(StateRoundTrip, WholeRandomStatesComeBackByteForByte)
{
    for (const unsigned seed : {1u, 2u, 3u, 4u})
    {
        Chance chance(seed);
        const PluginUnderTest plugin;
        plugin->SetUpsampling(1 + chance.Below(4), chance.Coin());
        for (int slot = PresetSlots::Count - 1; slot >= 0; --slot)
        {
            plugin->SelectPresetSlot(slot);
            Randomise(*plugin, chance);
        }
        plugin->SelectPresetSlot(chance.Below(PresetSlots::Count));
        const Bytes state = Save(*plugin);

        const PluginUnderTest fromChunk;
        MMemoryStream chunk = MMemoryStream::Refer(state);
        pluginstate::Load(*fromChunk, chunk);
        EXPECT_EQ(Save(*fromChunk), state) << seed;

        const TemporaryFolder folder;
        const MString path = MString::FromUTF8(folder.GetPath().generic_string());
        PluginPresets presets(*plugin, path);
        MXMLItem& directory = presets.GetManager().AddFolder(presets.GetManager().GetRoot(), "d");
        presets.GetManager().AddPreset(directory, "p");
        const PluginUnderTest fromPreset;
        PluginPresets read(*fromPreset, path);
        read.GetManager().LoadPreset(*read.GetManager().Find("d/p"));
        EXPECT_EQ(Save(*fromPreset), state) << seed;

        const MString exported = MString::FromUTF8((folder / "d.mpresets").generic_string());
        presets.GetManager().Export(directory, exported);
        const PluginUnderTest fromExport;
        const TemporaryFolder elsewhere;
        PluginPresets imported(*fromExport,
                               MString::FromUTF8(elsewhere.GetPath().generic_string()));
        imported.GetManager().Import(imported.GetManager().GetRoot(), exported);
        imported.GetManager().LoadPreset(*imported.GetManager().Find("p"));
        EXPECT_EQ(Save(*fromExport), state) << seed;
    }
}

} // namespace
