// What the oscillator costs, from its inner loop to the effect, beside a plain loop and a peer.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <stk/SineWave.h>

#include "bench/Goals.h"
#include "bench/ScalarLoop.h"
#include "dsp/kernels/Ramps.h"
#include "effect/TonvaleAudioEffectPlugin.h"

namespace
{

using namespace scalarloop;

struct ReadCycle
{
    void Play(const float*, float* output, int samples)
    {
        phase = kernels::ReadCycle(output, SineTable().data(), phase, Step, samples);
        phase -= std::floor(phase);
    }

    double phase = 0.0;
};

/// The two gains one after the other.
struct ReadCycleAndRamps
{
    void Play(const float* input, float* output, int samples)
    {
        const float gainStep = 0.5f / static_cast<float>(samples);
        cycle.Play(input, output, samples);
        kernels::RampScale(output, 0.25f, gainStep, samples);
        kernels::RampScaleAdd(output, input, 0.75f, -gainStep, samples);
    }

    ReadCycle cycle;
};

/// The two gains at once.
struct ReadCycleAndRampMix
{
    void Play(const float* input, float* output, int samples)
    {
        const float gainStep = 0.5f / static_cast<float>(samples);
        cycle.Play(input, output, samples);
        kernels::RampMix(output, input, 0.25f, gainStep, 0.75f, -gainStep, samples);
    }

    ReadCycle cycle;
};

/// The sine of the Synthesis ToolKit: double precision, a table of 2048.
struct StkSineWave
{
    StkSineWave()
    {
        stk::Stk::setSampleRate(SampleRate);
        wave.setFrequency(Frequency);
    }

    void Play(const float*, float* output, int samples)
    {
        for (int i = 0; i < samples; ++i)
            output[i] = static_cast<float>(wave.tick());
    }

    stk::SineWave wave;
};

/// The least that a block can cost.
struct MemoryCopy
{
    void Play(const float* input, float* output, int samples)
    {
        std::memcpy(output, input, static_cast<std::size_t>(samples) * sizeof(float));
    }
};

/// The whole effect at its defaults, but for the pitch.
class SteadyProcess
{
public:
    SteadyProcess(int channels, int blockSamples)
        : effect(std::make_unique<TonvaleAudioEffectPlugin>()),
          samples(blockSamples)
    {
        Value(TonvaleAudioEffectPlugin::Frequency) = std::log10(Frequency);
        effect->InitProcessing(channels, SampleRate);
        effect->Update();
        effect->ResetParameterRamps();
    }

    void Play(const float* const* inputs, float* const* outputs)
    {
        effect->Process(nullptr, inputs, outputs, samples);
    }

protected:
    MRelaxed<double>& Value(TonvaleAudioEffectPlugin::Parameter parameter)
    {
        return effect->GetInfo().FindParameter(parameter)->range.asFloat.value;
    }

private:
    std::unique_ptr<TonvaleAudioEffectPlugin> effect;
    int samples;
};

/// Both gains have moved before every block.
class RampingProcess : public SteadyProcess
{
public:
    using SteadyProcess::SteadyProcess;

    void Play(const float* const* inputs, float* const* outputs)
    {
        std::swap(wet, dry);
        Value(TonvaleAudioEffectPlugin::Wet) = wet;
        Value(TonvaleAudioEffectPlugin::Dry) = dry;
        SteadyProcess::Play(inputs, outputs);
    }

private:
    double wet = 0.3;
    double dry = 0.8;
};

template <class Player>
void Run(benchmark::State& state)
{
    const auto channels = static_cast<int>(state.range(0));
    const auto samples = static_cast<int>(state.range(1));
    const Blocks inputs(channels, samples, 0.5f);
    const Blocks outputs(channels, samples, 0.0f);
    Player player(channels, samples);
    // Once their addresses are out, every sample counts at every clobber.
    benchmark::DoNotOptimize(inputs.Data());
    benchmark::DoNotOptimize(outputs.Data());
    for (auto _ : state)
    {
        player.Play(inputs.Data(), outputs.Data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * channels * samples);
}

/// "Oscillator/WHAT/channels:C/block:N"
std::string NameOf(const std::string& what, int channels, int samples)
{
    return "Oscillator/" + what + "/channels:" + std::to_string(channels) +
           "/block:" + std::to_string(samples);
}

template <class Player>
void Register(const std::string& what)
{
    benchmark::RegisterBenchmark(("Oscillator/" + what).c_str(), &Run<Player>)
        ->ArgNames({"channels", "block"})
        ->ArgsProduct({{1, 2, 8}, {32, 64, 512}});
}

[[maybe_unused]] const bool isRegistered = []
{
    Register<VoicesT<ScalarLoop>>("ScalarLoop");
    Register<VoicesT<ReadCycle>>("ReadCycle");
    Register<VoicesT<ReadCycleAndRamps>>("ReadCycle+Ramps");
    Register<VoicesT<ReadCycleAndRampMix>>("ReadCycle+RampMix");
    Register<SteadyProcess>("Process/steady");
    Register<RampingProcess>("Process/ramping");
    Register<VoicesT<StkSineWave>>("StkSineWave");
    Register<VoicesT<MemoryCopy>>("memcpy");

    for (const int channels : {1, 2, 8})
    {
        const std::string suffix = channels == 1
                                       ? ", 512 samples"
                                       : ", 512 samples, " + std::to_string(channels) + " channels";
        const std::string scalar = NameOf("ScalarLoop", channels, 512);
        RegisterGoal({"table read" + suffix, NameOf("ReadCycle", channels, 512), scalar, 0.33});
        RegisterGoal({"Process with both gains ramping" + suffix,
                      NameOf("Process/ramping", channels, 512), scalar, 0.45});
    }
    return true;
}();

} // namespace
