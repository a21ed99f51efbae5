// Drives the effect as a host out of its mind would, through the record of the interface alone:
// any opcode with any numbers, blocks and events of any size, states of its own and of strangers.
// Pointers are null or good. Whatever comes, texts stay in their buffers and the output finite.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "host/vst2/MAudioPluginVSTAdapter.h"

namespace
{

using namespace Vst2;

constexpr int MaxSamples = 5000; ///< beyond the longest block that is announced
constexpr int MaxRow = 16;       ///< channels of the host, more than the effect asks for

void Demand(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

class Driver
{
public:
    explicit Driver(FuzzedDataProvider& source) : data(source)
    {
        current = this;
        version = PickNumber();
        effect = CreateEffect(data.ConsumeIntegralInRange(0, 9) > 0 ? &OnCall : nullptr);
        Demand(effect != nullptr && effect->numInputs <= MaxRow && effect->numOutputs <= MaxRow);
    }
    ~Driver()
    {
        Ask(EffectOpcode::Close);
        current = nullptr;
    }
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    void Step()
    {
        switch (data.ConsumeIntegralInRange(0, 11))
        {
        case 0:
            AskAnything();
            break;
        case 1:
            KeepChunk();
            break;
        case 2:
            RestoreChunk();
            break;
        case 3:
            effect->setParameter(effect, PickIndex(), data.ConsumeFloatingPoint<float>());
            break;
        case 4:
            Demand(std::isfinite(effect->getParameter(effect, PickIndex())));
            break;
        case 5:
            SendEvents();
            break;
        case 6:
            Arrange();
            break;
        case 7:
            Ask(EffectOpcode::SetSampleRate, 0, 0, nullptr, PickRate());
            break;
        case 8:
            Ask(EffectOpcode::SetBlockSize, 0, PickNumber());
            Ask(EffectOpcode::MainsChanged, 0, data.ConsumeBool() ? 1 : 0);
            break;
        case 9:
            ParseText();
            break;
        default:
            PlayBlock();
            break;
        }
    }

private:
    static std::intptr_t OnCall(AEffect* /*effect*/, std::int32_t opcode, std::int32_t index,
                                std::intptr_t /*value*/, void* /*ptr*/, float opt)
    {
        return current->Answer(static_cast<HostOpcode>(opcode), index, opt);
    }

    std::intptr_t Answer(HostOpcode opcode, std::int32_t index, float opt)
    {
        if (opcode == HostOpcode::Version)
            return version;
        if (opcode == HostOpcode::Automate)
            effect->setParameter(effect, index, opt);
        if (opcode != HostOpcode::GetTime)
            return data.ConsumeIntegralInRange(-1, 1);
        if (data.ConsumeBool())
            return 0;
        for (double* const field :
             {&time.ppqPos, &time.tempo, &time.barStartPos, &time.cycleStartPos, &time.cycleEndPos})
            *field = data.ConsumeBool() ? data.ConsumeFloatingPointInRange(-10.0, 300.0)
                                        : data.ConsumeFloatingPoint<double>();
        time.timeSigNumerator = PickNumber();
        time.timeSigDenominator = PickNumber();
        time.flags = data.ConsumeIntegral<std::int32_t>();
        return reinterpret_cast<std::intptr_t>(&time);
    }

    std::intptr_t Ask(EffectOpcode opcode, std::int32_t index = 0, std::intptr_t value = 0,
                      void* ptr = nullptr, float opt = 0.0f)
    {
        return effect->dispatcher(effect, static_cast<std::int32_t>(opcode), index, value, ptr,
                                  opt);
    }

    int PickIndex() { return data.ConsumeIntegralInRange(-2, effect->numParams + 2); }
    std::int32_t PickNumber()
    {
        return data.ConsumeBool() ? data.ConsumeIntegralInRange(-3, 4096)
                                  : data.ConsumeIntegral<std::int32_t>();
    }
    /// High ones only rarely, as they take long.
    float PickRate()
    {
        return data.ConsumeIntegralInRange(0, 15) > 0
                   ? data.ConsumeFloatingPointInRange(-10.0f, 192000.0f)
                   : data.ConsumeFloatingPoint<float>();
    }

    /// Any opcode that takes no address in its value; the pointer leads to a buffer as hosts have
    /// it for the longest text or record, and is not to be written to behind that.
    void AskAnything()
    {
        constexpr std::size_t Guard = 64;
        const auto opcode = static_cast<EffectOpcode>(
            data.ConsumeBool() ? data.ConsumeIntegralInRange(-1, 82) : PickNumber());
        using enum EffectOpcode;
        for (const EffectOpcode own :
             {Close, SetChunk, ProcessEvents, SetSpeakerArrangement, GetSpeakerArrangement})
            if (opcode == own)
                return;
        std::vector<char> buffer(BufferSize(opcode) + Guard, '\x5A');
        const bool isText = opcode == CanDo || opcode == String2Parameter;
        if (isText)
            buffer.back() = '\0';
        void* const ptr = data.ConsumeBool() ? buffer.data() : nullptr;
        Ask(opcode, PickNumber(), PickNumber(), ptr, data.ConsumeFloatingPoint<float>());
        if (!isText)
            Demand(std::all_of(buffer.end() - Guard, buffer.end(),
                               [](char c) { return c == '\x5A'; }));
    }

    static std::size_t BufferSize(EffectOpcode opcode)
    {
        using enum EffectOpcode;
        switch (opcode)
        {
        case GetParamLabel:
        case GetParamDisplay:
            return 8;
        case GetProgramName:
        case GetProgramNameIndexed:
            return 24;
        case GetParamName:
        case GetEffectName:
            return 32;
        case GetInputProperties:
        case GetOutputProperties:
            return sizeof(VstPinProperties);
        default:
            return 64;
        }
    }

    void KeepChunk()
    {
        void* bytes = nullptr;
        const std::intptr_t size = Ask(EffectOpcode::GetChunk, PickNumber(), 0, &bytes);
        Demand(size > 0 && bytes != nullptr);
        const auto* const begin = static_cast<const std::uint8_t*>(bytes);
        chunk.assign(begin, begin + size);
    }

    void RestoreChunk()
    {
        std::vector<std::uint8_t> bytes = chunk;
        if (data.ConsumeBool() && !bytes.empty())
            bytes[data.ConsumeIntegralInRange<std::size_t>(0, bytes.size() - 1)] ^= 1;
        else if (data.ConsumeBool())
            bytes =
                data.ConsumeBytes<std::uint8_t>(data.ConsumeIntegralInRange<std::size_t>(0, 64));
        Ask(EffectOpcode::SetChunk, PickNumber(), static_cast<std::intptr_t>(bytes.size()),
            bytes.data());
    }

    void ParseText()
    {
        std::string text = data.ConsumeRandomLengthString(40);
        Ask(EffectOpcode::String2Parameter, PickIndex(), 0, text.data());
    }

    void Arrange()
    {
        std::array<VstSpeakerArrangement, 2> sides;
        for (VstSpeakerArrangement& side : sides)
            side.numChannels = data.ConsumeIntegralInRange(0, 3) > 0
                                   ? data.ConsumeIntegralInRange(0, 9)
                                   : PickNumber();
        Ask(EffectOpcode::SetSpeakerArrangement, 0,
            data.ConsumeBool() ? reinterpret_cast<std::intptr_t>(&sides[0]) : 0,
            data.ConsumeBool() ? &sides[1] : nullptr);
    }

    void SendEvents()
    {
        struct
        {
            VstEvents head;
            std::array<VstEvent*, 8> more{};
        } record;
        std::array<VstMidiEvent, 10> events{};
        const auto count = data.ConsumeIntegralInRange<std::size_t>(0, events.size());
        for (std::size_t i = 0; i < count; ++i)
        {
            VstMidiEvent& event = events[i];
            event.type = data.ConsumeIntegralInRange(0, 7) > 0 ? 1 : PickNumber();
            event.deltaFrames = PickNumber();
            for (std::uint8_t& byte : event.midiData)
                byte = data.ConsumeIntegral<std::uint8_t>();
            if (data.ConsumeIntegralInRange(0, 15) > 0)
                record.head.events.data()[i] = reinterpret_cast<VstEvent*>(&event);
        }
        record.head.numEvents = static_cast<std::int32_t>(count);
        Ask(EffectOpcode::ProcessEvents, 0, 0, &record.head);
    }

    void PlayBlock()
    {
        const int samples = data.ConsumeIntegralInRange(-1, MaxSamples);
        for (std::size_t i = 0; i < blocks.size(); ++i)
            blocks[i].assign(static_cast<std::size_t>(std::max(0, samples)),
                             data.ConsumeFloatingPointInRange(-1.0f, 1.0f));
        // Rows as long as the host was told, so that a look behind them is seen.
        std::vector<float*> inputs(static_cast<std::size_t>(effect->numInputs));
        std::vector<float*> outputs(static_cast<std::size_t>(effect->numOutputs));
        for (std::vector<float*>* const row : {&inputs, &outputs})
            for (float*& block : *row)
                if (data.ConsumeIntegralInRange(0, 15) > 0)
                    block = blocks[data.ConsumeIntegralInRange<std::size_t>(0, blocks.size() - 1)]
                                .data();
        const bool hasInputs = data.ConsumeIntegralInRange(0, 15) > 0;
        const bool hasOutputs = data.ConsumeIntegralInRange(0, 15) > 0;
        const ProcessFunction process =
            data.ConsumeBool() ? effect->processReplacing : effect->process;
        process(effect, hasInputs ? inputs.data() : nullptr, hasOutputs ? outputs.data() : nullptr,
                samples);
        for (const std::vector<float>& block : blocks)
            Demand(std::ranges::all_of(block, [](float x) { return std::isfinite(x); }));
    }

    static inline Driver* current = nullptr;

    FuzzedDataProvider& data;
    AEffect* effect = nullptr;
    std::intptr_t version = 0;
    VstTimeInfo time;
    std::vector<std::uint8_t> chunk;
    std::array<std::vector<float>, 4> blocks;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Driver driver(data);
    for (int step = 0; step < 40 && data.remaining_bytes() > 0; ++step)
        driver.Step();
    return 0;
}
