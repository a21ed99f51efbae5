// What the built modules cost their hosts: the way to the first block, instances, and the adapters.

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "bench/Goals.h"
#include "bench/ScalarLoop.h"
#include "tools/hosting/HostedVst2.h"
#include "tools/hosting/HostedVst3.h"
#include "tools/hosting/LoadPlugin.h"
#include "tools/hosting/PluginModule.h"

namespace
{

using scalarloop::Blocks;
using scalarloop::SampleRate;

constexpr int Channels = 2;
constexpr int BlockSamples = 64;
constexpr double OpenMs = 10.0;    ///< goal from opening the module to the end of the first block
constexpr double InstanceMs = 0.5; ///< goal for making and ending an instance

std::unique_ptr<HostedPlugin> Start(std::unique_ptr<HostedPlugin> plugin)
{
    plugin->Start(Channels, SampleRate, BlockSamples);
    return plugin;
}

/// Each round opens the module anew: nothing of it is left in the process from the one before, but
/// its file is in the system's cache, and the libraries that it needs are the program's too.
void OpenToFirstBlock(benchmark::State& state, const char* path)
{
    using Clock = std::chrono::steady_clock;
    const Blocks outputs(Channels, BlockSamples, 0.0f);
    for ([[maybe_unused]] const auto round : state)
    {
        const auto begin = Clock::now();
        const auto plugin = Start(LoadPlugin(path));
        plugin->Process({}, {outputs.Data(), Channels}, BlockSamples);
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
    }
    state.counters["ms at most"] = OpenMs;
}

/// Beside another instance, which keeps what all of them share.
void CreateAndDestroy(benchmark::State& state, const char* path)
{
    const auto pluginModule = PluginModule::Open(path);
    const auto first = Start(MakePlugin(pluginModule));
    for ([[maybe_unused]] const auto round : state)
        benchmark::DoNotOptimize(MakePlugin(pluginModule));
    state.counters["ms at most"] = InstanceMs;
}

#ifdef __GLIBC__
std::size_t AllocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd; // in the heap, and mapped on their own
}

/// Of instances that are ready to play, with what the host itself keeps for each.
void TakeMemory(benchmark::State& state, const char* path)
{
    constexpr int Instances = 64;
    const auto pluginModule = PluginModule::Open(path);
    const auto first = Start(MakePlugin(pluginModule));
    double bytes = 0.0;
    for ([[maybe_unused]] const auto round : state)
    {
        const std::size_t before = AllocatedBytes();
        std::vector<std::unique_ptr<HostedPlugin>> plugins;
        while (plugins.size() < Instances)
            plugins.push_back(Start(MakePlugin(pluginModule)));
        bytes = static_cast<double>(AllocatedBytes() - before) / Instances;
    }
    state.SetItemsProcessed(state.iterations() * Instances);
    state.counters["bytes each"] = bytes;
}
#endif

/// What an effect asks of a host whose transport runs.
std::intptr_t AnswerVst2(Vst2::AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                         std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/)
{
    using enum Vst2::VstTimeInfo::Flag;
    static Vst2::VstTimeInfo time = []
    {
        Vst2::VstTimeInfo info;
        info.sampleRate = SampleRate;
        info.ppqPos = 16.0;
        info.barStartPos = 16.0;
        info.tempo = 120.0;
        info.timeSigNumerator = 4;
        info.timeSigDenominator = 4;
        info.flags = TransportPlaying | PpqPosValid | TempoValid | BarsValid | TimeSigValid;
        return info;
    }();
    switch (static_cast<Vst2::HostOpcode>(opcode))
    {
    case Vst2::HostOpcode::Version:
        return Vst2::InterfaceVersion;
    case Vst2::HostOpcode::GetTime:
        return reinterpret_cast<std::intptr_t>(&time);
    default:
        return 0;
    }
}

/// Blocks of silence through the function that hosts call, without a host of ours round it.
void PlayVst2(benchmark::State& state)
{
    const auto pluginModule = PluginModule::Open(TONVALE_VST2_MODULE);
    Vst2::AEffect* const effect = pluginModule->GetEntry()(&AnswerVst2);
    const auto dispatch = [effect](Vst2::EffectOpcode opcode, std::intptr_t value, float opt)
    { effect->dispatcher(effect, static_cast<std::int32_t>(opcode), 0, value, nullptr, opt); };
    dispatch(Vst2::EffectOpcode::Open, 0, 0.0f);
    dispatch(Vst2::EffectOpcode::SetSampleRate, 0, SampleRate);
    dispatch(Vst2::EffectOpcode::SetBlockSize, BlockSamples, 0.0f);
    dispatch(Vst2::EffectOpcode::MainsChanged, 1, 0.0f);
    const Blocks inputs(Channels, BlockSamples, 0.0f);
    const Blocks outputs(Channels, BlockSamples, 0.0f);
    for ([[maybe_unused]] const auto round : state)
    {
        effect->processReplacing(effect, const_cast<float**>(inputs.Data()),
                                 const_cast<float**>(outputs.Data()), BlockSamples);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * Channels * BlockSamples);
    dispatch(Vst2::EffectOpcode::Close, 0, 0.0f);
}

void PlayVst3(benchmark::State& state)
{
    HostedVst3 plugin(PluginModule::Open(TONVALE_VST3_MODULE));
    plugin.Start(Channels, SampleRate, BlockSamples);
    const Blocks inputs(Channels, BlockSamples, 0.0f);
    const Blocks outputs(Channels, BlockSamples, 0.0f);
    Vst3::AudioBusBuffers input{.numChannels = Channels,
                                .silenceFlags = 0,
                                .channelBuffers32 = const_cast<float**>(inputs.Data())};
    Vst3::AudioBusBuffers output{.numChannels = Channels,
                                 .silenceFlags = 0,
                                 .channelBuffers32 = const_cast<float**>(outputs.Data())};
    using Vst3::ProcessContext;
    ProcessContext context{};
    context.state = ProcessContext::kPlaying | ProcessContext::kProjectTimeMusicValid |
                    ProcessContext::kTempoValid | ProcessContext::kBarPositionValid |
                    ProcessContext::kTimeSigValid;
    context.sampleRate = SampleRate;
    context.projectTimeMusic = 16.0;
    context.barPositionMusic = 16.0;
    context.tempo = 120.0;
    context.timeSigNumerator = 4;
    context.timeSigDenominator = 4;
    std::array<Vst3ParameterChanges, 2> changes;
    std::array<Vst3EventList, 2> events;
    Vst3::ProcessData data{};
    data.symbolicSampleSize = Vst3::kSample32;
    data.numSamples = BlockSamples;
    data.numInputs = data.numOutputs = 1;
    data.inputs = &input;
    data.outputs = &output;
    data.inputParameterChanges = &changes[0];
    data.outputParameterChanges = &changes[1];
    data.inputEvents = &events[0];
    data.outputEvents = &events[1];
    data.processContext = &context;
    for ([[maybe_unused]] const auto round : state)
    {
        if (plugin.GetProcessor()->process(data) != Vst3::kResultOk)
            return state.SkipWithError("it refuses the block");
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * Channels * BlockSamples);
}

[[maybe_unused]] const bool isRegistered = []
{
    const std::string shape = "/channels:2/block:64"; // see Shell.cpp
    for (const auto& [format, path, play] : {std::tuple("VST2", TONVALE_VST2_MODULE, &PlayVst2),
                                             std::tuple("VST3", TONVALE_VST3_MODULE, &PlayVst3)})
    {
        const std::string start = std::string("Hosts/") + format;
        const auto add = [&start](const char* what, auto&&... work)
        { return benchmark::RegisterBenchmark((start + what).c_str(), work...); };
        add("/open to first block", OpenToFirstBlock, path)->UseManualTime();
        add("/create and destroy", CreateAndDestroy, path);
#ifdef __GLIBC__
        add("/memory", TakeMemory, path);
#endif
        add("/block", play);
        RegisterGoal({std::string("64 samples through ") + format + ", more than the whole plugin",
                      start + "/block", "Shell/ScalarLoop" + shape, 0.2,
                      "Shell/whole plugin" + shape});
    }
    return true;
}();

} // namespace
