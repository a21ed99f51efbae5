// What a whole plugin costs round its effect, and many of them in one process.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "bench/Goals.h"
#include "bench/ScalarLoop.h"
#include "effect/TonvaleAudioEffectPlugin.h"
#include "shell/MAudioPluginPipeline.h"

namespace
{

using namespace scalarloop;

struct Setting
{
    int channels = 2;
    int samples = 512;
    MChannelMode mode = MChannelMode::LeftRight;
    int factor = 1;
    bool isBusy = false; ///< whether the host's input holds a signal
    bool isHighQuality = true;
};

std::unique_ptr<MAudioPluginPipeline> MakePlugin(const Setting& setting)
{
    std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
    auto pipeline =
        std::unique_ptr<MAudioPluginPipeline>(static_cast<MAudioPluginPipeline*>(plugin.release()));
    pipeline->SetHostSampleRate(SampleRate);
    pipeline->SetChannels(setting.channels, setting.channels);
    pipeline->SetUpsampling(setting.factor, setting.isHighQuality);
    pipeline->SetChannelMode(setting.channels > 2 ? MChannelMode::Surround : setting.mode);
    return pipeline;
}

class WholePlugin
{
public:
    explicit WholePlugin(const Setting& setting)
        : plugin(MakePlugin(setting)),
          samples(setting.samples)
    {
    }

    void Play(const float* const* inputs, float* const* outputs)
    {
        plugin->ProcessAudio(inputs, outputs, samples, true);
    }

private:
    std::unique_ptr<MAudioPluginPipeline> plugin;
    int samples;
};

class BareEffect
{
public:
    explicit BareEffect(const Setting& setting)
        : effect(std::make_unique<TonvaleAudioEffectPlugin>()),
          samples(setting.samples)
    {
        effect->InitProcessing(setting.channels, SampleRate);
        effect->Update();
        effect->ResetParameterRamps();
    }

    void Play(const float* const* inputs, float* const* outputs)
    {
        effect->Process(nullptr, inputs, outputs, samples);
    }

private:
    std::unique_ptr<TonvaleAudioEffectPlugin> effect;
    int samples;
};

class ScalarVoices : public VoicesT<ScalarLoop>
{
public:
    explicit ScalarVoices(const Setting& setting)
        : VoicesT<ScalarLoop>(setting.channels, setting.samples)
    {
    }
};

/// Host arrays with all of their entries; unused ones are null.
std::array<float*, MAudioPlugin::MaxChannels> Spread(const Blocks& blocks, int channels)
{
    std::array<float*, MAudioPlugin::MaxChannels> pointers{};
    std::copy_n(blocks.Data(), channels, pointers.begin());
    return pointers;
}

template <class Player>
void Run(benchmark::State& state, const Setting& setting)
{
    const Blocks inputBlocks(setting.channels, setting.samples, setting.isBusy ? 0.5f : 0.0f);
    const Blocks outputBlocks(setting.channels, setting.samples, 0.0f);
    const auto inputs = Spread(inputBlocks, setting.channels);
    const auto outputs = Spread(outputBlocks, setting.channels);
    Player player(setting);
    benchmark::DoNotOptimize(inputs.data());
    benchmark::DoNotOptimize(outputs.data());
    for (auto _ : state)
    {
        player.Play(inputs.data(), outputs.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * setting.channels * setting.samples);
}

constexpr int InstanceCount = 256;
constexpr int MeasuredInstances = 64;
constexpr int InstanceBlock = 64; ///< samples

/// All instances, one block after the other.
void RunInstances(benchmark::State& state)
{
    const Setting setting{.samples = InstanceBlock};
    std::vector<std::unique_ptr<MAudioPluginPipeline>> plugins;
    while (plugins.size() < InstanceCount)
        plugins.push_back(MakePlugin(setting));
    const Blocks inputBlocks(2, InstanceBlock, 0.0f);
    const Blocks outputBlocks(2, InstanceBlock, 0.0f);
    const auto inputs = Spread(inputBlocks, 2);
    const auto outputs = Spread(outputBlocks, 2);
    for (auto _ : state)
        for (const auto& plugin : plugins)
        {
            plugin->ProcessAudio(inputs.data(), outputs.data(), InstanceBlock, true);
            benchmark::ClobberMemory();
        }
    state.SetItemsProcessed(state.iterations() * InstanceCount * InstanceBlock * 2);
    // Seconds of sound that one second of the processor makes, of all of them together.
    state.counters["x real time"] =
        benchmark::Counter(static_cast<double>(InstanceBlock) / SampleRate,
                           benchmark::Counter::kIsIterationInvariantRate);
}

#ifdef __GLIBC__
std::size_t AllocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd; // in the heap, and mapped on their own
}

/// Bytes that one instance more takes. Its time is that of making and ending one.
void RunMemory(benchmark::State& state)
{
    const Setting setting{.factor = static_cast<int>(state.range(0))};
    const auto first = MakePlugin(setting); // what all of them share is there
    double bytes = 0.0;
    for (auto _ : state)
    {
        const std::size_t before = AllocatedBytes();
        std::vector<std::unique_ptr<MAudioPluginPipeline>> plugins;
        while (plugins.size() < MeasuredInstances)
            plugins.push_back(MakePlugin(setting));
        bytes = static_cast<double>(AllocatedBytes() - before) / MeasuredInstances;
    }
    state.SetItemsProcessed(state.iterations() * MeasuredInstances);
    state.counters["bytes each"] = bytes;
    state.counters["bytes of the pipeline"] = sizeof(MAudioPluginPipeline);
    state.counters["bytes of the effect"] = sizeof(TonvaleAudioEffectPlugin);
}
#endif

std::string NameOf(const std::string& what, const Setting& setting)
{
    return "Shell/" + what + "/channels:" + std::to_string(setting.channels) +
           "/block:" + std::to_string(setting.samples);
}

template <class Player>
std::string Register(const std::string& what, const Setting& setting)
{
    std::string name = NameOf(what, setting);
    benchmark::RegisterBenchmark(name.c_str(), [setting](benchmark::State& state)
                                 { Run<Player>(state, setting); });
    return name;
}

[[maybe_unused]] const bool isRegistered = []
{
    const auto limitOf = [](int samples) {
        return samples == 32 ? 1.3 : samples == 64 ? 0.9 : 0.55;
    };
    for (const int channels : {2, 8})
        for (const int samples : {16, 32, 64, 512, 4096})
        {
            const Setting setting{.channels = channels, .samples = samples};
            const std::string scalar = Register<ScalarVoices>("ScalarLoop", setting);
            Register<BareEffect>("bare effect", setting);
            const std::string whole = Register<WholePlugin>("whole plugin", setting);
            if (channels == 2 && samples >= 32 && samples <= 512)
                RegisterGoal({"whole plugin, " + std::to_string(samples) + " samples", whole,
                              scalar, limitOf(samples)});
        }

    for (int mode = 1; mode < MChannelModeInfo::Count - 1; ++mode)
    {
        const auto present = static_cast<MChannelMode>(mode);
        Register<WholePlugin>(MChannelModeInfo::Get(present).name,
                              {.mode = present, .isBusy = true});
    }
    for (const int factor : {2, 4, 8, 16})
        for (const bool isBusy : {false, true})
        {
            const Setting setting{.factor = factor, .isBusy = isBusy};
            const std::string title = std::to_string(factor) + (isBusy ? "x busy" : "x silent");
            const std::string name = Register<WholePlugin>(title, setting);
            if (factor == 4 || factor == 16)
                RegisterGoal({"whole plugin, " + title, name, NameOf("ScalarLoop", setting),
                              factor == 4 ? 8.0 : 30.0});
        }

    benchmark::RegisterBenchmark("Shell/256 instances", &RunInstances);
#ifdef __GLIBC__
    benchmark::RegisterBenchmark("Shell/memory", &RunMemory)->ArgName("factor")->Arg(1)->Arg(16);
#endif
    return true;
}();

} // namespace
