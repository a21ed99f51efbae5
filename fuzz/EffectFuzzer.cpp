// Drives the oscillator through its entry point with calls in any order: states from strangers,
// typed texts, MIDI, changes of layout, and blocks. Whatever comes, the output stays finite.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <span>

#include <fuzzer/FuzzedDataProvider.h>

#include "effect/MAudioEffectPlugin.h"
#include "effect/MPluginInfo.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "effect/parameters/MParameterList.h"
#include "effect/parameters/MParameterOwner.h"
#include "foundation/threads/MLock.h"
#include "foundation/xml/MXMLItem.h"
#include "shell/midi/MMIDIProcessor.h"

namespace
{

constexpr int MaxBlock = 64;
constexpr int MaxChannels = 8;

using Keys = std::span<const char* const>;

constexpr const char* SettingsKeys[] = {
    "NoteIndex",      "value",          "parameterDry",       "parameterWet",     "parameterPitch",
    "parameterCents", "parameterWidth", "parameterFrequency", "parameterOctaves",
};
constexpr const char* ShapeKeys[] = {"value", "Smoothness", "EnvelopeDepth"};
constexpr const char* StepKeys[] = {"StepItemCount", "StepDepth", "Item0", "Item1", "Item31"};
constexpr const char* OperationsKeys[] = {
    "Skew",           "FullSkew",        "Halve",           "Harmonic2",
    "HarmonicPhase2", "Harmonic5",       "HarmonicPhase5",  "Harmonic8",
    "HarmonicPhase8", "TransformEnable", "TransformEnable", "AmplitudeTransformEnable",
};
constexpr const char* CurveKeys[] = {"DrawingMode", "SnapToGridX"};
constexpr const char* PointKeys[] = {
    "x", "y", "c", "cx", "Type", "Type", "Flags", "fixed", "SmoothingType", "SmoothX1", "SmoothX2",
};
constexpr const char* Names[] = {
    "Mode 1", "Mode 2", "Mode 3", "Free 1", "Smooth 1", "Smooth 2", "Stairs", "Pulses", "1", "-1",
};

class Driver final : public MParameterOwner
{
public:
    explicit Driver(FuzzedDataProvider& source) : data(source)
    {
        Call(MPluginCommand::SetHost);
        info = reinterpret_cast<MPluginInfo*>(Call(MPluginCommand::GetInfo));
        parameters.Wire(*reinterpret_cast<MAudioEffectPlugin*>(Call(MPluginCommand::GetInstance)),
                        *this);
        decoder.AddListener(*info->midiProcessor, MMIDIProcessorBase::AllChannels);
    }
    ~Driver() { Call(MPluginCommand::Destroy); }
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    void Step()
    {
        switch (data.ConsumeIntegralInRange(0, 6))
        {
        case 0:
            Load();
            break;
        case 1:
            TypeText();
            break;
        case 2:
            SendMidi();
            break;
        case 3:
            Call(MPluginCommand::InitProcessing, data.ConsumeIntegral<std::int32_t>(),
                 data.ConsumeIntegral<std::int32_t>());
            break;
        case 4:
            info->FindParameter(data.ConsumeIntegralInRange(0, 7))
                ->SetModulated(data.ConsumeBool());
            Call(MPluginCommand::ParameterChanged, data.ConsumeIntegral<std::int8_t>());
            break;
        default:
            PlayBlock();
            break;
        }
    }

private:
    std::intptr_t Call(MPluginCommand command, std::intptr_t a0 = 0, std::intptr_t a1 = 0,
                       std::intptr_t a2 = 0, std::intptr_t a3 = 0)
    {
        const MPluginCommandArguments arguments(a0, a1, a2, a3);
        const std::intptr_t result = TonvaleAudioEffectPluginInterface(
            plugin, static_cast<std::int32_t>(command), &arguments);
        if (command == MPluginCommand::SetHost)
            plugin = reinterpret_cast<void*>(result);
        return result;
    }

    MString PickText()
    {
        switch (data.ConsumeIntegralInRange(0, 3))
        {
        case 0:
            return MString::FromUTF8(data.ConsumeRandomLengthString(24));
        case 1:
            return data.PickValueInArray(Names);
        default:
            return MString::FromDouble(data.ConsumeIntegral<std::int8_t>() * 0.02, 12);
        }
    }

    MXMLItem& SetAttributes(MXMLItem& item, Keys keys)
    {
        for (int i = data.ConsumeIntegralInRange(0, 6); i > 0; --i)
            item.SetAttribute(keys[data.ConsumeIntegralInRange<std::size_t>(0, keys.size() - 1)],
                              PickText());
        return item;
    }

    void AddCurve(MXMLItem& item, const char* name)
    {
        if (data.ConsumeBool())
            return;
        MXMLItem& curve = SetAttributes(item.AddSubItem(name), CurveKeys);
        for (int i = data.ConsumeIntegralInRange(0, 9); i > 0; --i)
            SetAttributes(curve.AddSubItem("Point"), PointKeys);
    }

    void Load()
    {
        MXMLItem item("settings");
        SetAttributes(item, SettingsKeys);
        MXMLItem& shape = SetAttributes(item.AddSubItem("Shape"), ShapeKeys);
        AddCurve(shape, "Envelope");
        SetAttributes(shape.AddSubItem("Step"), StepKeys)
            .AddSubItem("Item2")
            .SetAttribute("value", PickText());
        MXMLItem& operations = SetAttributes(shape.AddSubItem("Operations"), OperationsKeys);
        AddCurve(operations, "Transform");
        AddCurve(operations, "AmplitudeTransform");
        Call(MPluginCommand::Load, reinterpret_cast<std::intptr_t>(&item));
        Call(MPluginCommand::Store, reinterpret_cast<std::intptr_t>(&item));
        PlayBlock();
    }

    void TypeText()
    {
        const int index = data.ConsumeIntegralInRange(0, parameters.GetParameterCount() - 1);
        MAutomationAdapter& adapter = *parameters.FindAdapter(index);
        const int place = index - adapter.GetFirstIndex();
        const double value01 = adapter.ParseParameterValueName(
            place, MString::FromUTF8(data.ConsumeRandomLengthString(24)));
        // Who takes typed texts limits them.
        adapter.SetParameter(place, std::clamp(value01, 0.0, 1.0), data.ConsumeBool());
        adapter.GetParameterValueName(place);
    }

    void SendMidi()
    {
        const std::array<std::uint8_t, 3> bytes = {data.ConsumeIntegral<std::uint8_t>(),
                                                   data.ConsumeIntegral<std::uint8_t>(),
                                                   data.ConsumeIntegral<std::uint8_t>()};
        decoder.ProcessMIDIEvent(data.ConsumeIntegral<std::int16_t>(), bytes.data());
    }

    MLock& GetProcessingLock() noexcept override { return processingLock; }
    void NeedUpdateEditor(MAutomationAdapter& /*adapter*/) override {}
    void OnCustomParameterChanged(MAutomationAdapter& /*adapter*/) override {}

    void PlayBlock()
    {
        std::array<std::array<float, MaxBlock>, MaxChannels> blocks{};
        std::array<const float*, MaxChannels> inputs{};
        std::array<float*, MaxChannels> outputs{};
        std::array<float, MaxBlock> input{};
        input.fill(0.5f);
        for (std::size_t channel = 0; channel < MaxChannels; ++channel)
        {
            inputs[channel] = data.ConsumeBool() ? input.data() : nullptr;
            outputs[channel] = data.ConsumeBool() ? blocks[channel].data() : nullptr;
        }
        const int samples = data.ConsumeIntegralInRange(-1, MaxBlock);
        Call(MPluginCommand::Process, 0, reinterpret_cast<std::intptr_t>(inputs.data()),
             reinterpret_cast<std::intptr_t>(outputs.data()), samples);
        for (const auto& block : blocks)
            for (const float sample : block)
                if (!std::isfinite(sample)) // curves may overshoot, but not to infinity
                    std::abort();
    }

    FuzzedDataProvider& data;
    void* plugin = nullptr;
    MPluginInfo* info = nullptr;
    MLock processingLock; ///< which the effect shares to its end
    MParameterList parameters;
    MMIDIProcessor decoder;
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
