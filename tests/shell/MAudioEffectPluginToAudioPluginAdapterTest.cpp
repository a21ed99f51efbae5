#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"

#include <string>

#include <gtest/gtest.h>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginInfo.h"
#include "effect/MPluginSpecialRecord.h"
#include "effect/MSignalGenerator.h"
#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "tests/host/AutomationUnderTest.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

std::string TellTree(const MXMLItem& item)
{
    std::string told("<");
    told += item.GetName().ToUTF8();
    for (const MAttribute& attribute : item.GetAttributes())
        told.append(" ")
            .append(attribute.name.ToUTF8())
            .append("=")
            .append(attribute.value.ToUTF8());
    for (const auto& subItem : item.GetSubItems())
        told += TellTree(*subItem);
    return told + ">";
}

/// Of the effect, two modulators and four multiparameters.
constexpr int AllParameters = 12 + 2 * 50 + 4;

TEST(MAudioEffectPluginToAudioPluginAdapter, TellsWhatAHostSees)
{
    const PluginUnderTest plugin;
    constexpr const char* Names[] = {"Dry",
                                     "Wet",
                                     "Octaves",
                                     "Semitones",
                                     "Cents",
                                     "Pitch",
                                     "Width",
                                     "Frequency",
                                     "Shape",
                                     "Shape custom morph",
                                     "Shape step sequencer",
                                     "Shape smoothness"};
    EXPECT_EQ(plugin->GetParameterCount(), AllParameters);
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(plugin->GetParameterName(i), Names[i]) << i;
    EXPECT_EQ(plugin->GetInputChannelName(1), "In 1");
    EXPECT_EQ(plugin->GetOutputChannelName(7), "Out 7");
    EXPECT_TRUE(plugin->GetInputChannelName(8).IsEmpty());
    EXPECT_EQ(plugin->GetName(), "Tonvale");
    EXPECT_EQ(plugin->GetMaker(), "Quillfern");
    EXPECT_TRUE(plugin->WantsMIDIInput());
    EXPECT_FALSE(plugin->SendsMIDIOutput());
}

// A peer that can be asked from the side of the effect.

void* peerHost = nullptr;
MPluginCall peerCall = nullptr;

std::intptr_t AskedEntry(void* instance, std::int32_t command,
                         const MPluginCommandArguments* arguments) noexcept
{
    if (command == static_cast<std::int32_t>(MPluginCommand::SetHost))
    {
        peerHost = reinterpret_cast<void*>(arguments->pairs[0].value);
        peerCall = reinterpret_cast<MPluginCall>(arguments->pairs[1].value);
    }
    return TonvaleAudioEffectPluginInterface(instance, command, arguments);
}

std::intptr_t DeafEntry(void*, std::int32_t, const MPluginCommandArguments*) noexcept
{
    return 0;
}

TEST(MAudioEffectPluginToAudioPluginAdapter, FailsWithoutAnEffect)
{
    for (const MPluginCall entry : {MPluginCall(nullptr), MPluginCall(&DeafEntry)})
    {
        MAudioEffectPluginToAudioPluginAdapter shell;
        try
        {
            shell.Initialize("Tonvale", "Quillfern", entry, 450, 100);
            ADD_FAILURE();
        }
        catch (const MException& exception)
        {
            EXPECT_EQ(exception.text, "Error creating plugin.");
        }
        EXPECT_EQ(shell.GetEffect(), nullptr);
        EXPECT_EQ(shell.GetTail(), -1);
        MXMLItem item("settings");
        shell.Store({.storing = true, .item = item}); // nothing, and no crash
        shell.Store({.storing = false, .item = item});
    }
}

TEST(MAudioEffectPluginToAudioPluginAdapter, AnswersTheEffect)
{
    MAudioEffectPluginToAudioPluginAdapter shell;
    shell.Initialize("Tonvale", "Quillfern", &AskedEntry, 450, 100);
    shell.SetHostSampleRate(32000);
    shell.SetUpsampling(2, true);
    const auto ask = [](MPluginHostCommand command)
    {
        const MPluginCommandArguments none;
        return peerCall(peerHost, static_cast<std::int32_t>(command), &none);
    };
    shell.AddTemporaryAdapter(std::make_unique<RowAdapter>(3));
    EXPECT_EQ(shell.GetParameterCount(), AllParameters + 3);
    EXPECT_EQ(ask(MPluginHostCommand::ParameterListChanged), 0);
    EXPECT_EQ(shell.GetParameterCount(), AllParameters);
    EXPECT_EQ(ask(MPluginHostCommand::GetContext),
              reinterpret_cast<std::intptr_t>(&shell.GetContext()));
    EXPECT_EQ(ask(MPluginHostCommand::GetSampleRate), 64000);
    shell.TakePendingEditorUpdates();
    EXPECT_EQ(ask(MPluginHostCommand::RefreshEditors), 0);
    EXPECT_EQ(shell.TakePendingEditorUpdates().size(), 23U)
        << "eight records, the shape, four multiparameters, five of each modulator";
}

TEST(MAudioEffectPluginToAudioPluginAdapter, StateComesBackWhole)
{
    const PluginUnderTest plugin;
    const std::string byDefault = TellTree(*plugin.Store());
    EXPECT_EQ(byDefault.find("Bypass"), std::string::npos);
    EXPECT_EQ(byDefault.find("MaxLFOBlockSize"), std::string::npos);
    EXPECT_NE(byDefault.find("parameterWet="), std::string::npos);

    for (int index = 0; index < 12; ++index)
        plugin->SetParameter(index, 0.05 + 0.07 * index, true);
    plugin.Send({0x90, 40, 100});
    auto& generator =
        *static_cast<MSignalGenerator*>(plugin->GetEffect()->GetInfo().specials[0].data);
    generator.Envelope.GetPoints()[1].Curvature = 0.5;
    generator.Operations.Harmonic[3] = 0.25;
    generator.StepValues[2] = 0.125f;
    plugin->SetChannelMode(MChannelMode::Stereo);
    plugin->SetBypassed(true);
    plugin->SetMaxLFOBlockSize(100);
    plugin->SetUpsampling(4, false);
    MMIDIControllerAssignment& row = plugin->GetControllers().assignments[7];
    row = {.isEnabled = true,
           .parameterIndex = 4,
           .parameterName = "Cents",
           .target = {0.25, 0.75, 0.5, MTargetRange::Mode::Interval, true},
           .channel = 16,
           .controller = 99};
    plugin->GetControllers().noteControllers[3] = {.isEnabled = true,
                                                   .parameterIndex = 7,
                                                   .parameterName = "Frequency",
                                                   .isLogarithmic = false,
                                                   .channel = 2};
    const auto state = plugin.Store();

    PluginUnderTest other;
    other.Load(*state);
    EXPECT_EQ(TellTree(*other.Store()), TellTree(*state));
    for (int index = 0; index < 12; ++index)
        EXPECT_NEAR(other->GetParameter(index), plugin->GetParameter(index), 1e-10) << index;
    EXPECT_EQ(other->GetChannelMode(), MChannelMode::Stereo);
    EXPECT_EQ(other->GetUpsamplingFactor(), 4) << "in force, not only stored";
    EXPECT_EQ(other->GetEffectChannels(), 1);
    EXPECT_TRUE(other->IsBypassed());
    const MMIDIControllerAssignment& loaded = other->GetControllers().assignments[7];
    EXPECT_EQ(loaded.parameterIndex, 4);
    EXPECT_EQ(loaded.target.maxValue, 0.75);
    EXPECT_TRUE(loaded.target.isInverted);
    EXPECT_EQ(other->GetControllers().noteControllers[3].parameterIndex, 7);
}

TEST(MAudioEffectPluginToAudioPluginAdapter, StrangeStatesLoad)
{
    using Plugin = MQuillfernAudioEffectPlugin;
    const auto mode = [](Plugin& plugin) { return static_cast<int>(plugin.GetChannelMode()); };
    const auto block = [](Plugin& plugin) { return plugin.GetMaxLFOBlockSize(); };
    const auto bypass = [](Plugin& plugin) { return plugin.IsBypassed() ? 1 : 0; };
    const auto factor = [](Plugin& plugin) { return plugin.GetUpsamplingFactor(); };
    const auto program = [](Plugin& plugin) { return plugin.GetCurrentPresetIndex(); };
    const auto quality = [](Plugin& plugin) { return plugin.IsHighQualityUpsampling() ? 1 : 0; };
    struct Case
    {
        int channels;
        std::vector<std::pair<const char*, const char*>> attributes;
        int (*read)(Plugin&);
        int expected;
    };
    const Case cases[] = {
        {2, {{"ChannelMode", "Left + Right (neg)"}}, mode, 6},
        {2, {{"ChannelMode", "5"}}, mode, 5},
        {2, {{"ChannelMode", "8"}}, mode, 3}, // what it was
        {2, {{"ChannelMode", "-1"}}, mode, 3},
        {2, {{"ChannelMode", "nonsense"}}, mode, 3},
        {2, {{"ChannelMode", ""}}, mode, 3},
        {2, {}, mode, 3},
        {2, {{"ChannelMode", "Surround"}}, mode, 0},
        {3, {{"ChannelMode", "Surround"}}, mode, 7},
        {2, {{"EnableSurroundProcessing", "1"}}, mode, 0},
        {8, {{"EnableSurroundProcessing", "1"}}, mode, 7},
        {8, {{"EnableSurroundProcessing", "0"}}, mode, 0},
        {8, {{"ChannelMode", "Left"}, {"EnableSurroundProcessing", "2"}}, mode, 7},
        {2, {}, block, 256},
        {2, {{"MaxLFOBlockSize", "0"}}, block, 1},
        {2, {{"MaxLFOBlockSize", "-9000000000"}}, block, 1},
        {2, {{"MaxLFOBlockSize", "9000000000"}}, block, 65536},
        {2, {}, bypass, 0},
        {2, {{"Bypass", "2"}}, bypass, 1},
        {2, {{"Bypass", "yes"}}, bypass, 0},
        {2, {}, factor, 2},
        {2, {{"upsampling", "0"}}, factor, 1},
        {2, {{"upsampling", "17"}}, factor, 16},
        {2, {}, program, 0},
        {2, {{"CurrentPresetIndex", "12"}}, program, 12},
        {2, {{"CurrentPresetIndex", "9000000000"}}, program, 0x7FFFFFFF},
        {2, {}, quality, 0},
        {2, {{"hqupsampling", "1"}}, quality, 1},
    };
    for (const Case& row : cases)
    {
        const PluginUnderTest plugin;
        plugin->SetChannelMode(MChannelMode::Mono);
        plugin->SetBypassed(true);
        plugin->SetMaxLFOBlockSize(99);
        plugin->SetUpsampling(2, false);
        plugin->SetChannels(row.channels, row.channels); // and the load puts it in force
        MXMLItem item("settings");
        for (const auto& [key, value] : row.attributes)
            item.SetAttribute(key, MString(value));
        plugin.Load(item);
        EXPECT_EQ(row.read(*plugin), row.expected) << "row " << &row - cases;
    }
}

TEST(MAudioEffectPluginToAudioPluginAdapter, ARefusedStateChangesNothing)
{
    const PluginUnderTest plugin;
    const std::string before = TellTree(*plugin.Store());
    MXMLItem item("settings");
    item.SetAttribute("parameterDry", 1.0);
    item.SetAttribute("Bypass", 1);
    MXMLItem& curve = item.AddSubItem("Shape").AddSubItem("Envelope");
    for (int i = 0; i <= limits::CurvePoints; ++i)
        curve.AddSubItem("Point");
    EXPECT_THROW(plugin.Load(item), MException);
    EXPECT_EQ(TellTree(*plugin.Store()), before);
    EXPECT_FALSE(plugin->IsSuspended());
}

TEST(MAudioEffectPluginToAudioPluginAdapter, SurroundForTwoChannelsLastsUntilTheNextStore)
{
    const PluginUnderTest plugin;
    plugin->SetChannelMode(MChannelMode::Surround);
    EXPECT_EQ(plugin->GetChannelMode(), MChannelMode::Surround);
    plugin.Store();
    EXPECT_EQ(plugin->GetChannelMode(), MChannelMode::LeftRight);
}

/// Counts the notes that end.
class Listener final : public MMIDIProcessorBase
{
public:
    void ProcessNote(int, double, int, int, double, bool on) override { noteOffs += !on; }

    int noteOffs = 0;
};

TEST(MAudioEffectPluginToAudioPluginAdapter, NotesEndAtTheEffect)
{
    PluginUnderTest plugin;
    Listener listener;
    plugin->GetEffect()->GetInfo().midiProcessor->AddListener(listener,
                                                              MMIDIProcessorBase::AllChannels);
    plugin.Send({0x90, 60, 100});
    plugin.Send({0x80, 60, 0});
    EXPECT_EQ(listener.noteOffs, 1);
    plugin.Send({0xB0, 64, 127});
    plugin.Send({0x90, 60, 100});
    plugin.Send({0x80, 60, 0});
    EXPECT_EQ(listener.noteOffs, 1) << "held by the pedal";
    plugin.Send({0xB0, 64, 0});
    EXPECT_EQ(listener.noteOffs, 2);

    plugin.Play(64);
    plugin.Send({0x90, 60, 100});
    plugin.Send({0x91, 61, 100});
    plugin.Play(64);
    EXPECT_EQ(listener.noteOffs, 2) << "they sound";
    plugin.Load(*plugin.Store());
    EXPECT_EQ(listener.noteOffs, 2) << "not on the thread that loads";
    plugin.Play(64);
    EXPECT_EQ(listener.noteOffs, 4);

    plugin.Send({0x90, 60, 100});
    plugin.Load(*plugin.Store());
    plugin.Send({0x90, 62, 100});
    EXPECT_EQ(listener.noteOffs, 5) << "the one from before the load";
    plugin.Play(64);
    EXPECT_EQ(listener.noteOffs, 5) << "the one for the first block behind it stays";
    plugin.Send({0xB0, 123, 0});
    EXPECT_EQ(listener.noteOffs, 6);
}

} // namespace
