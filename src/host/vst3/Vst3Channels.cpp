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
    const int known = std::min(CountBuses(buses, count), MAudioPlugin::MaxBuses);
    for (int bus = 0; bus < known; ++bus)
    {
        const int used = std::min(buses[bus].numChannels, MAudioPlugin::ChannelsPerBus);
        for (int channel = 0; channel < used; ++channel)
        {
            Sample* const block = buses[bus].channelBuffers32 != nullptr
                                      ? buses[bus].channelBuffers32[channel]
                                      : nullptr;
            const int place = bus * MAudioPlugin::ChannelsPerBus + channel;
            channels[static_cast<std::size_t>(place)] = block != nullptr ? block : standIn;
        }
    }
}

void Channels::Process(MAudioPlugin& plugin, const ProcessData& data)
{
    Reserve(data.numSamples);
    Pointers<const float> inputs{};
    Pointers<float> outputs{};
    Spread<const float>(data.inputs, data.numInputs, silence.data(), inputs);
    Spread<float>(data.outputs, data.numOutputs, waste.data(), outputs);
    if (outputs[0] == nullptr) // time goes on though no one listens
        outputs[0] = waste.data();
    plugin.ProcessAudio(inputs.data(), outputs.data(), data.numSamples, true);
    CompleteOutputs(plugin, data);
}

} // namespace Vst3
