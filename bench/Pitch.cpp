// What pitch detection costs, beside the plain oscillator. A block is cheap unless it ends a hop,
// so the times of blocks are means; a detection is what the dearest block takes more.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/ScalarLoop.h"
#include "dsp/pitch/MPitchDetectorFFT.h"

namespace
{

enum class Input : std::uint8_t
{
    Saw,
    Noise
};

/// A second of it, so that its end does not show much.
std::vector<float> MakeInput(Input input, int rate)
{
    std::vector<float> samples(static_cast<std::size_t>(rate));
    std::minstd_rand random;
    std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] =
            input == Input::Noise
                ? noise(random)
                : static_cast<float>(std::fmod(110.0 * static_cast<double>(i) / rate, 1.0) - 0.5);
    return samples;
}

void Feed(benchmark::State& state, Input input, int rate, int block)
{
    const std::vector<float> samples = MakeInput(input, rate);
    MPitchDetectorFFT detector;
    detector.SetSampleRate(rate);
    std::size_t place = 0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(detector.Process(samples.data() + place, block));
        place += static_cast<std::size_t>(block);
        if (place + static_cast<std::size_t>(block) > samples.size())
            place = 0;
    }
    state.SetItemsProcessed(state.iterations() * block);
}

/// At a rate that needs no filter, in blocks that each end a hop.
void Detection(benchmark::State& state, Input input)
{
    Feed(state, input, 24000, MPitchDetectorFFT::HopLength);
}

void Block(benchmark::State& state)
{
    Feed(state, Input::Saw, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
}

void ScalarLoop(benchmark::State& state)
{
    const auto samples = static_cast<int>(state.range(0));
    const scalarloop::Blocks blocks(1, samples, 0.0f);
    scalarloop::VoicesT<scalarloop::ScalarLoop> voices(1, samples);
    for (auto _ : state)
    {
        voices.Play(blocks.Data(), blocks.Data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

[[maybe_unused]] const bool isRegistered = []
{
    benchmark::RegisterBenchmark("Pitch/detection of a saw", &Detection, Input::Saw);
    benchmark::RegisterBenchmark("Pitch/detection of noise", &Detection, Input::Noise);
    benchmark::RegisterBenchmark("Pitch/block", &Block)
        ->ArgNames({"rate", "block"})
        ->ArgsProduct({{44100, 48000, 192000, 768000}, {64, 512}});
    benchmark::RegisterBenchmark("Pitch/scalar loop", &ScalarLoop)
        ->ArgName("block")
        ->Arg(64)
        ->Arg(512);
    return true;
}();

} // namespace
