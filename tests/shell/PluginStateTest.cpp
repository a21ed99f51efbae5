// The state as hosts keep it, with the whole plugin behind it.

#include "host/PluginState.h"

#include <functional>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginParameterRecord.h"
#include "foundation/limits.h"
#include "foundation/streams/MZLibStream.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "tests/shell/PluginUnderTest.h"

namespace
{

using Bytes = std::vector<std::byte>;

Bytes Save(MAudioPlugin& plugin)
{
    const MMemoryStream stream = pluginstate::Save(plugin);
    return {stream.GetData().begin(), stream.GetData().end()};
}

void Load(MAudioPlugin& plugin, std::span<const std::byte> bytes)
{
    MMemoryStream stream = MMemoryStream::Refer(bytes);
    pluginstate::Load(plugin, stream);
}

std::unique_ptr<MXMLItem> Parse(std::span<const std::byte> bytes)
{
    MMemoryStream stream = MMemoryStream::Refer(bytes);
    auto item = std::make_unique<MXMLItem>("");
    item->LoadCompressed(stream);
    return item;
}

Bytes Pack(const MXMLItem& item)
{
    MMemoryStream stream;
    item.SaveCompressed(stream, "utf-8");
    stream.Seek(0, MStream::FromStart);
    return {stream.GetData().begin(), stream.GetData().end()};
}

Bytes Deflate(const std::string& text)
{
    MMemoryStream packed;
    MZLibStream stream(packed, MZLibStream::Direction::Write);
    stream.Write(std::as_bytes(std::span(text)));
    stream.Finish();
    packed.Seek(0, MStream::FromStart);
    return {packed.GetData().begin(), packed.GetData().end()};
}

std::string Repeat(int count, const std::string& text)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

/// The compact text of @p item; its attributes in order, its texts, all below.
std::string TextOf(const MXMLItem& item)
{
    MMemoryStream stream;
    item.Save(stream, true, "utf-8");
    stream.Seek(0, MStream::FromStart);
    return {reinterpret_cast<const char*>(stream.GetData().data()), stream.GetData().size()};
}

std::string SlotName(int index)
{
    return std::string("Preset") + std::to_string(index);
}

/// Makes each setting another one than by default.
void ChangeAll(MQuillfernAudioEffectPlugin& plugin)
{
    for (int index = 0; index < plugin.GetParameterCount(); ++index)
        plugin.SetParameter(index, 0.05 + 0.07 * (index % 13), true);
    plugin.SetChannelMode(MChannelMode::Stereo);
    plugin.SetBypassed(true);
    plugin.SetMaxLFOBlockSize(100);
    plugin.SetUpsampling(2, false);
    plugin.GetControllers().assignments[15].controller = 77;
    plugin.GetActivePresets().EditPresets = true;
    plugin.GetActivePresets().CurrentActivePreset = 3;
}

/// A state with all eight slots and @p index, each slot with a tree of its own.
std::unique_ptr<MXMLItem> MakeSlots(const char* index)
{
    auto state = std::make_unique<MXMLItem>("settings");
    state->SetAttribute("PresetIndex", MString(index));
    for (int i = 0; i < PresetSlots::Count; ++i)
    {
        MXMLItem& slot = state->AddSubItem(MString::FromUTF8(SlotName(i)));
        slot.SetAttribute("parameterWet", 0.1 * i);
        slot.SetAttribute("ofLaterVersion", "kept <&>");
        slot.AddSubItem("Shape").AddSubItem("Deep").SetText(MString::FromInteger(i));
        slot.AddSubItem("Shape");
    }
    return state;
}

TEST(PluginState, TheTreeHasItsOrderAndItsKeys)
{
    const PluginUnderTest plugin;
    const auto names = [](const MXMLItem& tree)
    {
        std::string told;
        for (const auto& item : tree.GetSubItems())
            told += item->GetName().ToUTF8() + " ";
        return told;
    };
    const auto tree = Parse(Save(*plugin));
    EXPECT_EQ(names(*tree), "Shape LFOs Controllers NoteControllers MultiParameters ActivePreset "
                            "Preset1 Preset2 Preset3 "
                            "Preset4 Preset5 Preset6 Preset7 ");
    EXPECT_EQ(tree->GetName(), "settings");
    constexpr std::pair<const char*, const char*> Keys[] = {
        {"CurrentPresetIndex", "0"}, {"PresetIndex", "0"},
        {"NoteIndex", "72"},         {"upsampling", "1"},
        {"hqupsampling", "1"},       {"Bypass", "none"},
        {"MaxLFOBlockSize", "none"}, {"EnableSurroundProcessing", "none"},
        {"parameterOctaves", "0"},
    };
    for (const auto& [key, value] : Keys)
        EXPECT_EQ(tree->GetAttribute(key, "none"), value) << key;

    const auto slots = MakeSlots("2");
    slots->SetAttribute("unknown", 1);
    slots->AddSubItem("Preset8").SetAttribute("a", 1);
    Load(*plugin, Pack(*slots));
    const auto loaded = Parse(Save(*plugin));
    EXPECT_EQ(names(*loaded), "Shape LFOs Controllers NoteControllers MultiParameters ActivePreset "
                              "Preset0 Preset1 Preset3 Preset4 "
                              "Preset5 Preset6 Preset7 ");
    EXPECT_FALSE(loaded->HasAttribute("unknown"));
}

TEST(PluginState, SlotsComeBackAsTheyCame)
{
    for (const auto& [text, current] :
         {std::pair("0", 0), {"5", 5}, {"7", 7}, {"8", 7}, {"-1", 0}, {"9999999999", 7}, {"E", 0}})
    {
        const PluginUnderTest plugin;
        const auto state = MakeSlots(text);
        plugin.Load(*state);
        EXPECT_EQ(plugin->GetPresetSlots().GetCurrentSlot(), current) << text;
        EXPECT_EQ(plugin->GetPresetSlots().GetPreviousSlot(), current) << text;
        const auto stored = Parse(Save(*plugin));
        EXPECT_EQ(stored->GetAttribute("PresetIndex", ""), MString::FromInteger(current));
        for (int i = 0; i < PresetSlots::Count; ++i)
        {
            const MString name = MString::FromUTF8(SlotName(i));
            ASSERT_EQ(stored->HasSubItem(name), i != current) << text << ", " << i;
            if (i == current)
                continue;
            EXPECT_EQ(TextOf(stored->GetSubItem()), TextOf(state->GetRequiredSubItem(name)));
        }

        MXMLItem none("settings");
        plugin.Load(none);
        EXPECT_EQ(plugin->GetPresetSlots().GetCurrentSlot(), 0);
        const auto filled = Parse(Save(*plugin));
        for (const char* const slot : {"Preset1", "Preset7"})
            EXPECT_EQ(filled->GetRequiredSubItem(slot).GetAttribute("parameterWet", "none"),
                      filled->GetAttribute("parameterWet", ""))
                << "absent ones take the state";
    }
}

/// Feeds bad chunks to a plugin and compares it with another one that is spared them.
class Sufferer
{
public:
    Sufferer()
    {
        for (PluginUnderTest* const each : {&victim, &twin})
        {
            Load(**each, Pack(*MakeSlots("1")));
            (*each)->SetUpsampling(2, true);
            each->Send({0x90, 40, 100});
        }
        before = Save(*victim);
    }

    void ExpectRefused(std::span<const std::byte> chunk, const std::string& what)
    {
        EXPECT_THROW(Load(*victim, chunk), MException) << what;
        ExpectUnbroken(what);
        EXPECT_EQ(Save(*victim), before) << what;
    }
    void ExpectUnbroken(const std::string& what)
    {
        EXPECT_FALSE(victim->IsSuspended()) << what;
        victim.Play(64, 0.25f);
        twin.Play(64, 0.25f);
        EXPECT_EQ(victim.outputs, twin.outputs) << what;
    }

    PluginUnderTest victim;
    PluginUnderTest twin;
    Bytes before;
};

TEST(PluginState, HostileChunksChangeNothing)
{
    const std::string deep = Repeat(limits::XMLDepth + 1, "<Preset0>");
    const std::string attributes = []
    {
        std::string all;
        for (std::size_t i = 0; i <= limits::XMLAttributes; ++i)
            all += std::string(" a") + std::to_string(i) + "=\"\"";
        return all;
    }();
    const std::pair<const char*, Bytes> chunks[] = {
        {"empty", {}},
        {"no zlib", Bytes(100, std::byte{0x55})},
        {"empty text", Deflate("")},
        {"no element", Deflate("<?xml version=\"1.0\" encoding=\"utf-8\"?>")},
        {"another root", Deflate("<preset parameterWet=\"1\"/>")},
        {"another encoding", Deflate("<?xml version=\"1.0\" encoding=\"klingon\"?><settings/>")},
        {"depth", Deflate("<settings>" + deep)},
        {"attributes", Deflate("<settings" + attributes + "/>")},
        {"points", Deflate("<settings parameterWet=\"1\"><Shape><Envelope>" +
                           Repeat(limits::CurvePoints + 1, "<Point/>"))},
        {"points in a slot",
         Deflate("<settings><Preset3><Shape>" + Repeat(limits::CurvePoints + 1, "<Point/>"))},
        {"targets", Deflate("<settings><MultiParameters><MultiParameter>" +
                            Repeat(limits::Targets + 1, "<Parameter/>"))},
        {"bomb", Deflate("<settings a=\"" +
                         std::string(static_cast<std::size_t>(limits::InflatedTreeBytes), 'a'))},
    };
    Sufferer sufferer;
    for (const auto& [what, chunk] : chunks)
        sufferer.ExpectRefused(chunk, what);
}

TEST(PluginState, AChunkThatEndsTooEarlyChangesNothing)
{
    constexpr std::size_t Checksum = 4; // bytes behind the end of the data
    const Bytes whole = Deflate("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                "<settings parameterWet=\"0.25\" Bypass=\"1\" PresetIndex=\"6\">"
                                "<Preset1 parameterDry=\"1\"/></settings>");
    Sufferer sufferer;
    for (std::size_t size = 0; size < whole.size() - Checksum; ++size)
        sufferer.ExpectRefused(std::span(whole).first(size), std::to_string(size));
    Load(*sufferer.victim, whole);
    EXPECT_TRUE(sufferer.victim->IsBypassed()) << "the whole one does change something";
}

// An effect that fails at its worst moments.

enum class Failing
{
    Nowhere,
    BeforeLoad,
    BehindLoad,
    Preparing,
    Storing
};
Failing failing = Failing::Nowhere;

/// Fails once if it is told to fail @p here.
void FailIf(Failing here)
{
    if (failing != here)
        return;
    failing = Failing::Nowhere;
    throw std::bad_alloc();
}

class FailingEffect final : public MAudioEffectPlugin
{
public:
    FailingEffect()
    {
        level.SetFloat("Level", 0.0, 1.0, 0.5);
        info.parameters = &level;
        info.parameterCount = 1;
    }

    bool Load(MXMLItem& item) override
    {
        FailIf(Failing::BeforeLoad);
        MAudioEffectPlugin::Load(item);
        FailIf(Failing::BehindLoad);
        return true;
    }
    std::int32_t InitProcessing(std::int32_t, std::int32_t) override
    {
        FailIf(Failing::Preparing);
        return 0;
    }
    void Process(MProcessingContext*, const float* const*, float* const*, std::int32_t) override {}
    bool Store(MXMLItem& item) override
    {
        MAudioEffectPlugin::Store(item);
        FailIf(Failing::Storing);
        return true;
    }

private:
    MPluginParameterRecord level;
};

std::intptr_t FailingEntry(void* instance, std::int32_t command,
                           const MPluginCommandArguments* arguments) noexcept
{
    MPlugin* const plugin = instance != nullptr ? static_cast<MPlugin*>(instance)
                                                : std::make_unique<FailingEffect>().release();
    return plugin->Dispatch(command, arguments);
}

/// A whole plugin of such an effect.
std::unique_ptr<MQuillfernAudioEffectPlugin> MakeFailing(const char* slot)
{
    auto plugin = std::make_unique<MQuillfernAudioEffectPlugin>();
    plugin->Initialize("Failing", "Quillfern", &FailingEntry, 450, 100);
    plugin->InitProcessing();
    Load(*plugin, Pack(*MakeSlots(slot)));
    return plugin;
}

std::vector<std::string> traced;

TEST(PluginState, AFailureInTheMidstOfALoadBringsTheOldStateBack)
{
    struct Case
    {
        Failing where;
        const char* routine;
    };
    constexpr Case Cases[] = {
        {Failing::BeforeLoad, "MAudioEffectPluginToAudioPluginAdapter::StoreSettings"},
        {Failing::BehindLoad, "MAudioEffectPluginToAudioPluginAdapter::StoreSettings"},
        {Failing::Preparing, "MAudioEffectPluginToAudioPluginAdapter::Store"},
        {Failing::Storing, "MAudioEffectPluginToAudioPluginAdapter::Store"},
    };
    const auto source = MakeFailing("6");
    ChangeAll(*source);
    const Bytes wanted = Save(*source);
    const auto made = MakeFailing("2");
    MQuillfernAudioEffectPlugin& plugin = *made;
    const Bytes before = Save(plugin);
    const MTraceFunction traceBefore =
        SetTraceFunction([](const char* message) { traced.emplace_back(message); });
    for (const Case& row : Cases)
    {
        failing = row.where;
        traced.clear();
        EXPECT_THROW(Load(plugin, wanted), MException) << row.routine;
        EXPECT_EQ(failing, Failing::Nowhere) << "it never failed";
        EXPECT_EQ(traced, std::vector{std::string("SYSTEM EXCEPTION! ") + row.routine});
        EXPECT_EQ(TextOf(*Parse(Save(plugin))), TextOf(*Parse(before))) << row.routine;
        EXPECT_FALSE(plugin.IsSuspended());
        EXPECT_EQ(plugin.GetUpsamplingFactor(), 1) << "in force";
    }
    SetTraceFunction(traceBefore);

    failing = Failing::Storing;
    EXPECT_THROW(Save(plugin), MException) << "no half of a state is handed out";
    Load(plugin, wanted);
    EXPECT_EQ(Save(plugin), wanted);
}

} // namespace
