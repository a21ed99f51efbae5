#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "host/MAudioPlugin.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"
#include "tests/host/vst3/FakeVst3Host.h"

using namespace Vst3;
using fakehost::Block;
using fakehost::Instance;
using fakehost::Note;

namespace
{

/// Writes down what it is told, and copies its first input to its outputs.
class Recorder final : public MAudioPlugin
{
public:
    Recorder() { sendsMIDIOutput = true; }
    void InitProcessing() override { TakeLayout(); }
    void ProcessAudio(const float* const* inputs, float* const* outputs, int samples,
                      bool) noexcept override
    {
        for (int i = 0; i < GetOutputChannels(); ++i)
            for (int n = 0; n < samples && outputs[i] != nullptr; ++n)
                outputs[i][n] = inputs[0] != nullptr ? inputs[0][n] : -1.0f;
        suspendCount = 0;
        const std::uint8_t bytes[][3] = {{0x91, 60, 127}, {0x81, 60, 0}, {0xB2, 7, 100}, {0xF8}};
        for (const std::uint8_t* message : bytes)
            GenerateMIDIEvent(samples + 5, message);
    }
    void ProcessNote(int offset, double quarters, int channel, int note, double velocity,
                     bool on) override
    {
        log += (on ? "on " : "off ") + Line(offset, quarters, channel, note, velocity);
    }
    void ProcessPressure(int offset, double quarters, int channel, int note, double value) override
    {
        log += "press " + Line(offset, quarters, channel, note, value);
    }
    void Store(const MStorageDescriptor&) override {}
    void StoreSettings(const MStorageDescriptor&) override {}
    bool IsBypassed() const noexcept override { return false; }
    void SetBypassed(bool) override {}
    void OnCustomParameterChanged(MAutomationAdapter&) override {}
    void Suspend() { suspendCount = 1; }

    std::string log;

private:
    static std::string Line(int offset, double quarters, int channel, int note, double value)
    {
        char line[96];
        std::snprintf(line, sizeof(line), "%d %.4g %d %d %.2g;", offset, quarters, channel, note,
                      value);
        return line;
    }
};

TEST(VST3Processor, EventsComeThroughBothWays)
{
    auto owned = std::make_unique<Recorder>();
    Recorder& plugin = *owned;
    auto* const adapter = new MAudioPluginVST3Adapter(std::move(owned));
    adapter->initialize(nullptr);
    EXPECT_EQ(adapter->getBusCount(kEvent, kOutput), 1);
    ProcessSetup setup{kRealtime, kSample32, 256, 48000.0};
    adapter->setupProcessing(setup);
    fakehost::Events input;
    fakehost::Events output;
    input.list = {Note(Event::kNoteOnEvent, 1, 60, 0.5f, 240),
                  Note(Event::kNoteOffEvent, 1, 60, 0, 999),
                  Note(Event::kPolyPressureEvent, 2, 61, 1.0f, 0),
                  Note(Event::kNoteOnEvent, 17, 62, NAN, -3), Note(Event::kChordEvent, 0, 0, 0, 0)};
    ProcessContext context{};
    context.state = ProcessContext::kPlaying | ProcessContext::kProjectTimeMusicValid |
                    ProcessContext::kTempoValid;
    context.projectTimeMusic = 3.0;
    context.tempo = 120.0;
    Block block(256);
    block.data.inputEvents = &input;
    block.data.outputEvents = &output;
    block.data.processContext = &context;
    EXPECT_EQ(adapter->process(block.data), kResultOk);
    // 240 samples are 0.01 quarters at this tempo and rate, the last one 255.
    EXPECT_EQ(plugin.log, "on 240 3.01 1 60 0.5;off 255 3.011 1 60 0;press 0 3 2 61 1;"
                          "on 0 3 1 62 0;");
    EXPECT_TRUE(plugin.GetTime().playing);

    ASSERT_EQ(output.list.size(), 3u);
    EXPECT_EQ(output.list[0].type, Event::kNoteOnEvent);
    EXPECT_EQ(output.list[0].noteOn.velocity, 1.0f);
    EXPECT_EQ(output.list[0].sampleOffset, 255);
    EXPECT_EQ(output.list[1].type, Event::kNoteOffEvent);
    EXPECT_EQ(output.list[2].midiCCOut.controlNumber, 7);
    EXPECT_EQ(output.list[2].midiCCOut.channel, 2);

    // While the plugin prepares itself, events wait for the block behind.
    plugin.log.clear();
    plugin.Suspend();
    input.list.resize(1);
    adapter->process(block.data);
    EXPECT_EQ(plugin.log, "");
    input.list.clear();
    adapter->process(block.data);
    EXPECT_EQ(plugin.log, "on 0 3 1 60 0.5;");
    adapter->release();
}

TEST(VST3Processor, NullChannelsAreSilentAndExtraOnesZeroed)
{
    auto* const adapter = new MAudioPluginVST3Adapter(std::make_unique<Recorder>());
    adapter->initialize(nullptr);
    Block block(100, 3, 0.5f);
    EXPECT_EQ(adapter->process(block.data), kResultOk);
    EXPECT_EQ(block.outputs[1][99], 0.5f);
    EXPECT_EQ(block.outputs[2][99], 0.0f); // the plugin has but two
    EXPECT_EQ(block.outputBus.silenceFlags, 0u);

    block.inputPointers[0] = nullptr;
    block.outputPointers[1] = nullptr;
    EXPECT_EQ(adapter->process(block.data), kResultOk);
    EXPECT_EQ(block.outputs[0][99], 0.0f);
    EXPECT_EQ(block.outputs[1][99], 0.5f); // as it was
    block.data.numInputs = 0;
    EXPECT_EQ(adapter->process(block.data), kResultOk);
    EXPECT_EQ(block.outputs[0][99], -1.0f);

    block.inputBus.channelBuffers32 = nullptr;
    block.outputBus.channelBuffers32 = nullptr;
    block.data.numInputs = 1;
    EXPECT_EQ(adapter->process(block.data), kResultOk);
    block.data.inputs = nullptr;
    block.data.outputs = nullptr;
    EXPECT_EQ(adapter->process(block.data), kResultOk);
    adapter->release();
}

TEST(VST3Processor, LastPointOfAQueueCounts)
{
    const Instance instance;
    instance.Start();
    fakehost::Changes changes;
    changes.queues.emplace_back(1, std::vector{0.9, 0.125});
    changes.queues.emplace_back(0, std::vector<double>{});
    changes.queues.emplace_back(0x7FFF, std::vector{0.0, 0.5});
    changes.queues.emplace_back(5000, std::vector{1.0});
    changes.queues.emplace_back(4, std::vector{0.25, double(NAN)});
    changes.queues.emplace_back(2, std::vector{0.4}); // octaves, whole numbers
    fakehost::Changes made;
    const double cents = instance.controller->getParamNormalized(4);
    Block block(0);
    block.data.inputParameterChanges = &changes;
    block.data.outputParameterChanges = &made;
    EXPECT_EQ(instance.processor->process(block.data), kResultOk);
    EXPECT_EQ(instance.controller->getParamNormalized(0x7FFF), 0.0); // nothing without samples
    block.data.numSamples = 1;
    block.data.numInputs = block.data.numOutputs = 0;
    EXPECT_EQ(instance.processor->process(block.data), kResultOk);
    EXPECT_NEAR(instance.controller->getParamNormalized(1), 0.125, 1e-7);
    EXPECT_EQ(instance.controller->getParamNormalized(0x7FFF), 1.0);
    EXPECT_EQ(instance.controller->getParamNormalized(4), cents);
    // The host hears what was made of its values where that is another.
    ASSERT_EQ(made.queues.size(), 2u);
    EXPECT_EQ(made.queues[0].id, 0x7FFFu);
    EXPECT_EQ(made.queues[0].points, std::vector{1.0});
    EXPECT_EQ(made.queues[1].id, 2u);
    EXPECT_EQ(made.queues[1].points, std::vector{0.5});
}

} // namespace
