#include "host/vst2/MAudioPluginVSTAdapter.h"

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/host/vst2/HostUnderTest.h"

using namespace Vst2;

namespace
{

TEST(MAudioPluginVSTAdapter, DescribesItselfToTheHost)
{
    HostUnderTest host;
    const AEffect& effect = host.Load();
    EXPECT_EQ(effect.magic, 0x56737450);
    EXPECT_EQ(effect.uniqueID, 0x546E762B);
    EXPECT_EQ(effect.version, 503);
    EXPECT_EQ(effect.flags, 16 + 32); // processReplacing works, the state is a chunk
    EXPECT_EQ(effect.numPrograms, 1);
    EXPECT_NE(effect.process, effect.processReplacing);
    EXPECT_EQ(effect.processDoubleReplacing, nullptr);
    EXPECT_EQ(host.Count(HostOpcode::WantMidi), 1);
    EXPECT_EQ(host.Count(HostOpcode::IOChanged), 0); // the host does not know the effect yet
    EXPECT_EQ(MModule::Get().GetHostName(), MString("VST2"));
    EXPECT_EQ(MModule::Get().CountUsers(), 1);
    host.Ask(EffectOpcode::Close);
    host.effect = nullptr;
    EXPECT_EQ(MModule::Get().CountUsers(), 0);
}

TEST(MAudioPluginVSTAdapter, TellsWhatItCanDo)
{
    struct Case
    {
        const char* text;
        std::intptr_t silent, receiving, sending; ///< answers of plugins of these kinds
    };
    constexpr Case Cases[] = {
        {"receiveVstEvents", -1, 1, -1},
        {"receiveVstEvent", -1, 1, -1},
        {"receiveVstMidiEvents", -1, 1, -1},
        {"receiveVstMidiEvent", -1, 1, -1},
        {"sendVstEvents", -1, -1, 1},
        {"sendVstEvent", -1, -1, 1},
        {"sendVstMidiEvents", -1, -1, 1},
        {"sendVstMidiEvent", -1, -1, 1},
        {"plugAsChannelInsert", 1, 1, 1},
        {"canMono", 1, 1, 1},
        {"plugAsSend", 1, 1, 1},
        {"receiveVstTimeInfo", 1, 1, 1},
        {"bypass", -1, -1, -1},
        {"hasCockosExtensions", 0, 0, 0},
        {"receivevstevents", 0, 0, 0},
        {"", 0, 0, 0},
    };
    for (int kind = 0; kind < 3; ++kind)
    {
        HostUnderTest host;
        auto plugin = std::make_unique<PluginUnderTest>(1, 1, 2);
        plugin->SetMIDI(kind == 1, kind == 2);
        host.Load(std::move(plugin));
        for (const Case& row : Cases)
        {
            std::string text = row.text;
            EXPECT_EQ(host.Ask(EffectOpcode::CanDo, 0, 0, text.data()), kind == 0   ? row.silent
                                                                        : kind == 1 ? row.receiving
                                                                                    : row.sending)
                << row.text;
        }
    }
}

TEST(MAudioPluginVSTAdapter, LayoutFollowsTheAgeOfTheHost)
{
    struct Case
    {
        std::intptr_t version;
        int inputBuses, outputBuses, busChannels;
        int inputs, outputs;
        bool isSynth;
        int flags; ///< of the first output pin
    };
    constexpr Case Cases[] = {
        {2400, 1, 1, 2, 2, 2, false, 3}, {2300, 2, 1, 2, 4, 2, false, 3},
        {2299, 2, 2, 2, 2, 2, false, 3}, {2, 1, 1, 8, 2, 2, false, 3},
        {2400, 1, 1, 8, 8, 8, false, 5}, {2400, 2, 2, 8, 16, 16, false, 5},
        {2400, 0, 1, 2, 0, 2, true, 3},  {100, 0, 1, 2, 0, 2, true, 3},
        {99, 0, 1, 2, 2, 2, true, 3},    {0, 1, 1, 1, 2, 1, false, 1},
        {2400, 2, 2, 1, 2, 2, false, 1},
    };
    for (const Case& row : Cases)
    {
        HostUnderTest host(row.version);
        host.Load(
            std::make_unique<PluginUnderTest>(row.inputBuses, row.outputBuses, row.busChannels));
        EXPECT_EQ(host.effect->numInputs, row.inputs) << row.version;
        EXPECT_EQ(host.effect->numOutputs, row.outputs) << row.version;
        EXPECT_EQ((host.effect->flags & AEffect::IsSynth) != 0, row.isSynth) << row.version;
        EXPECT_EQ(host.Ask(EffectOpcode::GetPlugCategory), row.isSynth ? 2 : 1);
        VstPinProperties pin;
        EXPECT_EQ(host.Ask(EffectOpcode::GetOutputProperties, row.outputs - 1, 0, &pin), 1);
        EXPECT_EQ(pin.flags, row.flags);
        EXPECT_EQ(pin.arrangementType, row.flags == 1 ? 0 : row.flags == 3 ? 1 : 25);
        EXPECT_EQ(host.Ask(EffectOpcode::GetOutputProperties, row.outputs, 0, &pin), 0);
        EXPECT_EQ(host.Ask(EffectOpcode::GetInputProperties, row.inputs, 0, &pin), 0);
    }
    HostUnderTest host;
    host.Load(std::make_unique<PluginUnderTest>(2, 1, 2));
    VstPinProperties pin;
    host.Ask(EffectOpcode::GetInputProperties, 3, 0, &pin);
    EXPECT_STREQ(pin.label.data(), "Sidechain 1");
    EXPECT_STREQ(pin.shortLabel.data(), "Sidecha");
    const AEffect* const hostless = CreateEffect(nullptr);
    EXPECT_EQ(hostless->numOutputs, 2);
    delete static_cast<AudioEffect*>(hostless->object);
}

TEST(MAudioPluginVSTAdapter, TakesArrangementsThatItHasChannelsFor)
{
    constexpr int None = -100; ///< no record at all
    struct Case
    {
        int inputBuses, busChannels, inputs, outputs;
        bool isTaken;
        int expectedInputs, expectedOutputs; ///< of the plugin, once resumed
    };
    constexpr Case Cases[] = {
        {1, 2, 1, 1, true, 1, 1},    {1, 2, 2, 2, true, 2, 2}, {1, 2, 3, 2, false, 2, 2},
        {1, 2, 2, 3, false, 2, 2},   {1, 2, 0, 0, true, 0, 1}, {1, 2, None, 1, true, 1, 1},
        {1, 2, 1, None, true, 1, 1}, {2, 2, 4, 2, true, 2, 2}, {0, 2, 1, 1, false, 0, 2},
        {0, 2, 0, 1, true, 0, 1},    {1, 8, 6, 6, true, 6, 6}, {1, 8, 9, 8, false, 8, 8},
    };
    for (const Case& row : Cases)
    {
        HostUnderTest host;
        auto owned = std::make_unique<PluginUnderTest>(row.inputBuses, 1, row.busChannels);
        const PluginUnderTest& plugin = *owned;
        host.Load(std::move(owned));
        // Hosts may pass less than the whole record.
        struct Head
        {
            std::int32_t type, count;
        } inputs{0, row.inputs}, outputs{0, row.outputs};
        const auto address = row.inputs != None ? reinterpret_cast<std::intptr_t>(&inputs) : 0;
        EXPECT_EQ(host.Ask(EffectOpcode::SetSpeakerArrangement, 0, address,
                           row.outputs != None ? &outputs : nullptr),
                  row.isTaken);
        host.Ask(EffectOpcode::MainsChanged, 0, 1);
        EXPECT_EQ(plugin.GetInputChannels(), row.expectedInputs) << row.inputs;
        EXPECT_EQ(plugin.GetOutputChannels(), row.expectedOutputs) << row.inputs;
        EXPECT_EQ(plugin.GetChannelsPerBus(), row.busChannels);
    }
}

TEST(MAudioPluginVSTAdapter, PreparesOnlyForWhatIsNew)
{
    HostUnderTest host;
    auto owned = std::make_unique<PluginUnderTest>(1, 1, 2);
    const PluginUnderTest& plugin = *owned;
    host.Load(std::move(owned));
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    constexpr std::pair<float, int> Cases[] = {
        {48000.0f, 48000}, {100.4f, 48000}, {100.0f, 48000}, {-1.0f, 48000},    {NaN, 48000},
        {Infinity, 48000}, {1e30f, 48000},  {100.5f, 101},   {44099.6f, 44100},
    };
    for (const auto& [rate, expected] : Cases)
    {
        const int before = plugin.preparations;
        const bool isNew = plugin.GetHostSampleRate() != expected;
        host.Ask(EffectOpcode::SetSampleRate, 0, 0, nullptr, rate);
        host.Ask(EffectOpcode::SetSampleRate, 0, 0, nullptr, rate);
        host.Ask(EffectOpcode::SetBlockSize, 0, -5);
        EXPECT_EQ(plugin.GetHostSampleRate(), expected) << rate;
        EXPECT_EQ(plugin.preparations, before + isNew) << rate;
    }
    const int before = plugin.preparations;
    for (const int state : {0, 1, 1, 0})
        host.Ask(EffectOpcode::MainsChanged, 0, state);
    EXPECT_EQ(plugin.preparations, before + 2);
}

TEST(MAudioPluginVSTAdapter, ReadsBackWhatTheHostSet)
{
    HostUnderTest host;
    AEffect& effect = host.Load();
    const std::vector<std::byte> fresh = host.GetChunk();
    const std::vector<float> before = host.GetParameters();
    // Octaves and semitones to each side are whole, and cut toward none.
    const std::map<int, float> wholeNumbers = {{2, 3.0f}, {3, 12.0f}};
    const std::set<int> constants = {47, 97};
    for (int index = 0; index < effect.numParams; ++index)
    {
        if (constants.contains(index))
            continue;
        const auto whole = wholeNumbers.find(index);
        for (const float value : {0.0f, 0.3f, 0.62f, 1.0f})
        {
            float expected = value;
            if (whole != wholeNumbers.end())
                expected =
                    std::trunc((2.0f * value - 1.0f) * whole->second) / whole->second / 2.0f + 0.5f;
            effect.setParameter(&effect, index, value);
            EXPECT_NEAR(effect.getParameter(&effect, index), expected, 1e-6) << index;
            // What is read and set again stays; what is no number changes nothing.
            effect.setParameter(&effect, index, effect.getParameter(&effect, index));
            effect.setParameter(&effect, index, std::numeric_limits<float>::quiet_NaN());
            EXPECT_NEAR(effect.getParameter(&effect, index), expected, 1e-6) << index;
        }
        effect.setParameter(&effect, index, 7.0f);
        EXPECT_EQ(effect.getParameter(&effect, index), 1.0f) << index;
    }
    for (const int index : {-1, effect.numParams, std::numeric_limits<int>::max()})
    {
        effect.setParameter(&effect, index, 0.5f);
        EXPECT_EQ(effect.getParameter(&effect, index), 0.0f);
    }
    EXPECT_EQ(host.SetChunk(fresh), 1);
    for (int index = 0; index < effect.numParams; ++index)
        EXPECT_NEAR(host.GetParameters()[static_cast<std::size_t>(index)],
                    before[static_cast<std::size_t>(index)], 1e-6)
            << index;

    std::string text = "-2"; // of -3 to 3
    EXPECT_EQ(host.Ask(EffectOpcode::String2Parameter, 2, 0, text.data()), 1);
    std::array<char, 8> display{};
    host.Ask(EffectOpcode::GetParamDisplay, 2, 0, display.data());
    EXPECT_STREQ(display.data(), "-2");
}

TEST(MAudioPluginVSTAdapter, ChunksBringTheStateBack)
{
    HostUnderTest host;
    AEffect& effect = host.Load();
    for (int index = 0; index < effect.numParams; ++index)
        effect.setParameter(&effect, index, 0.1f + 0.07f * static_cast<float>(index));
    const std::vector<std::byte> chunk = host.GetChunk();
    EXPECT_EQ(host.GetChunk(1), chunk); // a program is all there is
    for (const int kind : {0, 1})
    {
        HostUnderTest other;
        other.Load();
        EXPECT_NE(other.GetChunk(), chunk);
        EXPECT_EQ(other.SetChunk(chunk, kind), 1);
        EXPECT_EQ(other.Count(HostOpcode::UpdateDisplay), 1);
        EXPECT_EQ(other.GetChunk(), chunk);
    }
}

TEST(MAudioPluginVSTAdapter, BrokenChunksChangeNothing)
{
    HostUnderTest host;
    AEffect& effect = host.Load();
    const std::vector<std::byte> strange = host.GetChunk();
    effect.setParameter(&effect, 0, 0.4f);
    const std::vector<std::byte> chunk = host.GetChunk();
    ASSERT_GT(chunk.size(), 100u);
    std::vector<std::vector<std::byte>> cases = {{}, std::vector<std::byte>(1000)};
    for (const std::size_t length : {std::size_t{1}, chunk.size() / 2, chunk.size() - 8})
        cases.emplace_back(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(length));
    std::mt19937 random(1);
    for (int i = 0; i < 50; ++i)
    {
        std::vector<std::byte>& broken = cases.emplace_back(strange);
        broken[random() % broken.size()] ^= static_cast<std::byte>(1u << random() % 8);
    }
    for (const std::vector<std::byte>& broken : cases)
        EXPECT_EQ(host.SetChunk(broken), 0) << broken.size();
    EXPECT_EQ(host.Ask(EffectOpcode::SetChunk, 0, 100, nullptr), 0);
    EXPECT_EQ(host.Ask(EffectOpcode::SetChunk, 0, -1, &effect), 0);
    EXPECT_EQ(host.Ask(EffectOpcode::GetChunk), 0);
    EXPECT_EQ(host.Count(HostOpcode::UpdateDisplay), 0);
    EXPECT_EQ(host.GetChunk(), chunk);

    HostUnderTest failing;
    failing.Load(std::make_unique<PluginUnderTest>(1, 1, 2));
    void* data = &failing;
    EXPECT_EQ(failing.Ask(EffectOpcode::GetChunk, 0, 0, &data), 0);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(failing.SetChunk(chunk), 0);
}

TEST(MAudioPluginVSTAdapter, ReportsTheUsersChangesWithoutTheirEcho)
{
    HostUnderTest host;
    auto owned = std::make_unique<PluginUnderTest>(1, 1, 2);
    PluginUnderTest& plugin = *owned;
    host.Load(std::move(owned));
    host.onCall = [&](const HostUnderTest::Call& call)
    {
        if (call.opcode == HostOpcode::Automate)
            host.effect->setParameter(host.effect, call.index, 0.125f);
    };
    host.calls.clear();
    plugin.SetParameter(1, 0.5, false);
    plugin.SendAllAutomation(plugin.row);
    for (const int index : {-1, 2})
        plugin.GetAdapter()->SendAutomation(index, 1.0);
    ASSERT_EQ(host.calls.size(), 6u);
    EXPECT_EQ(host.calls[3].opcode, HostOpcode::BeginEdit);
    EXPECT_EQ(host.calls[4].opcode, HostOpcode::Automate);
    EXPECT_EQ(host.calls[4].index, 1);
    EXPECT_EQ(host.calls[4].opt, 0.5f);
    EXPECT_EQ(host.calls[5].opcode, HostOpcode::EndEdit);
    EXPECT_EQ(plugin.GetParameter(1), 0.5);
    host.effect->setParameter(host.effect, 1, 0.125f); // of its own accord
    EXPECT_EQ(plugin.GetParameter(1), 0.125);
    EXPECT_TRUE(plugin.ChangeEditorSize(450, 100));
    EXPECT_EQ(host.calls.back().index, 450);
    EXPECT_EQ(host.calls.back().value, 100);
}

TEST(MAudioPluginVSTAdapter, TellsTheHostOfAnotherLatencyOnce)
{
    HostUnderTest host;
    auto owned = std::make_unique<PluginUnderTest>(1, 1, 2);
    PluginUnderTest& plugin = *owned;
    plugin.nextLatency = 32;
    host.Load(std::move(owned));
    EXPECT_EQ(host.effect->initialDelay, 32);
    EXPECT_EQ(host.Count(HostOpcode::IOChanged), 0);
    plugin.nextLatency = 64;
    host.Ask(EffectOpcode::MainsChanged, 0, 1);
    plugin.GetAdapter()->LatencyChanged();
    EXPECT_EQ(host.effect->initialDelay, 64);
    EXPECT_EQ(host.Count(HostOpcode::IOChanged), 1);
}

} // namespace
