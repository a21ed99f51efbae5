// Drives the VST3 object as a careless host would: operations in any order, ids and indices out of
// range, states from strangers, blocks with missing channels. Whatever comes, the output of a block
// stays finite, and bus records and arrangements agree.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "tests/host/vst3/FakeVst3Host.h"

using namespace Vst3;

namespace
{

constexpr int MaxSamples = 5000;
constexpr double Numbers[] = {0.0, 1.0, 0.5, -1.0, 1e300, 1e-320, HUGE_VAL, 44100.0, 1234567.8};

class Driver
{
public:
    explicit Driver(FuzzedDataProvider& source) : data(source) {}
    ~Driver() { instance.controller->setComponentHandler(nullptr); }
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    void Step()
    {
        switch (data.ConsumeIntegralInRange(0, 9))
        {
        case 0:
            ChangeLife();
            break;
        case 1:
            Arrange();
            break;
        case 2:
            SetUp();
            break;
        case 3:
            AskComponent();
            break;
        case 4:
            AskController();
            break;
        case 5:
            LoadState();
            break;
        default:
            PlayBlock();
            break;
        }
    }

private:
    double PickNumber()
    {
        return data.ConsumeBool() ? data.PickValueInArray(Numbers)
                                  : data.ConsumeFloatingPoint<double>();
    }
    std::int32_t PickIndex() { return data.ConsumeIntegralInRange(-2, 15); }
    ParamID PickId()
    {
        if (data.ConsumeBool())
            return static_cast<ParamID>(PickIndex());
        return data.ConsumeBool() ? 0x7FFF : data.ConsumeIntegral<std::uint32_t>();
    }

    void ChangeLife()
    {
        switch (data.ConsumeIntegralInRange(0, 4))
        {
        case 0:
            instance.component->initialize(data.ConsumeBool() ? &handler : nullptr);
            break;
        case 1:
            instance.component->terminate();
            break;
        case 2:
            instance.controller->setComponentHandler(data.ConsumeBool() ? &handler : nullptr);
            handler.echo = data.ConsumeBool() ? instance.controller : nullptr;
            break;
        default:
            instance.component->setActive(data.ConsumeBool() ? 1 : 0);
            break;
        }
    }

    void Arrange()
    {
        std::array<SpeakerArrangement, 4> wanted{};
        for (SpeakerArrangement& arrangement : wanted)
            arrangement = data.ConsumeBool() ? data.ConsumeIntegralInRange<std::uint64_t>(0, 7)
                                             : data.ConsumeIntegral<std::uint64_t>();
        const auto count = [&] { return data.ConsumeIntegralInRange(-1, 2); };
        const std::int32_t inputs = count();
        const std::int32_t outputs = count();
        const Result answer = instance.processor->setBusArrangements(
            data.ConsumeBool() ? wanted.data() : nullptr, inputs, wanted.data() + 2, outputs);
        for (const std::int32_t direction : {kInput, kOutput})
            for (std::int32_t i = 0; i < instance.component->getBusCount(kAudio, direction); ++i)
            {
                BusInfo info{};
                SpeakerArrangement present = 0;
                if (instance.component->getBusInfo(kAudio, direction, i, info) != kResultOk ||
                    instance.processor->getBusArrangement(direction, i, present) != kResultOk ||
                    info.channelCount != std::popcount(present))
                    std::abort();
                const std::int32_t asked = direction == kInput ? inputs : outputs;
                if (answer == kResultTrue && i < asked &&
                    present != wanted[static_cast<std::size_t>(direction * 2 + i)])
                    std::abort();
            }
    }

    void SetUp()
    {
        ProcessSetup setup{data.ConsumeIntegralInRange(-1, 3), data.ConsumeIntegralInRange(-1, 1),
                           data.ConsumeIntegral<std::int16_t>(), PickNumber()};
        instance.processor->setupProcessing(setup);
        instance.processor->setProcessing(data.ConsumeBool() ? 1 : 0);
    }

    void AskComponent()
    {
        BusInfo info{};
        Uid id{};
        const std::int32_t media = data.ConsumeIntegralInRange(-1, 2);
        const std::int32_t direction = data.ConsumeIntegralInRange(-1, 2);
        instance.component->getBusInfo(media, direction, PickIndex(), info);
        instance.component->activateBus(media, direction, PickIndex(), 1);
        instance.component->getControllerClassId(id.data());
        instance.processor->getLatencySamples();
        instance.processor->getTailSamples();
        void* found = nullptr;
        if (instance.component->queryInterface(id.data(), &found) == kResultOk)
            instance.component->release();
    }

    void AskController()
    {
        const ParamID id = PickId();
        ParameterInfo info{};
        String128 text{};
        double value = PickNumber();
        IEditController& controller = *instance.controller;
        controller.getParameterInfo(PickIndex(), info);
        controller.setParamNormalized(id, value);
        if (!std::isfinite(controller.getParamNormalized(id)))
            std::abort();
        controller.getParamStringByValue(id, value, text);
        if (data.ConsumeBool())
        {
            const std::string bytes = data.ConsumeRandomLengthString(40);
            std::copy(bytes.begin(), bytes.end(), text);
        }
        controller.getParamValueByString(id, text, value);
    }

    void LoadState()
    {
        fakehost::Stream stream;
        if (data.ConsumeBool())
        {
            instance.component->getState(&stream);
            if (data.ConsumeBool())
                stream.bytes.resize(
                    data.ConsumeIntegralInRange<std::size_t>(0, stream.bytes.size()));
        }
        else
            stream.bytes = data.ConsumeRandomLengthString(2000);
        stream.most = data.ConsumeIntegralInRange<std::size_t>(1, 2000);
        stream.claim = data.ConsumeBool() ? 0 : data.ConsumeIntegral<std::int16_t>();
        instance.controller->setState(&stream);
    }

    Event PickEvent()
    {
        Event event{};
        event.type = static_cast<std::uint16_t>(data.ConsumeIntegralInRange(0, 8));
        event.sampleOffset = data.ConsumeIntegral<std::int16_t>();
        event.noteOn.channel = data.ConsumeIntegral<std::int16_t>();
        event.noteOn.pitch = data.ConsumeIntegral<std::int16_t>();
        event.noteOn.velocity = static_cast<float>(PickNumber());
        if (event.type == Event::kDataEvent)
            event.data = {data.ConsumeIntegralInRange<std::uint32_t>(0, 3), 0,
                          data.ConsumeBool() ? sysEx.data() : nullptr};
        return event;
    }

    void PlayBlock()
    {
        const int samples = data.ConsumeBool() ? data.ConsumeIntegralInRange(-1, 64)
                                               : data.ConsumeIntegralInRange(-1, MaxSamples);
        fakehost::Block block(std::max(samples, 0), data.ConsumeIntegralInRange(0, 10));
        for (std::vector<float>& output : block.outputs)
            std::ranges::fill(output, 0.0f);
        for (std::size_t i = 0; i < block.inputPointers.size(); ++i)
        {
            if (data.ConsumeBool())
                block.inputPointers[i] = nullptr;
            const auto place = data.ConsumeIntegralInRange<std::size_t>(0, 9);
            block.outputPointers[i] =
                place < block.outputs.size() ? block.outputs[place].data() : nullptr;
        }
        fakehost::Changes changes;
        fakehost::Events events;
        for (int i = data.ConsumeIntegralInRange(0, 3); i > 0; --i)
        {
            changes.queues.emplace_back(PickId(), std::vector{PickNumber()});
            events.list.push_back(PickEvent());
        }
        ProcessContext context{};
        context.state = data.ConsumeIntegral<std::uint32_t>();
        context.projectTimeMusic = PickNumber();
        context.tempo = PickNumber();
        context.barPositionMusic = PickNumber();
        context.cycleEndMusic = PickNumber();
        context.timeSigNumerator = PickIndex();
        context.timeSigDenominator = PickIndex();

        block.data.numSamples = samples;
        block.data.symbolicSampleSize =
            data.ConsumeIntegralInRange(0, 7) == 0 ? kSample64 : kSample32;
        block.data.numInputs = data.ConsumeIntegralInRange(-1, 1);
        block.data.numOutputs = data.ConsumeIntegralInRange(-1, 1);
        if (data.ConsumeIntegralInRange(0, 7) == 0)
            block.data.inputs = nullptr;
        if (data.ConsumeIntegralInRange(0, 7) == 0)
            block.outputBus.channelBuffers32 = nullptr;
        block.data.inputParameterChanges = &changes;
        block.data.inputEvents = &events;
        block.data.outputEvents = &events;
        block.data.processContext = data.ConsumeBool() ? &context : nullptr;
        instance.processor->process(block.data);
        for (const std::vector<float>& output : block.outputs)
            for (const float sample : output)
                if (!std::isfinite(sample))
                    std::abort();
    }

    FuzzedDataProvider& data;
    fakehost::Handler handler;
    fakehost::Instance instance;
    std::array<std::uint8_t, 3> sysEx = {0x90, 60, 100};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Driver driver(data);
    while (data.remaining_bytes() > 0)
        driver.Step();
    return 0;
}
