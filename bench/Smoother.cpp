// What smoothing a cycle costs, beside a copy of the cycle and the widest kernel as a plain loop.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/Goals.h"
#include "dsp/kernels/Reference.h"
#include "effect/MGaussianSmoother.h"

namespace
{

constexpr std::size_t Length = MGaussianSmoother::CycleLength;
constexpr std::size_t TapCount = 2 * MGaussianSmoother::MaxHalfWidth + 1;

/// Smoothing over and over would leave a constant, so each run begins with a fresh copy.
struct Cycles
{
    Cycles()
    {
        for (std::size_t i = 0; i < Length; ++i)
            source[i] = static_cast<float>(i) / Length - 0.5f;
        benchmark::DoNotOptimize(this);
    }

    void Refresh() { std::memcpy(cycle.data(), source.data(), sizeof(cycle)); }

    alignas(64) std::array<float, Length> source{};
    alignas(64) std::array<float, Length> cycle{};
};

void Copy(benchmark::State& state)
{
    const auto cycles = std::make_unique<Cycles>();
    for (auto _ : state)
    {
        cycles->Refresh();
        benchmark::ClobberMemory();
    }
}

/// The widest kernel as a loop over samples and taps, over a cycle with its wrapped ends.
void PlainConvolution(benchmark::State& state)
{
    const auto cycles = std::make_unique<Cycles>();
    std::array<float, TapCount> taps{};
    taps.fill(1.0f / TapCount);
    std::array<float, Length + TapCount> padded{};
    padded.fill(0.5f);
    benchmark::DoNotOptimize(padded.data());
    benchmark::DoNotOptimize(taps.data());
    for (auto _ : state)
    {
        kernels::reference::FIR(cycles->cycle.data(), padded.data(), taps.data(), TapCount, Length,
                                1);
        benchmark::ClobberMemory();
    }
}

/// The kernel stays.
void Process(benchmark::State& state)
{
    const auto cycles = std::make_unique<Cycles>();
    const auto smoother = std::make_unique<MGaussianSmoother>();
    smoother->SetHalfWidth(static_cast<double>(state.range(0)));
    for (auto _ : state)
    {
        cycles->Refresh();
        smoother->Process(cycles->cycle);
        benchmark::ClobberMemory();
    }
}

/// Another kernel for every cycle, as a modulated smoothness needs it.
void ChangeAndProcess(benchmark::State& state)
{
    const auto cycles = std::make_unique<Cycles>();
    const auto smoother = std::make_unique<MGaussianSmoother>();
    double step = 0.0;
    for (auto _ : state)
    {
        smoother->SetHalfWidth(static_cast<double>(state.range(0)) - step);
        step = 1.0 - step;
        cycles->Refresh();
        smoother->Process(cycles->cycle);
        benchmark::ClobberMemory();
    }
}

[[maybe_unused]] const bool isRegistered = []
{
    const auto withWidths = [](benchmark::internal::Benchmark* rows)
    { rows->ArgName("halfWidth")->Arg(1)->Arg(26)->Arg(30)->Arg(31)->Arg(256); };
    benchmark::RegisterBenchmark("Smoother/memcpy", Copy);
    benchmark::RegisterBenchmark("Smoother/plain convolution", PlainConvolution);
    withWidths(benchmark::RegisterBenchmark("Smoother/Process", Process));
    withWidths(benchmark::RegisterBenchmark("Smoother/SetHalfWidth+Process", ChangeAndProcess));

    // 110 us where a copy takes 0.3 us and the plain loop 1,860 us.
    RegisterGoal({"smoothness 1.0, in copies of the cycle", "Smoother/Process/halfWidth:256",
                  "Smoother/memcpy", 367.0});
    RegisterGoal({"smoothness 1.0 beside a plain convolution", "Smoother/Process/halfWidth:256",
                  "Smoother/plain convolution", 0.059});
    return true;
}();

} // namespace
