#pragma once

#include <span>
#include <vector>

class HostedPlugin;

/// The memory of one block: what the plugin hears and what it plays, channel by channel.
class SoundBlocks
{
public:
    /// Room for up to @p maxSamples samples of @p channels channels, of which the first
    /// @p inputChannels are heard, or the only one everywhere.
    SoundBlocks(int channels, int inputChannels, int maxSamples);

    /// To be filled: one block per input channel.
    std::vector<std::vector<float>>& GetInputs() noexcept { return inputs; }
    std::span<const std::vector<float>> GetOutputs() const noexcept { return outputs; }

    /// Lets @p plugin make the next @p samples samples.
    void Process(HostedPlugin& plugin, int samples);
    /// Drops the first @p dropped of the @p samples samples that were made.
    void DropOutput(int dropped, int samples);
    /// The largest of the first @p samples samples.
    float FindPeak(int samples) const noexcept;

private:
    std::vector<std::vector<float>> inputs;
    /// A channel that hears nothing, or the same as another, still has a block of its own in hosts,
    /// and modes for a pair of channels need that.
    std::vector<std::vector<float>> otherInputs;
    std::vector<std::vector<float>> outputs;
    std::vector<const float*> inputPointers;
    std::vector<float*> outputPointers;
};
