#include "tools/render/SoundBlocks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "tools/hosting/HostedPlugin.h"

SoundBlocks::SoundBlocks(int channels, int inputChannels, int maxSamples)
{
    const std::vector<float> silence(static_cast<std::size_t>(maxSamples));
    const auto count = static_cast<std::size_t>(channels);
    inputs.assign(static_cast<std::size_t>(inputChannels), silence);
    otherInputs.assign(count - inputs.size(), silence);
    outputs.assign(count, silence);
    for (std::size_t channel = 0; channel < count; ++channel)
    {
        inputPointers.push_back(channel < inputs.size()
                                    ? inputs[channel].data()
                                    : otherInputs[channel - inputs.size()].data());
        outputPointers.push_back(outputs[channel].data());
    }
}

void SoundBlocks::Process(HostedPlugin& plugin, int samples)
{
    if (inputs.size() == 1)
        for (std::vector<float>& other : otherInputs)
            std::copy_n(inputs[0].begin(), samples, other.begin());
    plugin.Process(inputPointers, outputPointers, samples);
}

void SoundBlocks::DropOutput(int dropped, int samples)
{
    for (std::vector<float>& block : outputs)
        std::copy(block.begin() + dropped, block.begin() + samples, block.begin());
}

float SoundBlocks::FindPeak(int samples) const noexcept
{
    float peak = 0.0f;
    for (const std::vector<float>& block : outputs)
        for (const float sample : std::span(block).first(static_cast<std::size_t>(samples)))
            peak = std::max(peak, std::abs(sample));
    return peak;
}
