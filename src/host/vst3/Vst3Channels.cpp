#include "host/vst3/Vst3Channels.h"

#include <algorithm>
#include <bit>

namespace Vst3
{

namespace
{

/// The host's buses without the missing ones.
int CountBuses(const AudioBusBuffers* buses, std::int32_t count) noexcept
{
    return buses != nullptr ? std::max(0, count) : 0;
}

/// What the plugin does not make is silent, and nothing else is promised to be.
void CompleteOutputs(const MAudioPlugin& plugin, const ProcessData& data)
{
    for (int bus = 0; bus < CountBuses(data.outputs, data.numOutputs); ++bus)
    {
        AudioBusBuffers& output = data.outputs[bus];
        output.silenceFlags = 0;
        if (output.channelBuffers32 == nullptr)
            continue;
        const int made = bus < plugin.GetOutputBusCount() ? plugin.GetOutputChannels() : 0;
        for (int channel = made; channel < output.numChannels; ++channel)
            if (float* const block = output.channelBuffers32[channel])
                std::fill_n(block, data.numSamples, 0.0f);
    }
}

} // namespace

void Channels::Reserve(int samples)
{
    const std::size_t length = std::bit_ceil(static_cast<std::size_t>(std::max(1, samples)));
    if (length <= silence.size())
        return;
    waste.resize(length);
    silence.resize(length);
}

template <typename Sample>
void Channels::Spread(const AudioBusBuffers* buses, std::int32_t count, Sample* standIn,
                      Pointers<Sample>& channels) noexcept
{
    const int known = CountBuses(buses, count);
    for (int bus = 0; bus < MAudioPlugin::MaxBuses; ++bus)
    {
        const int used =
            bus < known ? std::clamp(buses[bus].numChannels, 0, MAudioPlugin::ChannelsPerBus) : 0;
        Sample* const* const blocks = used > 0 ? buses[bus].channelBuffers32 : nullptr;
        Sample** const pointers = channels.all.data() + bus * MAudioPlugin::ChannelsPerBus;
        for (int channel = 0; channel < used; ++channel)
        {
            Sample* const block = blocks != nullptr ? blocks[channel] : nullptr;
            pointers[channel] = block != nullptr ? block : standIn;
        }
        // Behind them there is nothing since the last block, unless it had more.
        int& usedBefore = channels.used.data()[bus];
        for (int channel = used; channel < usedBefore; ++channel)
            pointers[channel] = nullptr;
        usedBefore = used;
    }
}

void Channels::Process(MAudioPlugin& plugin, const ProcessData& data)
{
    Reserve(data.numSamples);
    Spread<const float>(data.inputs, data.numInputs, silence.data(), inputs);
    Spread<float>(data.outputs, data.numOutputs, waste.data(), outputs);
    if (outputs.used[0] == 0) // time goes on though no one listens
    {
        outputs.all[0] = waste.data();
        outputs.used[0] = 1;
    }
    plugin.ProcessAudio(inputs.all.data(), outputs.all.data(), data.numSamples, true);
    CompleteOutputs(plugin, data);
}

} // namespace Vst3
