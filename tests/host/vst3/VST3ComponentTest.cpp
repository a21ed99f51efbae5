#include <bit>
#include <cmath>

#include <gtest/gtest.h>

#include "host/MAudioPlugin.h"
#include "host/vst3/MAudioPluginVST3Adapter.h"
#include "tests/host/vst3/FakeVst3Host.h"

using namespace Vst3;
using fakehost::Block;
using fakehost::Instance;

namespace
{

constexpr SpeakerArrangement Mono = SpeakerArr::kMono;
constexpr SpeakerArrangement Stereo = SpeakerArr::kStereo;
constexpr SpeakerArrangement Centre = 0x4;

using Arrangements = std::vector<SpeakerArrangement>;

struct ArrangementCase
{
    const char* what;
    Arrangements inputs;
    Arrangements outputs;
    Result answer;
    SpeakerArrangement input; ///< afterwards
    SpeakerArrangement output;
};

/// One after the other on one plugin that is two channels wide.
const ArrangementCase StereoCases[] = {
    {"what is there", {Stereo}, {Stereo}, kResultTrue, Stereo, Stereo},
    {"one side alone keeps both", {Mono}, {Stereo}, kResultFalse, Stereo, Stereo},
    {"both", {Mono}, {Mono}, kResultTrue, Mono, Mono},
    {"the output alone", {Mono}, {Stereo}, kResultFalse, Mono, Mono},
    {"a side that is not given stays", {}, {Mono}, kResultTrue, Mono, Mono},
    {"and so do both", {}, {Stereo}, kResultFalse, Mono, Mono},
    {"another single speaker", {Centre}, {Centre}, kResultTrue, Centre, Centre},
    {"too wide", {0xFF}, {0xFF}, kResultFalse, Stereo, Stereo},
    {"too wide again", {0xFF}, {0xFF}, kResultFalse, Stereo, Stereo},
    {"too wide on one side", {Mono}, {~SpeakerArrangement{0}}, kResultFalse, Stereo, Stereo},
    {"more buses than there are", {Mono, Mono}, {Mono}, kResultFalse, Mono, Mono},
    {"no outputs", {Stereo}, {0}, kResultFalse, Mono, Mono},
    {"no inputs", {0}, {Stereo}, kResultTrue, 0, Stereo},
    {"inputs again", {Stereo}, {Mono}, kResultTrue, Stereo, Mono},
};
/// The same for eight channels.
const ArrangementCase SurroundCases[] = {
    {"stereo at first", {Stereo}, {Stereo}, kResultTrue, Stereo, Stereo},
    {"eight", {0xFF}, {0xFF}, kResultTrue, 0xFF, 0xFF},
    {"too wide", {0x1FF}, {0x1FF}, kResultFalse, 0x737, 0x737},
    {"mono", {Mono}, {Mono}, kResultTrue, Mono, Mono},
};

/// Arrangement, record and sound have to agree, whatever was answered.
void ExpectBus(IComponent& component, IAudioProcessor& processor, std::int32_t direction,
               SpeakerArrangement wanted, const char* what)
{
    SpeakerArrangement present = 1;
    BusInfo info{};
    ASSERT_EQ(component.getBusCount(kAudio, direction), 1) << what;
    EXPECT_EQ(processor.getBusArrangement(direction, 0, present), kResultTrue) << what;
    EXPECT_EQ(component.getBusInfo(kAudio, direction, 0, info), kResultTrue) << what;
    EXPECT_EQ(present, wanted) << what;
    EXPECT_EQ(info.channelCount, std::popcount(wanted)) << what;
}

void ExpectArrangements(IComponent& component, std::span<const ArrangementCase> cases)
{
    void* found = nullptr;
    component.queryInterface(IAudioProcessor::Id.data(), &found);
    auto& processor = *static_cast<IAudioProcessor*>(found);
    for (const ArrangementCase& row : cases)
    {
        Arrangements inputs = row.inputs;
        Arrangements outputs = row.outputs;
        EXPECT_EQ(processor.setBusArrangements(
                      inputs.empty() ? nullptr : inputs.data(), int(inputs.size()),
                      outputs.empty() ? nullptr : outputs.data(), int(outputs.size())),
                  row.answer)
            << row.what;
        ExpectBus(component, processor, kInput, row.input, row.what);
        ExpectBus(component, processor, kOutput, row.output, row.what);
        Block block(64, std::popcount(row.output));
        block.data.numInputs = row.input != 0 ? 1 : 0;
        block.inputBus.numChannels = std::popcount(row.input);
        block.inputs.resize(8, std::vector<float>(64));
        block.inputPointers.resize(8, block.inputs.back().data());
        block.inputBus.channelBuffers32 = block.inputPointers.data();
        EXPECT_EQ(processor.process(block.data), kResultOk) << row.what;
        for (const std::vector<float>& output : block.outputs)
            EXPECT_TRUE(std::abs(output.back()) <= 1.0f) << row.what;
    }
    processor.release();
}

TEST(VST3Component, ArrangementsChangeOnBothSidesOrNone)
{
    const Instance instance;
    instance.component->initialize(nullptr);
    ExpectArrangements(*instance.component, StereoCases);

    SpeakerArrangement stereo = Stereo;
    EXPECT_EQ(instance.processor->setBusArrangements(nullptr, 1, &stereo, 1), kInvalidArgument);
    EXPECT_EQ(instance.processor->setBusArrangements(&stereo, 1, &stereo, -1), kInvalidArgument);
    instance.component->setActive(1);
    EXPECT_EQ(instance.processor->setBusArrangements(&stereo, 1, &stereo, 1), kResultFalse);
}

TEST(VST3Component, WidePluginTakesEightChannels)
{
    std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
    plugin->SetChannels(8, 8);
    plugin->InitProcessing();
    auto* const adapter = new MAudioPluginVST3Adapter(std::move(plugin));
    adapter->initialize(nullptr);
    ExpectArrangements(*adapter, SurroundCases);
    adapter->release();
}

TEST(VST3Component, BusRecordsAreExactAndOthersStayUntouched)
{
    const Instance instance;
    instance.component->initialize(nullptr);
    struct BusCase
    {
        std::int32_t media, direction;
        const char16_t* name;
    };
    for (const BusCase& row : {BusCase{kAudio, kInput, u"Stereo In"},
                               {kAudio, kOutput, u"Stereo Out"},
                               {kEvent, kInput, u"Midi In"}})
    {
        BusInfo first;
        BusInfo second;
        std::memset(&first, 0xAA, sizeof(first));
        std::memset(&second, 0x55, sizeof(second));
        EXPECT_EQ(instance.component->getBusInfo(row.media, row.direction, 0, first), kResultTrue);
        EXPECT_EQ(instance.component->getBusInfo(row.media, row.direction, 0, second), kResultTrue);
        EXPECT_EQ(std::memcmp(&first, &second, sizeof(first)), 0);
        EXPECT_EQ(std::u16string(first.name), row.name);
        EXPECT_EQ(first.flags, BusInfo::kDefaultActive);
        EXPECT_EQ(instance.component->activateBus(row.media, row.direction, 0, 1), kResultTrue);
    }
    BusInfo untouched;
    std::memset(&untouched, 0xAA, sizeof(untouched));
    const BusInfo before = untouched;
    for (const auto& [media, direction, index] :
         {std::array{0, 0, 1}, {0, 1, -1}, {1, 1, 0}, {2, 0, 0}, {0, 2, 0}, {-1, -1, -1}})
    {
        EXPECT_NE(instance.component->getBusInfo(media, direction, index, untouched), kResultOk);
        EXPECT_NE(instance.component->activateBus(media, direction, index, 1), kResultOk);
    }
    EXPECT_EQ(std::memcmp(&untouched, &before, sizeof(before)), 0);
}

TEST(VST3Component, SetupTakesEveryRateAndRefusesDoubles)
{
    const Instance instance;
    instance.Start();
    for (const double rate :
         {22050.0, 44100.0, 1234.5678, 123456.78, 1234567.8, 0.0, 50.0, std::nan("")})
    {
        ProcessSetup setup{kOffline, kSample32, 8192, rate};
        EXPECT_EQ(instance.processor->setupProcessing(setup), kResultOk) << rate;
        Block block(256);
        EXPECT_EQ(instance.processor->process(block.data), kResultOk) << rate;
        EXPECT_NE(block.outputs[0][100], Block::Untouched) << rate;
        setup.symbolicSampleSize = kSample64;
        EXPECT_EQ(instance.processor->setupProcessing(setup), kResultFalse) << rate;
    }
    ProcessSetup endless{kOffline, kSample32, 64, INFINITY};
    EXPECT_EQ(instance.processor->setupProcessing(endless), kResultFalse);
}

TEST(VST3Component, StateComesBackWhateverTheStreamIsLike)
{
    const Instance source;
    source.Start();
    for (ParamID id = 0; id < 6; ++id)
        source.controller->setParamNormalized(id, 0.9 - 0.1 * id);
    source.controller->setParamNormalized(0x7FFF, 1.0);
    fakehost::Stream whole;
    ASSERT_EQ(source.component->getState(&whole), kResultOk);
    fakehost::Stream slow;
    slow.bytes = "in front";
    slow.most = 7;
    EXPECT_EQ(source.controller->getState(&slow), kResultOk);
    EXPECT_EQ(slow.bytes, "in front" + whole.bytes);
    fakehost::Stream full;
    full.room = whole.bytes.size() - 1;
    EXPECT_EQ(source.component->getState(&full), kResultFalse);

    const Instance target;
    target.Start();
    fakehost::Handler handler;
    target.controller->setComponentHandler(&handler);
    slow.position = 8;
    EXPECT_EQ(target.component->setState(&slow), kResultOk);
    EXPECT_EQ(target.controller->setComponentState(&slow), kResultOk);
    EXPECT_EQ(handler.log, "restart 4;");
    EXPECT_EQ(target.controller->getParamNormalized(0x7FFF), 1.0);
    fakehost::Stream again;
    target.component->getState(&again);
    EXPECT_EQ(again.bytes, whole.bytes);

    struct BrokenCase
    {
        const char* what;
        std::string bytes;
        std::int32_t claim;
    };
    for (const BrokenCase& row : {BrokenCase{"empty", "", 0},
                                  {"foreign", std::string(3000, 'x'), 0},
                                  {"cut", whole.bytes.substr(0, whole.bytes.size() / 2), 0},
                                  {"claims more than asked for", whole.bytes, 1025},
                                  {"never ends", whole.bytes, 1024},
                                  {"less than nothing", whole.bytes, -5}})
    {
        fakehost::Stream broken;
        broken.bytes = row.bytes;
        broken.claim = row.claim;
        EXPECT_EQ(target.component->setState(&broken), kResultFalse) << row.what;
        fakehost::Stream after;
        target.component->getState(&after);
        EXPECT_EQ(after.bytes, whole.bytes) << row.what;
    }
    EXPECT_EQ(target.component->setState(nullptr), kInvalidArgument);
    EXPECT_EQ(handler.log, "restart 4;");
    target.controller->setComponentHandler(nullptr);
}

TEST(VST3Component, TheFirstStartTellsWhatValuesThereAre)
{
    const Instance instance;
    fakehost::Handler handler;
    instance.controller->setComponentHandler(&handler);
    for (const char* const told : {"restart 4;", ""})
    {
        handler.log.clear();
        EXPECT_EQ(instance.component->setActive(1), kResultOk);
        EXPECT_EQ(handler.log, told);
        EXPECT_EQ(instance.component->setActive(0), kResultOk);
    }
    instance.controller->setComponentHandler(nullptr);
}

} // namespace
