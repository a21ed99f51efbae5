#include <array>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shell/modulators/Modulators.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

constexpr int First = 12; ///< behind the effect, before the multiparameters
constexpr int CountEach = 50;

struct Row
{
    const char* name;
    const char* id;
    const char* byDefault;
    const char* lowest;
    const char* highest;
};

/// In the order of their indices, which hosts keep, as they keep the ids.
constexpr Row Rows[CountEach] = {
    {"Frequency", "Frequency", "0.1000 Hz", "0.0010 Hz", "1.00 Hz"},
    {"Signal shape", "Signal", "Sine", "Exponencial", "Mess"},
    {"Signal shape custom morph", "Signal custom morph", "0.00%", "0.00%", "100.0%"},
    {"Signal shape step sequencer", "Signal step sequencer", "0.00%", "0.00%", "100.0%"},
    {"Signal shape smoothness", "Signal smoothness", "0.00%", "0.00%", "100.0%"},
    {"MIDI reset min velocity", "MIDIReset.MinVelocity", "0.00%", "0.00%", "100.0%"},
    {"MIDI reset max velocity", "MIDIReset.MaxVelocity", "100.0%", "0.00%", "100.0%"},
    {"MIDI reset phase", "MIDIReset.Phase", "0.00%", "0.00%", "100.0%"},
    {"Follower LFO modulation", "Envelope.LFOModulation", "0.00%", "0.00%", "100.0%"},
    {"Follower level min", "Envelope.LevelMin", "-50.0 dB", "-120.0 dB", "0.0 dB"},
    {"Follower level max", "Envelope.LevelMax", "0.0 dB", "-120.0 dB", "0.0 dB"},
    {"Follower attack", "Envelope.Attack", "10 ms", "0 ms", "1000 ms"},
    {"Follower release", "Envelope.Release", "100 ms", "0 ms", "1000 ms"},
    {"Follower phase", "Envelope.PhaseShift", "75.0%", "0.00%", "100.0%"},
    {"Follower interval size", "Envelope.IntervalSize", "50.0%", "0.00%", "200.0%"},
    {"Follower threshold", "Envelope.Threshold", "2.5%", "0.00%", "100.0%"},
    {"Follower bandpass min", "Envelope.BandPassMin", "20.0 Hz", "20.0 Hz", "20.0 kHz"},
    {"Follower bandpass max", "Envelope.BandPassMax", "20.0 kHz", "20.0 Hz", "20.0 kHz"},
    {"Follower bandpass Q", "Envelope.BandPassQ", "0.71", "0.05", "10.00"},
    {"Envelope LFO modulation", "AudioEnvelope.LFOModulation", "0.00%", "0.00%", "100.0%"},
    {"Envelope threshold on", "AudioEnvelope.ThresholdOn", "50.0%", "0.00%", "100.0%"},
    {"Envelope threshold off", "AudioEnvelope.ThresholdOff", "25.0%", "0.00%", "100.0%"},
    {"Envelope RMS length", "AudioEnvelope.RMSLength", "10 ms", "0 ms", "100 ms"},
    {"Envelope phase", "AudioEnvelope.PhaseShift", "75.0%", "0.00%", "100.0%"},
    {"Envelope interval size", "AudioEnvelope.IntervalSize", "50.0%", "0.00%", "200.0%"},
    {"Envelope delay", "MIDIEnvelope delay", "0 ms", "0 ms", "10000 ms"},
    {"Envelope attack", "MIDIEnvelope attack", "10 ms", "0 ms", "10000 ms"},
    {"Envelope hold", "MIDIEnvelope hold", "0 ms", "0 ms", "10000 ms"},
    {"Envelope decay", "MIDIEnvelope decay", "100 ms", "0 ms", "10000 ms"},
    {"Envelope release", "MIDIEnvelope release", "100 ms", "0 ms", "10000 ms"},
    {"Envelope sustain", "MIDIEnvelope sustain", "50.0%", "0.00%", "100.0%"},
    {"Envelope smoothing", "MIDIEnvelope smoothing", "0.00%", "0.00%", "100.0%"},
    {"Envelope attack shape", "MIDIEnvelope attack shape", "0.00%", "-100.0%", "100.0%"},
    {"Envelope decay shape", "MIDIEnvelope decay shape", "0.00%", "-100.0%", "100.0%"},
    {"Envelope release shape", "MIDIEnvelope release shape", "0.00%", "-100.0%", "100.0%"},
    {"Envelope reserved", "MIDIEnvelope reserved", "50.0%", "50.0%", "50.0%"},
    {"Randomizer LFO modulation", "Random.LFOModulation", "0.00%", "0.00%", "100.0%"},
    {"Randomizer speed", "Random.Speed", "0.00", "-10.00", "+10.00"},
    {"Randomizer smoothness", "Random.Smoothness", "100.0%", "0.00%", "100.0%"},
    {"Envelope phase", "Random.PhaseShift", "75.0%", "0.00%", "100.0%"},
    {"Envelope interval size", "Random.IntervalSize", "50.0%", "0.00%", "200.0%"},
    {"Pitch LFO modulation", "Pitch.LFOModulation", "0.00%", "0.00%", "100.0%"},
    {"Shift octaves", "Pitch.ShiftOctaves", "0", "-4", "+4"},
    {"Shift semitones", "Pitch.ShiftSemitones", "0", "-12", "+12"},
    {"Shift cents", "Pitch.ShiftCents", "0.0", "-100.0", "+100.0"},
    {"Pitch min frequency", "Pitch.MinFrequency", "20.0 Hz", "20.0 Hz", "20.0 kHz"},
    {"Pitch max frequency", "Pitch.MaxFrequency", "20.0 kHz", "20.0 Hz", "20.0 kHz"},
    {"Pitch threshold", "Pitch.Threshold", "10.0%", "0.00%", "100.0%"},
    {"Pitch auto-tune speed", "Pitch.AutoTuneSpeed", "50.0%", "0.00%", "100.0%"},
    {"Pitch auto-tune depth", "Pitch.AutoTuneDepth", "50.0%", "0.00%", "100.0%"},
};

/// Index of the parameter of modulator @p number, from 1, whose id ends in @p id.
int IndexOf(const PluginUnderTest& plugin, int number, const char* id)
{
    const std::string whole = "Modulator" + std::to_string(number) + "." + id;
    return plugin->FindParameter(MString::FromUTF8(whole));
}

/// What the state holds under @p key, "Envelope.Attack" or "Frequency".
std::string Stored(const PluginUnderTest& plugin, int modulator, const std::string& key)
{
    const auto state = plugin.Store();
    const auto place = static_cast<std::size_t>(modulator);
    MXMLItem* item = state->GetRequiredSubItem("LFOs").GetSubItems()[place].get();
    const std::size_t point = key.find('.');
    if (point != std::string::npos)
        item = &item->GetRequiredSubItem(MString::FromUTF8(key.substr(0, point)));
    return item->GetRequiredAttribute(MString::FromUTF8(key.substr(point + 1))).ToUTF8();
}

TEST(MModulatorParameters, HaveTheirPlacesNamesAndTexts)
{
    const PluginUnderTest plugin;
    std::set<std::string> ids;
    for (int i = 0; i < plugin->GetParameterCount(); ++i)
        EXPECT_TRUE(ids.insert(plugin->GetParameterID(i).ToUTF8()).second) << i;
    for (const int modulator : {0, 1})
        for (int i = 0; i < CountEach; ++i)
        {
            const Row& row = Rows[i];
            const int index = First + CountEach * modulator + i;
            const std::string number = std::to_string(modulator + 1);
            EXPECT_EQ(plugin->GetParameterName(index).ToUTF8(),
                      std::string(row.name) + " (Modulator " + number + ")");
            EXPECT_EQ(IndexOf(plugin, modulator + 1, row.id), index) << row.id;
            EXPECT_EQ(plugin->GetParameterValueName(index).ToUTF8(), row.byDefault) << row.name;
            EXPECT_EQ(plugin->GetParameterValueNameFrom01(index, 0.0).ToUTF8(), row.lowest);
            EXPECT_EQ(plugin->GetParameterValueNameFrom01(index, 1.0).ToUTF8(), row.highest);
            const bool isSpecial = std::string(row.id).find('.') == std::string::npos && i > 0;
            if (!isSpecial) // whose objects have defaults of their own
            {
                EXPECT_DOUBLE_EQ(plugin->GetParameterDefaultValue(index),
                                 plugin->GetParameter(index))
                    << row.name;
            }
        }
}

TEST(MModulatorParameters, WhatAHostSetsIsShownReadBackStoredAndLoaded)
{
    const PluginUnderTest fresh;
    for (int i = 0; i < 2 * CountEach; ++i)
    {
        const PluginUnderTest plugin;
        const int index = First + i;
        if (!plugin->IsModulatable(index)) // the one that never changes
            continue;
        const std::string name = plugin->GetParameterName(index).ToUTF8();
        for (const double x : {1.0, 0.0, 0.0625, 0.3, 0.5, 0.86})
        {
            plugin->SetParameter(index, x, false);
            const double value = plugin->GetParameter(index);
            EXPECT_NEAR(value, x, 1e-12) << name;
            const MString text = plugin->GetParameterValueName(index);
            EXPECT_EQ(plugin->GetParameterValueNameFrom01(index, x), text) << name;
            const double read = plugin->ParseParameterValueName(index, text);
            EXPECT_EQ(plugin->GetParameterValueNameFrom01(index, read), text) << name;
            EXPECT_EQ(plugin->ParseParameterValueName(index, "?"), value) << name;
        }
        EXPECT_EQ(plugin->TakePendingEditorUpdates().size(), 1U) << name;
        const PluginUnderTest other;
        other.Load(*plugin.Store());
        for (int k = 0; k < plugin->GetParameterCount(); ++k)
            EXPECT_NEAR(other->GetParameter(k), plugin->GetParameter(k), 1e-11) << name << k;
        for (int k = 0; k < plugin->GetParameterCount(); ++k)
            EXPECT_EQ(k != index, plugin->GetParameter(k) == fresh->GetParameter(k)) << name << k;
        const std::string key = Rows[i % CountEach].id;
        if (key.find(' ') == std::string::npos && key != "Signal")
        {
            EXPECT_NE(Stored(plugin, i / CountEach, key), Stored(fresh, i / CountEach, key)) << key;
        }
        plugin->SetParameter(index, 1.0, true);
        const double end = plugin->GetParameter(index);
        plugin->SetParameter(index, 2.0, true);
        if (dynamic_cast<MModulatorParameters*>(plugin->FindAdapter(index)) != nullptr)
        {
            EXPECT_EQ(plugin->GetParameter(index), end) << name;
        }
        plugin->SetParameter(index, std::nan(""), true);
        EXPECT_TRUE(std::isfinite(plugin->GetParameter(index))) << name;
        EXPECT_FALSE(plugin->HasPendingEditorUpdates()) << name;
    }
}

TEST(MModulatorParameters, ReadWhatUsersType)
{
    struct Typed
    {
        const char* id;
        const char* text;
        const char* shown;
    };
    constexpr Typed Cases[] = {
        {"Frequency", "0.5", "0.5000 Hz"},          {"Envelope.Attack", "0.25 s", "250 ms"},
        {"Envelope.Attack", "250", "250 ms"},       {"Envelope.BandPassMin", "1.5k", "1500 Hz"},
        {"Envelope.BandPassMin", "440", "440 Hz"},  {"Pitch.ShiftOctaves", "-1.5", "-1.5000"},
        {"Pitch.ShiftSemitones", "7", "+7"},        {"Pitch.ShiftCents", "+12.34", "+12.3"},
        {"Envelope.IntervalSize", "150", "150.0%"},
    };
    const PluginUnderTest plugin;
    for (const Typed& row : Cases)
    {
        const int index = IndexOf(plugin, 2, row.id);
        const auto value01 = static_cast<float>(plugin->ParseParameterValueName(index, row.text));
        plugin->SetParameter(index, value01, false);
        EXPECT_EQ(plugin->GetParameterValueName(index).ToUTF8(), row.shown);
    }
}

TEST(MModulatorParameters, ModulatorsMoveEachOtherAndThemselves)
{
    for (const Row& row : Rows)
        for (const int moved : {1, 2})
        {
            PluginUnderTest plugin;
            const int index = IndexOf(plugin, moved, row.id);
            if (!plugin->IsModulatable(index))
                continue;
            plugin->SetParameter(index, 0.25, false);
            const double before = plugin->GetParameter(index);
            MModulator& mover = plugin->GetModulators()[0];
            const auto aim = [&](int target, double value01)
            {
                mover.EditTargets(
                    [&](MModulator::TargetList& list)
                    {
                        list[0].Assign(target, *plugin);
                        list[0].Range = {.value = value01,
                                         .maxValue = value01,
                                         .mode = MTargetRange::Mode::Interval};
                    });
            };
            aim(index, 0.75);
            plugin->GetModulators()[1].Enabled = true;
            mover.Enabled = true;
            plugin.Play(1000);
            EXPECT_NEAR(plugin->GetParameter(index), 0.75, 1e-12) << row.id;
            mover.Enabled = false;
            plugin.Play(1000);
            EXPECT_NEAR(plugin->GetParameter(index), before, 1e-12) << row.id << moved;

            // A state that comes wins over what the parameter was before it was held.
            const auto state = plugin.Store();
            plugin->SetParameter(index, 0.5, false);
            aim(index, 0.75);
            mover.Enabled = true;
            plugin.Play(1000);
            plugin.Load(*state);
            plugin.Play(1000);
            EXPECT_NEAR(plugin->GetParameter(index), before, 1e-11) << row.id << moved;
        }
}

TEST(MModulatorParameters, ARateThatIsMovedIsTheRateThatIsPlayed)
{
    PluginUnderTest plugin;
    MModulator& mover = plugin->GetModulators()[0];
    MModulator& moved = plugin->GetModulators()[1];
    mover.EditTargets(
        [&](MModulator::TargetList& list)
        {
            list[0].Assign(IndexOf(plugin, 2, "Frequency"), *plugin);
            list[0].Range = {.value = 1.0, .maxValue = 1.0, .mode = MTargetRange::Mode::Interval};
        });
    mover.Enabled = true;
    moved.Enabled = true;
    for (int block = 0; block < 12; ++block)
        plugin.Play(1000);
    EXPECT_NEAR(moved.Phase, 0.25, 1e-9) << "1 Hz";
    EXPECT_NEAR(mover.Phase, 0.025, 1e-9) << "0.1 Hz";
}

} // namespace
