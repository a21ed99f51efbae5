#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

#include "dsp/kernels/Cycles.h"
#include "dsp/kernels/Reference.h"

/// The plain oscillator that goals compare with, and the blocks that it and its rivals fill.
namespace scalarloop
{

inline constexpr double Frequency = 440.0;        ///< Hz
inline constexpr std::int32_t SampleRate = 48000; ///< Hz
inline constexpr double Step = Frequency / SampleRate;

inline const std::vector<float>& SineTable()
{
    static const std::vector<float> table = []
    {
        std::vector<float> sine(kernels::CycleLength + 1);
        for (std::size_t i = 0; i < sine.size(); ++i)
            sine[i] = static_cast<float>(
                std::sin(2.0 * std::numbers::pi * static_cast<double>(i) / kernels::CycleLength));
        return sine;
    }();
    return table;
}

/// The blocks of all channels; each has its own, as hosts have it.
class Blocks
{
public:
    Blocks(int channels, int samples, float level)
        : blocks(static_cast<std::size_t>(channels),
                 std::vector<float>(static_cast<std::size_t>(samples), level))
    {
        for (std::vector<float>& block : blocks)
            pointers.push_back(block.data());
    }

    float* const* Data() const { return pointers.data(); }

private:
    std::vector<std::vector<float>> blocks;
    std::vector<float*> pointers;
};

/// What all of them that treat channel by channel share.
template <class Voice>
class VoicesT
{
public:
    VoicesT(int channels, int blockSamples)
        : voices(static_cast<std::size_t>(channels)),
          samples(blockSamples)
    {
    }

    void Play(const float* const* inputs, float* const* outputs)
    {
        for (std::size_t channel = 0; channel < voices.size(); ++channel)
            voices[channel].Play(inputs[channel], outputs[channel], samples);
    }

private:
    std::vector<Voice> voices;
    int samples;
};

/// One sample after the other, as the interpolation is defined.
struct ScalarLoop
{
    void Play(const float*, float* output, int samples)
    {
        phase = kernels::reference::ReadCycle(output, SineTable().data(), phase, Step, samples);
        phase -= std::floor(phase);
    }

    double phase = 0.0;
};

} // namespace scalarloop
