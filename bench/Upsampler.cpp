// What it costs to go to a higher rate and back.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Cycles.h"
#include "dsp/kernels/Reference.h"
#include "shell/MUpsampler.h"

namespace
{

constexpr int SampleRate = 48000; ///< Hz

enum Input : std::int64_t
{
    Silent,
    Busy
};

/// One channel up and down, with an effect between that costs nothing; times are per host sample.
void UpAndDown(benchmark::State& state)
{
    const auto factor = static_cast<int>(state.range(0));
    const bool isHigh = state.range(1) != 0;
    const auto samples = static_cast<int>(state.range(2));
    std::vector<float> input(static_cast<std::size_t>(samples), 0.0f);
    if (state.range(3) == Busy)
        for (std::size_t i = 0; i < input.size(); ++i)
            input[i] = std::sin(0.1f * static_cast<float>(i));
    std::vector<float> output(input.size());

    MUpsampler upsampler;
    upsampler.Configure(SampleRate, factor, isHigh, samples);
    kernels::Fill(upsampler.GetOutput(), 0.5f, samples * factor);
    benchmark::DoNotOptimize(input.data());
    benchmark::DoNotOptimize(output.data());
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(upsampler.Upsample(input.data(), samples));
        upsampler.Downsample(output.data(), samples, false);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

/// What the goals compare with: a table read one sample after the other.
void ScalarLoop(benchmark::State& state)
{
    const auto samples = static_cast<int>(state.range(0));
    const std::vector<float> table(kernels::CycleLength + 1, 0.5f);
    std::vector<float> output(static_cast<std::size_t>(samples));
    double phase = 0.0;
    benchmark::DoNotOptimize(output.data());
    for (auto _ : state)
    {
        phase = kernels::reference::ReadCycle(output.data(), table.data(), phase,
                                              440.0 / SampleRate, samples);
        phase -= std::floor(phase);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * samples);
}

[[maybe_unused]] const bool isRegistered = []
{
    benchmark::RegisterBenchmark("Upsampler/scalar loop", &ScalarLoop)
        ->ArgName("block")
        ->Arg(64)
        ->Arg(512);
    benchmark::RegisterBenchmark("Upsampler/up and down", &UpAndDown)
        ->ArgNames({"factor", "high", "block", "busy"})
        ->ArgsProduct({{2, 3, 4, 8, 13, 16}, {0, 1}, {64, 512}, {Silent, Busy}});
    return true;
}();

} // namespace
