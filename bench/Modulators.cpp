// What a modulator adds to a block, by mode and number of targets.

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/ScalarLoop.h"
#include "host/MAudioPlugin.h"
#include "shell/MQuillfernAudioEffectPlugin.h"
#include "shell/modulators/MModulationCounter.h"
#include "shell/modulators/MModulator.h"

namespace
{

constexpr int Samples = 64;
constexpr int Channels = 2;

/// Parameters that cost nothing.
struct Values final : MModulationWriter
{
    void SetParameter(int index, double value01) override
    {
        values[static_cast<std::size_t>(index)] = value01;
    }
    void SetModulated(int, bool) override {}
    bool HasAlternate(int) const override { return true; }

    std::array<double, 16> values{};
};

struct Case
{
    const char* what;
    MModulatorMode mode;
    bool isFiltered = false;
    bool isLoud = false; ///< the input drives the envelope
    bool isBent = false; ///< each target has a curve
};

constexpr Case Cases[] = {
    {"Normal", MModulatorMode::Normal},
    {"Normal bent", MModulatorMode::Normal, false, false, true},
    {"Envelope", MModulatorMode::Envelope},
    {"Envelope filtered", MModulatorMode::Envelope, true},
    {"MIDI Envelope", MModulatorMode::MIDIEnvelope},
    {"MIDI Envelope loud", MModulatorMode::MIDIEnvelope, false, true},
    {"Random", MModulatorMode::Random},
    {"Pitch silent", MModulatorMode::Pitch},
};

class RunningModulator
{
public:
    RunningModulator(const Case& setting, std::size_t targets)
    {
        counter.Resize(static_cast<int>(values.values.size()));
        modulator.InitProcessing(scalarloop::SampleRate);
        modulator.SetMode(setting.mode);
        modulator.Enabled = true;
        modulator.Follower.BandPassMin =
            setting.isFiltered ? 2.0 : double{modulator.Follower.BandPassMin};
        modulator.Envelope.EnvelopeSource = setting.isLoud;
        modulator.OnNote(0, 1.0, true);
        modulator.EditTargets(
            [&](MModulator::TargetList& list)
            {
                list.resize(targets);
                for (std::size_t i = 0; i < targets; ++i)
                {
                    list[i].ParameterIndex = static_cast<int>(i);
                    list[i].ShapeEnabled = setting.isBent;
                }
            });
    }

    void Play(const float* const* inputs)
    {
        if (modulator.Prepare())
            modulator.ProcessBlock(time, inputs, Samples, Channels);
    }

private:
    Values values;
    MLock lock;
    MModulationCounter counter{values};
    MModulator modulator{counter, lock};
    MAudioPluginTime time{.tempo = 120.0};
};

void Run(benchmark::State& state, const Case& setting)
{
    const scalarloop::Blocks inputs(MAudioPlugin::MaxChannels, Samples, 0.5f);
    const auto running =
        std::make_unique<RunningModulator>(setting, static_cast<std::size_t>(state.range(0)));
    benchmark::DoNotOptimize(inputs.Data());
    for (auto _ : state)
    {
        running->Play(inputs.Data());
        benchmark::ClobberMemory();
    }
}

void RunScalarLoop(benchmark::State& state)
{
    const scalarloop::Blocks blocks(Channels, Samples, 0.0f);
    scalarloop::VoicesT<scalarloop::ScalarLoop> voices(Channels, Samples);
    benchmark::DoNotOptimize(blocks.Data());
    for (auto _ : state)
    {
        voices.Play(blocks.Data(), blocks.Data());
        benchmark::ClobberMemory();
    }
}

constexpr int NoTarget = -1;
constexpr int PitchTarget = 5;
constexpr int ShapeTarget = 8; ///< each write rebuilds the shape

/// Blocks of the whole plugin, while an LFO moves @p parameter.
void RunPlugin(benchmark::State& state, int parameter)
{
    const auto made = CreateAudioPlugin();
    auto& plugin = static_cast<MQuillfernAudioEffectPlugin&>(*made);
    plugin.SetHostSampleRate(scalarloop::SampleRate);
    plugin.SetChannels(Channels, Channels);
    plugin.InitProcessing();
    MModulator& modulator = plugin.GetModulators()[0];
    modulator.EditTargets([&](MModulator::TargetList& list) { list[0].Assign(parameter, plugin); });
    modulator.Enabled = parameter != NoTarget;
    modulator.Frequency = 1.0;
    const scalarloop::Blocks inputBlocks(MAudioPlugin::MaxChannels, Samples, 0.0f);
    const scalarloop::Blocks outputBlocks(MAudioPlugin::MaxChannels, Samples, 0.0f);
    for (auto _ : state)
    {
        plugin.ProcessAudio(inputBlocks.Data(), outputBlocks.Data(), Samples, true);
        benchmark::ClobberMemory();
    }
}

[[maybe_unused]] const bool isRegistered = []
{
    const std::string scalar = "Modulators/ScalarLoop";
    benchmark::RegisterBenchmark(scalar.c_str(), &RunScalarLoop);
    benchmark::RegisterBenchmark("Modulators/plugin/without", &RunPlugin, NoTarget);
    benchmark::RegisterBenchmark("Modulators/plugin/pitch", &RunPlugin, PitchTarget);
    benchmark::RegisterBenchmark("Modulators/plugin/shape", &RunPlugin, ShapeTarget);
    for (const Case& setting : Cases)
    {
        const std::string name = std::string("Modulators/") + setting.what;
        benchmark::RegisterBenchmark(name.c_str(), &Run, setting)
            ->ArgName("targets")
            ->Arg(1)
            ->Arg(16);
    }
    return true;
}();

} // namespace
