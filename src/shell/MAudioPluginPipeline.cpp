#include "shell/MAudioPluginPipeline.h"

#include <algorithm>
#include <cstddef>

#include "dsp/kernels/Arithmetic.h"
#include "foundation/threads/MFlushToZeroScope.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"
#include "host/MAudioPluginAdapter.h"

namespace
{

/// Added to inputs: far below what can be heard, far above denormal numbers.
constexpr float AntiDenormalOffset = 1.0000000036274937e-15f;

std::atomic<bool> isAntiDenormal = true;

/// Whether @p block stands among the first @p count of @p blocks.
bool IsAmong(const float* block, const float* const* blocks, std::size_t count) noexcept
{
    return std::find(blocks, blocks + count, block) != blocks + count;
}

} // namespace

void MAudioPluginPipeline::SetAntiDenormal(bool on) noexcept
{
    isAntiDenormal = on;
}

int MAudioPluginPipeline::GetEffectChannels() const
{
    return MChannelModeInfo::Get(GetChannelMode()).CountEffectChannels(CountChannels());
}

void MAudioPluginPipeline::SetBypassed(bool on)
{
    if (bypassed.exchange(on) != on)
        midiFlushPending = true;
}

void MAudioPluginPipeline::SetChannelMode(MChannelMode newMode)
{
    if (channelMode.exchange(newMode) != newMode)
        InitProcessing();
}

void MAudioPluginPipeline::SetUpsampling(int factor, bool isHighQuality)
{
    wantedUpsampling = std::clamp(factor, 1, MUpsampler::MaxFactor);
    highQualityUpsampling = isHighQuality;
    InitProcessing();
}

void MAudioPluginPipeline::InitProcessing()
{
    const int latencyBefore = latency;
    MGuarded("MAudioPlugin::InitProcessing", 0,
             [this]
             {
                 const SuspendScope suspended(*this);
                 const MLockGuard settings(GetSettingsLock());
                 const MLockGuard processing(GetProcessingLock());
                 InitLocked();
                 return 0;
             });
    InitDone();
    if (latency != latencyBefore && GetAdapter() != nullptr)
        GetAdapter()->LatencyChanged();
}

void MAudioPluginPipeline::InitLocked()
{
    TakeLayout();
    // A host at a high rate leaves less room.
    upsamplingFactor = std::clamp(wantedUpsampling, 1, std::max(1, MaxRate / hostSampleRate));
    sampleRate = hostSampleRate * upsamplingFactor;
    const int effectLatency = GetLatency();
    latency = effectLatency / upsamplingFactor +
              MUpsampler::GetLatency(upsamplingFactor, highQualityUpsampling);

    const int buses = std::max(CountUsedInputBuses(), CountUsedOutputBuses());
    std::array<bool, MaxChannels> isUsed{};
    ForEachChannel(buses, [&](std::size_t i) { isUsed[i] = true; });
    for (std::size_t i = 0; i < MaxChannels; ++i)
    {
        Channel& channel = channels[i];
        if (!isUsed[i])
        {
            channel = Channel();
            continue;
        }
        channel.bypassQueue.SetLength(latency);
        channel.aroundQueue.SetLength(effectLatency);
        if (upsamplingFactor > 1)
            channel.upsampler.Configure(hostSampleRate, upsamplingFactor, highQualityUpsampling,
                                        maxBlock);
        else
            channel.upsampler = MUpsampler();
    }
    GrowBuffers(maxBlock);
    InitEffect();
    GetInterpolation().Reset();
    midiFlushPending = true;
}

void MAudioPluginPipeline::GrowBuffers(int samples)
{
    const auto length = static_cast<std::size_t>(samples);
    const int buses = std::max(CountUsedInputBuses(), CountUsedOutputBuses());
    ForEachChannel(buses,
                   [&](std::size_t i)
                   {
                       if (channels[i].input.size() < length)
                           channels[i].input.resize(length);
                       if (channels[i].output.size() < length)
                           channels[i].output.resize(length);
                   });
}

void MAudioPluginPipeline::ProcessAudio(const float* const* inputs, float* const* outputs,
                                        int samples, bool replacing) noexcept
{
    if (outputs == nullptr || samples <= 0)
        return;
    if (IsSuspended())
    {
        for (int i = 0; i < MaxChannels; ++i)
            kernels::Zero(outputs[i], samples);
        return;
    }
    MGuarded("MAudioPlugin::ProcessAudio", 0,
             [&]
             {
                 const MFlushToZeroScope flushToZero;
                 const MLockGuard guard(GetProcessingLock());
                 if (outputs[0] != nullptr)
                     ProcessBlock(inputs, outputs, samples, replacing);
                 return 0;
             });
}

void MAudioPluginPipeline::ProcessBlock(const float* const* inputs, float* const* outputs,
                                        int samples, bool replacing)
{
    GrowBuffers(samples);
    Block block;
    block.samples = samples;
    const bool areInputsPair = TakeInputs(inputs, block);
    TakeOutputs(outputs, replacing, block);
    block.isPair = areInputsPair && block.targets[1] != nullptr && CountChannels() == 2;

    ProcessPre(block.inputs.data(), samples);
    if (IsBypassed())
        ProcessBypass(block);
    else
    {
        if (latency > 0)
            FeedBypass(block);
        activeChannelMode = channelMode.load(std::memory_order_relaxed);
        if (upsamplingFactor > 1)
            ProcessUpsampled(block);
        else
            ProcessSubBlocks(block);
        ProcessPost(block.outputs.data(), samples);
    }
    if (!replacing)
        ForEachChannel(CountUsedOutputBuses(), [&](std::size_t i)
                       { kernels::Add(block.targets[i], block.outputs[i], samples); });
}

bool MAudioPluginPipeline::TakeInputs(const float* const* inputs, Block& block)
{
    std::array<const float*, MaxChannels> sources{};
    ForEachChannel(CountUsedInputBuses(),
                   [&](std::size_t i)
                   {
                       const bool isThere = inputs != nullptr && inputChannelsTotal > 0;
                       sources[i] = isThere ? inputs[i] : nullptr;
                       if (sources[i] == nullptr && i % ChannelsPerBus > 0)
                           sources[i] = sources[i - 1];

                       float* const copy = channels[i].input.data();
                       block.inputs[i] = copy;
                       if (sources[i] != nullptr)
                           kernels::Copy(copy, sources[i], block.samples);
                       else
                           kernels::Zero(copy, block.samples);
                       if (isAntiDenormal.load(std::memory_order_relaxed))
                           kernels::AddConstant(copy, AntiDenormalOffset, block.samples);
                   });
    return sources[0] != sources[1];
}

void MAudioPluginPipeline::TakeOutputs(float* const* outputs, bool replacing, Block& block)
{
    ForEachChannel(CountUsedOutputBuses(),
                   [&](std::size_t i)
                   {
                       const bool isNew = !IsAmong(outputs[i], outputs, i);
                       block.targets[i] = isNew ? outputs[i] : nullptr;
                       block.outputs[i] = replacing && block.targets[i] != nullptr
                                              ? block.targets[i]
                                              : channels[i].output.data();
                   });
}

void MAudioPluginPipeline::ProcessBypass(const Block& block)
{
    const int common = inputChannelsTotal > 0 ? CountUsedInputBuses() : 0;
    ForEachChannel(CountUsedOutputBuses(),
                   [&](std::size_t i)
                   {
                       const bool isCommon = static_cast<int>(i) / ChannelsPerBus < common;
                       channels[i].bypassQueue.Process(
                           block.outputs[i], isCommon ? block.inputs[i] : nullptr, block.samples);
                   });
}

void MAudioPluginPipeline::FeedBypass(const Block& block)
{
    ForEachChannel(CountUsedInputBuses(), [&](std::size_t i)
                   { channels[i].bypassQueue.Process(nullptr, block.inputs[i], block.samples); });
}

void MAudioPluginPipeline::ProcessUpsampled(const Block& block)
{
    Block stretched = block;
    stretched.samples = block.samples * upsamplingFactor;
    ForEachChannel(
        CountUsedInputBuses(), [&](std::size_t i)
        { stretched.inputs[i] = channels[i].upsampler.Upsample(block.inputs[i], block.samples); });
    ForEachChannel(CountUsedOutputBuses(), [&](std::size_t i)
                   { stretched.outputs[i] = channels[i].upsampler.GetOutput(); });
    ProcessSubBlocks(stretched);

    const double limit = GetClipLimit();
    ForEachChannel(CountUsedOutputBuses(),
                   [&](std::size_t i)
                   {
                       channels[i].upsampler.Downsample(block.outputs[i], block.samples, false);
                       if (limit >= 0.0)
                           kernels::Clamp(block.outputs[i], static_cast<float>(limit),
                                          block.samples);
                   });
}

void MAudioPluginPipeline::ProcessSubBlocks(Block block)
{
    const ChannelModeTransform transform(activeChannelMode, block.isPair);
    transform.Forward(block.inputs.data(), block.outputs.data(), block.samples);
    int longestPiece = std::max(1, subBlockSize);
    ParameterInterpolation& lines = GetInterpolation();
    if (interpolationBlockSize < block.samples && lines.Prepare(block.samples))
        longestPiece = std::min(longestPiece, std::max(1, interpolationBlockSize));
    if (longestPiece < block.samples)
        ProcessPieces(block, longestPiece);
    else
        Process(block.inputs.data(), block.outputs.data(), block.samples);
    lines.Finish();
    ProcessAround(block);
    transform.Back(block.inputs.data(), block.outputs.data(), block.samples);
}

void MAudioPluginPipeline::ProcessPieces(Block block, int longestPiece)
{
    const int count = (block.samples - 1) / longestPiece + 1;
    const int pieceSamples = block.samples / count; // nearly equal ones; what is left comes last
    double quarters = time.playing ? time.position : 0.0;
    const double quartersASample = time.playing ? time.tempo / (sampleRate * 60.0) : 0.0;
    for (int remaining = block.samples;;)
    {
        const int n = std::min(pieceSamples, remaining);
        time.position = quarters;
        Process(block.inputs.data(), block.outputs.data(), n);
        remaining -= n;
        if (remaining == 0)
            break;
        quarters += n * quartersASample;
        GetInterpolation().Process(n);
        for (float*& input : block.inputs)
            input = input != nullptr ? input + n : nullptr;
        for (float*& output : block.outputs)
            output = output != nullptr ? output + n : nullptr;
    }
}

void MAudioPluginPipeline::ProcessAround(const Block& block)
{
    const auto first = static_cast<std::size_t>(
        MChannelModeInfo::Get(activeChannelMode).CountEffectChannels(CountChannels()));
    for (std::size_t i = first; i < static_cast<std::size_t>(CountChannels()); ++i)
    {
        channels[i].aroundQueue.Process(block.outputs[i], block.inputs[i], block.samples);
        ProcessChannelAfter(block.outputs[i], block.samples);
    }
}
