// The morph of four corners in which every parameter differs; blocks wait for as long.

#include <benchmark/benchmark.h>

#include "host/MAudioPlugin.h"
#include "shell/ABCDMorph.h"
#include "shell/MQuillfernAudioEffectPlugin.h"

namespace
{

void RunMorph(benchmark::State& state)
{
    const auto made = CreateAudioPlugin();
    auto& plugin = static_cast<MQuillfernAudioEffectPlugin&>(*made);
    plugin.InitProcessing();
    for (int corner = ABCDMorph::CornerCount - 1; corner >= 0; --corner)
    {
        plugin.SelectPresetSlot(corner);
        for (int i = 0; i < plugin.GetParameterCount(); ++i)
            plugin.SetParameter(i, 0.1 + 0.25 * corner, true);
    }
    ABCDMorph morph(plugin);
    double x = 0.0;
    for (auto _ : state)
    {
        x = 1.0 - x;
        morph.MoveTo(x, 0.5);
    }
    state.counters["parameters"] = plugin.GetParameterCount();
}

void OpenMorph(benchmark::State& state)
{
    const auto made = CreateAudioPlugin();
    auto& plugin = static_cast<MQuillfernAudioEffectPlugin&>(*made);
    for (auto _ : state)
        benchmark::DoNotOptimize(ABCDMorph(plugin).GetX());
}

BENCHMARK(RunMorph)->Name("Morph/all parameters")->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenMorph)->Name("Morph/open")->Unit(benchmark::kMicrosecond);

} // namespace
