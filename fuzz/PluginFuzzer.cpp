// Drives the whole plugin as a careless host would: calls in any order, blocks of any size with
// missing and repeated channels, states from strangers. Whatever comes, the output stays finite.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "shell/MQuillfernAudioEffectPlugin.h"

namespace
{

constexpr int MaxSamples = 5000; ///< beyond the longest block that is announced

constexpr const char* SettingsKeys[] = {
    "ChannelMode",
    "EnableSurroundProcessing",
    "Bypass",
    "MaxLFOBlockSize",
    "upsampling",
    "hqupsampling",
    "PresetIndex",
    "CurrentPresetIndex",
    "NoteIndex",
    "parameterDry",
    "parameterWet",
    "parameterWidth",
    "parameterFrequency",
};
constexpr const char* ControllerKeys[] = {
    "Enabled", "Enabled", "ParameterName", "Value",  "MaxValue",
    "Range",   "Channel", "Controller",    "Invert", "FullRange",
};
constexpr const char* ListNames[] = {"Controllers", "NoteControllers", "Preset0", "Preset7"};
constexpr const char* RowNames[] = {"Controller", "Controller0", "Controller15", "NoteController3"};
constexpr const char* Texts[] = {"Surround", "Mono", "Width", "Shape", "Frequency", "1", "0", "-1"};

class Driver
{
public:
    explicit Driver(FuzzedDataProvider& source) : data(source)
    {
        plugin->SetHostSampleRate(48000);
        plugin->InitProcessing();
    }

    void Step()
    {
        switch (data.ConsumeIntegralInRange(0, 9))
        {
        case 0:
            Load();
            break;
        case 1:
            plugin->SetParameter(data.ConsumeIntegralInRange(-2, 14), PickNumber(),
                                 data.ConsumeBool());
            break;
        case 2:
            plugin->SetParameterFromHostSafely(data.ConsumeIntegralInRange(-2, 14),
                                               data.ConsumeFloatingPoint<double>());
            break;
        case 3:
            SendMIDI();
            break;
        case 4:
            plugin->SetChannels(data.ConsumeIntegralInRange(-1, 9),
                                data.ConsumeIntegralInRange(-1, 9));
            plugin->SetHostSampleRate(data.ConsumeIntegral<std::int32_t>());
            plugin->SetMaxBlock(data.ConsumeIntegral<std::int16_t>());
            plugin->InitProcessing();
            break;
        case 5:
            plugin->SetChannelMode(static_cast<MChannelMode>(data.ConsumeIntegralInRange(0, 7)));
            plugin->SetBypassed(data.ConsumeBool());
            break;
        case 6:
            plugin->SetUpsampling(data.ConsumeIntegral<std::int8_t>(), data.ConsumeBool());
            break;
        case 7:
            plugin->CopyPresetSlot(data.ConsumeIntegralInRange(-1, 8),
                                   data.ConsumeIntegralInRange(-1, 8));
            plugin->SelectPresetSlot(data.ConsumeIntegralInRange(-1, 8));
            break;
        default:
            PlayBlock();
            break;
        }
    }

private:
    /// SetParameter takes what its caller limits, and no infinity.
    double PickNumber() { return data.ConsumeFloatingPointInRange(-1.0, 2.0); }

    MString PickText()
    {
        switch (data.ConsumeIntegralInRange(0, 3))
        {
        case 0:
            return MString::FromUTF8(data.ConsumeRandomLengthString(20));
        case 1:
            return data.PickValueInArray(Texts);
        default:
            return MString::FromDouble(data.ConsumeIntegral<std::int8_t>() * 0.1, 12);
        }
    }

    template <std::size_t Count>
    void SetAttributes(MXMLItem& item, const char* const (&keys)[Count])
    {
        for (int i = data.ConsumeIntegralInRange(0, 6); i > 0; --i)
            item.SetAttribute(keys[data.ConsumeIntegralInRange<std::size_t>(0, Count - 1)],
                              PickText());
    }

    void Load()
    {
        MXMLItem item("settings");
        if (data.ConsumeBool())
            plugin->Store({.storing = true, .item = item});
        SetAttributes(item, SettingsKeys);
        for (int i = data.ConsumeIntegralInRange(0, 3); i > 0; --i)
            SetAttributes(item.GetOrAddSubItem(data.PickValueInArray(ListNames))
                              .AddSubItem(data.PickValueInArray(RowNames)),
                          ControllerKeys);
        plugin->Store({.storing = false, .item = item});
        if (plugin->IsSuspended())
            std::abort();
        PlayBlock();
    }

    void SendMIDI()
    {
        const std::array<std::uint8_t, 3> bytes = {data.ConsumeIntegral<std::uint8_t>(),
                                                   data.ConsumeIntegral<std::uint8_t>(),
                                                   data.ConsumeIntegral<std::uint8_t>()};
        plugin->ProcessMIDIEvent(data.ConsumeIntegral<std::int16_t>(), bytes.data());
    }

    void PlayBlock()
    {
        std::array<const float*, MAudioPlugin::MaxChannels> inputs{};
        std::array<float*, MAudioPlugin::MaxChannels> outputs{};
        for (std::size_t i = 0; i < MAudioPlugin::ChannelsPerBus; ++i)
        {
            std::ranges::fill(blocks[i], 0.0f);
            inputs[i] = data.ConsumeBool() ? input.data() : nullptr;
            const std::size_t place = data.ConsumeIntegralInRange<std::size_t>(0, 9);
            outputs[i] = place < blocks.size() ? blocks[place].data() : nullptr;
        }
        const int samples = data.ConsumeBool() ? data.ConsumeIntegralInRange(-1, 64)
                                               : data.ConsumeIntegralInRange(-1, MaxSamples);
        plugin->ProcessAudio(data.ConsumeBool() ? inputs.data() : nullptr, outputs.data(), samples,
                             data.ConsumeBool());
        for (const std::vector<float>& block : blocks)
            for (const float sample : block)
                if (!std::isfinite(sample))
                    std::abort();
    }

    FuzzedDataProvider& data;
    std::unique_ptr<MQuillfernAudioEffectPlugin> plugin{
        static_cast<MQuillfernAudioEffectPlugin*>(CreateAudioPlugin().release())};
    std::vector<float> input = std::vector<float>(MaxSamples, 0.5f);
    std::vector<std::vector<float>> blocks{MAudioPlugin::ChannelsPerBus,
                                           std::vector<float>(MaxSamples)};
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
