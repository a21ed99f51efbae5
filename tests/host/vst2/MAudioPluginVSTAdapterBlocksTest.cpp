#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/host/vst2/HostUnderTest.h"

using namespace Vst2;

namespace
{

using Block = std::vector<float>;

TEST(MAudioPluginVSTAdapter, TranslatesTheTransport)
{
    constexpr int All = 0x3E00; // position, tempo, bars, cycle and signature are valid
    struct Case
    {
        const char* what;
        int flags;
        double position, cycleStart, cycleEnd;
        bool isPlaying, isJump;
        double expectedPosition, expectedLoopEnd;
    };
    constexpr Case Cases[] = {
        {"stopped", All, 1.0, 0.0, 0.0, false, false, 1.0, -1.0},
        {"two quarters are no jump", All | 2, 2.0, 0.0, 4.0, true, false, 2.0, 4.0},
        {"nor are two back", All | 2, 0.0, 4.0, 4.0, true, false, 0.0, -1.0},
        {"more are", All | 2, 2.001, 0.0, 4.0, true, true, 2.001, 4.0},
        {"and on", All | 2, 2.5, 0.0, 4.0, true, false, 2.5, 4.0},
        {"told without the marks of what is told", 2, 3.0, 0.0, 4.0, true, false, 3.0, 4.0},
        {"stopped again", All, 50.0, 0.0, 4.0, false, false, 50.0, 4.0},
    };
    HostUnderTest host;
    auto owned = std::make_unique<PluginUnderTest>(1, 1, 2);
    PluginUnderTest& plugin = *owned;
    host.Load(std::move(owned));
    Block block(16);
    float* channels[] = {block.data(), block.data()};
    VstTimeInfo info;
    info.tempo = 90.0;
    info.barStartPos = 1.26;
    info.timeSigNumerator = 6;
    info.timeSigDenominator = 8;
    host.time = &info;
    for (const Case& row : Cases)
    {
        info.flags = row.flags;
        info.ppqPos = row.position;
        info.cycleStartPos = row.cycleStart;
        info.cycleEndPos = row.cycleEnd;
        host.effect->processReplacing(host.effect, channels, channels, 16);
        const MAudioPluginTime& time = plugin.GetTime();
        EXPECT_EQ(time.position, row.expectedPosition) << row.what;
        EXPECT_EQ(time.loopEnd, row.expectedLoopEnd) << row.what;
        EXPECT_EQ(time.playing, row.isPlaying) << row.what;
        EXPECT_EQ(time.transportJumped, row.isJump) << row.what;
        EXPECT_EQ(time.tempo, 90.0);
        EXPECT_EQ(time.barStart, 1.5); // the nearest eighth
        EXPECT_EQ(time.timeSigNumerator, 6);
        EXPECT_EQ(host.calls.back().value, 0x3EC7);
    }
    host.time = nullptr; // then all stays
    host.effect->processReplacing(host.effect, channels, channels, 16);
    EXPECT_EQ(plugin.GetTime().position, 50.0);
    EXPECT_EQ(plugin.GetTime().tempo, 90.0);
}

TEST(MAudioPluginVSTAdapter, SpreadsTheHostsRowOfChannels)
{
    struct Case
    {
        std::intptr_t version;
        int buses, busChannels;
        std::array<int, 16> expected; ///< places in the row; -1: none
    };
    constexpr int No = -1;
    constexpr Case Cases[] = {
        {2400, 1, 2, {0, 1, 1, 1, 1, 1, 1, 1, No, No, No, No, No, No, No, No}},
        {2400, 2, 2, {0, 1, 1, 1, 1, 1, 1, 1, 2, 3, 3, 3, 3, 3, 3, 3}},
        {2, 2, 2, {0, 1, 1, 1, 1, 1, 1, 1, No, No, No, No, No, No, No, No}},
        {2400, 2, 1, {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1}},
        {2400, 2, 8, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
    };
    for (const Case& row : Cases)
    {
        HostUnderTest host(row.version);
        auto owned = std::make_unique<PluginUnderTest>(row.buses, row.buses, row.busChannels);
        const PluginUnderTest& plugin = *owned;
        host.Load(std::move(owned));
        const auto count = static_cast<std::size_t>(host.effect->numInputs);
        Block samples(2 * count);
        std::vector<float*> inputs; // exactly as many as the host was told
        std::vector<float*> outputs;
        for (std::size_t i = 0; i < count; ++i)
        {
            inputs.push_back(&samples[i]);
            outputs.push_back(&samples[count + i]);
        }
        host.effect->processReplacing(host.effect, inputs.data(), outputs.data(), 1);
        for (std::size_t i = 0; i < 16; ++i)
        {
            const int place = row.expected[i];
            const auto at = static_cast<std::size_t>(place);
            EXPECT_EQ(plugin.inputs[i], place == No ? nullptr : inputs[at]) << i;
            EXPECT_EQ(plugin.outputs[i], place == No ? nullptr : outputs[at]) << i;
        }
        host.effect->processReplacing(host.effect, nullptr, outputs.data(), 1);
        EXPECT_EQ(plugin.inputs[0], nullptr);
        host.effect->process(host.effect, inputs.data(), nullptr, 1);
        host.effect->process(host.effect, inputs.data(), outputs.data(), 0);
        host.effect->process(host.effect, inputs.data(), outputs.data(), -1);
        EXPECT_EQ(plugin.blocks, 2);
    }
}

TEST(MAudioPluginVSTAdapter, ChannelsThatAMonoPluginLeavesOutAreSilent)
{
    HostUnderTest host;
    host.Load(std::make_unique<PluginUnderTest>(1, 1, 2));
    std::int32_t mono[] = {0, 1};
    host.Ask(EffectOpcode::SetSpeakerArrangement, 0, reinterpret_cast<std::intptr_t>(mono), mono);
    host.Ask(EffectOpcode::MainsChanged, 0, 1);
    Block left(4, 0.5f);
    Block right(4, 0.5f);
    float* channels[] = {left.data(), right.data()};
    host.effect->process(host.effect, channels, channels, 4);
    EXPECT_EQ(right, Block(4, 0.5f)); // where it adds, it adds nothing
    host.effect->processReplacing(host.effect, channels, channels, 4);
    EXPECT_EQ(left, Block(4, 0.5f)); // the plugin's own, which did nothing
    EXPECT_EQ(right, Block(4, 0.0f));
    float* same[] = {left.data(), left.data()};
    host.effect->processReplacing(host.effect, same, same, 4);
    EXPECT_EQ(left, Block(4, 0.5f));
}

TEST(MAudioPluginVSTAdapter, EventsReachThePluginOnceAndInOrder)
{
    using Event = PluginUnderTest::Event;
    HostUnderTest host;
    auto owned = std::make_unique<PluginUnderTest>(1, 1, 2);
    PluginUnderTest& plugin = *owned;
    MAudioPluginVSTAdapter& adapter = host.Load(std::move(owned));
    Block block(16);
    float* channels[] = {block.data(), block.data()};
    const auto process = [&]
    { host.effect->processReplacing(host.effect, channels, channels, 16); };

    EXPECT_EQ(host.Send(3, {0x90, 60, 100}), 1); // at once
    EXPECT_EQ(plugin.received, (std::vector<Event>{{3, 60}}));
    {
        const MAudioPlugin::SuspendScope suspended(plugin);
        host.Send(4, {0x90, 61, 100});
        process();
        EXPECT_EQ(plugin.received.size(), 1u); // as the plugin would have made the host wait
    }
    const std::uint8_t played[] = {0x90, 62, 100};
    adapter.QueueMIDIEvent(5, played);
    host.Send(6, {0x90, 63, 100});
    process();
    adapter.QueueMIDIEvent(7, played);
    process();
    process();
    EXPECT_EQ(plugin.received, (std::vector<Event>{{3, 60}, {4, 61}, {5, 62}, {6, 63}, {7, 62}}));

    VstEvent other;
    other.type = VstEvent::SysEx;
    VstEvents events;
    events.numEvents = 2;
    events.events = {&other, nullptr};
    EXPECT_EQ(host.Ask(EffectOpcode::ProcessEvents, 0, 0, &events), 1);
    events.numEvents = -1;
    EXPECT_EQ(host.Ask(EffectOpcode::ProcessEvents, 0, 0, &events), 1);
    EXPECT_EQ(host.Ask(EffectOpcode::ProcessEvents, 0, 0, nullptr), 1);
    EXPECT_EQ(plugin.received.size(), 5u);
}

TEST(MAudioPluginVSTAdapter, SendsEventsSortedBehindTheBlock)
{
    HostUnderTest host;
    auto owned = std::make_unique<PluginUnderTest>(1, 1, 2);
    PluginUnderTest& plugin = *owned;
    plugin.SetMIDI(true, true);
    host.Load(std::move(owned));
    Block block(16);
    float* channels[] = {block.data(), block.data()};
    plugin.toSend = {{9, 1}, {2, 2}, {9, 3}, {0, 4}, {2, 5}};
    for (int i = 0; i < 2; ++i)
        host.effect->processReplacing(host.effect, channels, channels, 16);
    ASSERT_EQ(host.sent.size(), 1u);
    std::vector<PluginUnderTest::Event> sent;
    for (const VstMidiEvent& event : host.sent[0])
    {
        sent.push_back({event.deltaFrames, event.midiData[1]});
        EXPECT_EQ(event.type, 1);
        EXPECT_EQ(event.midiData[0], 0x90);
    }
    EXPECT_EQ(sent, (std::vector<PluginUnderTest::Event>{{0, 4}, {2, 2}, {2, 5}, {9, 1}, {9, 3}}));

    plugin.toSend.assign(MIDIQueue::Capacity + 10, {1, 1});
    host.effect->processReplacing(host.effect, channels, channels, 16);
    EXPECT_EQ(host.sent.back().size(), MIDIQueue::Capacity);
}

/// Hz, from the times of the first and the last rise through zero.
double MeasurePitch(const Block& sound, double rate)
{
    int cycles = -1;
    double first = 0.0;
    double last = 0.0;
    for (std::size_t i = 1; i < sound.size(); ++i)
        if (sound[i - 1] < 0.0f && sound[i] >= 0.0f)
        {
            const auto before = static_cast<double>(sound[i - 1]);
            last = static_cast<double>(i) - static_cast<double>(sound[i]) / (sound[i] - before);
            if (++cycles == 0)
                first = last;
        }
    return cycles * rate / (last - first);
}

TEST(MAudioPluginVSTAdapter, NotesSetThePitch)
{
    HostUnderTest host;
    AEffect& effect = host.Load();
    host.Ask(EffectOpcode::SetSampleRate, 0, 0, nullptr, 48000.0f);
    host.Ask(EffectOpcode::SetBlockSize, 0, 4800);
    host.Ask(EffectOpcode::MainsChanged, 0, 1);
    Block sound(4800);
    Block right(4800);
    float* channels[] = {sound.data(), right.data()};
    for (const int note : {69, 81, 50})
    {
        host.Send(0, {0x90, static_cast<std::uint8_t>(note), 100});
        effect.processReplacing(&effect, channels, channels, 4800);
        EXPECT_NEAR(MeasurePitch(sound, 48000.0), 440.0 * std::exp2((note - 69) / 12.0), 0.1);
    }
}

TEST(MAudioPluginVSTAdapter, InPlaceAndApartSoundTheSame)
{
    constexpr int Length = 3000;
    Block results[3][2];
    for (int way = 0; way < 3; ++way) // apart, in place, added
    {
        HostUnderTest host; // blocks may come before anything else
        AEffect& effect = host.Load();
        effect.setParameter(&effect, 0, 0.7f); // of the input too
        Block input[2];
        float* inputs[2];
        float* outputs[2];
        for (std::size_t c = 0; c < 2; ++c)
        {
            for (int i = 0; i < Length; ++i)
                input[c].push_back(std::sin(0.01f * static_cast<float>(i * (c == 0 ? 1 : 3))));
            results[way][c].assign(Length, way == 2 ? 0.25f : 77.0f);
        }
        for (int done = 0, n = 1; done < Length; done += n, n = std::min(n * 2, Length - done))
        {
            for (std::size_t c = 0; c < 2; ++c)
            {
                inputs[c] = input[c].data() + done;
                outputs[c] = way == 1 ? inputs[c] : results[way][c].data() + done;
            }
            (way == 2 ? effect.process : effect.processReplacing)(&effect, inputs, outputs, n);
        }
        if (way == 1)
            std::ranges::copy(input, results[way]);
    }
    EXPECT_NE(results[0][0], results[0][1]);
    for (std::size_t c = 0; c < 2; ++c)
    {
        EXPECT_EQ(results[0][c], results[1][c]);
        for (std::size_t i = 0; i < Length; ++i)
            ASSERT_EQ(results[2][c][i], results[0][c][i] + 0.25f);
    }
}

} // namespace
