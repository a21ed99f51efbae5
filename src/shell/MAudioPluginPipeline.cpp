#include "shell/MAudioPluginPipeline.h"

#include <algorithm>
#include <cstddef>
#include <utility>

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

/// One pass: short blocks feel every call, long ones the way to memory.
void CopyWithOffset(float* copy, const float* source, int n) noexcept
{
    for (int i = 0; i < n; ++i)
        copy[i] = source[i] + AntiDenormalOffset;
}

void ZeroAll(float* const* blocks, int samples) noexcept
{
    for (int i = 0; i < MAudioPlugin::MaxChannels; ++i)
        kernels::Zero(blocks[i], samples);
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
    if (GetChannelMode() != newMode)
        Reconfigure([&] { channelMode = newMode; });
}

void MAudioPluginPipeline::SetUpsampling(int factor, bool isHighQuality)
{
    Reconfigure(
        [&]
        {
            wantedUpsampling = std::clamp(factor, 1, MUpsampler::MaxFactor);
            highQualityUpsampling = isHighQuality;
        });
}

void MAudioPluginPipeline::InitProcessing()
{
    Reconfigure([] {});
}

template <typename Change>
void MAudioPluginPipeline::Reconfigure(Change&& change)
{
    MGuarded("MAudioPlugin::InitProcessing", 0,
             [&]
             {
                 const int latencyBefore = latency;
                 {
                     const SuspendScope suspended(*this);
                     const MLockGuard settings(GetSettingsLock());
                     const MLockGuard processing(GetProcessingLock());
                     change();
                     InitLocked();
                 }
                 InitDone();
                 if (latency != latencyBefore && GetAdapter() != nullptr)
                     GetAdapter()->LatencyChanged();
                 return 0;
             });
}

void MAudioPluginPipeline::InitLocked()
{
    isReady = false;
    hostBlock = Block();
    TakeLayout();
    // A host at a high rate leaves less room.
    upsamplingFactor = std::clamp(GetWantedUpsampling(), 1, std::max(1, MaxRate / hostSampleRate));
    sampleRate = hostSampleRate * upsamplingFactor;
    const int effectLatency = GetLatency();
    latency = effectLatency / upsamplingFactor +
              MUpsampler::GetLatency(upsamplingFactor, highQualityUpsampling);

    hasInputs = inputChannelsTotal > 0;
    usedInputBuses = std::max(1, GetInputBusCount());
    usedOutputBuses = std::max(1, GetOutputBusCount());
    usedChannels = CountChannels();
    std::array<bool, MaxChannels> isUsed{};
    ForEachChannel(std::max(usedInputBuses, usedOutputBuses),
                   [&](std::size_t i) { isUsed[i] = true; });
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
    isReady = true;
}

void MAudioPluginPipeline::GrowBuffers(int samples)
{
    const auto length = static_cast<std::size_t>(samples);
    ForEachChannel(std::max(usedInputBuses, usedOutputBuses),
                   [&](std::size_t i)
                   {
                       if (channels[i].input.size() < length)
                           channels[i].input.resize(length);
                       if (channels[i].output.size() < length)
                           channels[i].output.resize(length);
                   });
    bufferedSamples = samples;
}

void MAudioPluginPipeline::ProcessAudio(const float* const* inputs, float* const* outputs,
                                        int samples, bool replacing) noexcept
{
    if (outputs == nullptr || samples <= 0)
        return;
    if (IsSuspended())
    {
        ZeroAll(outputs, samples);
        ++statistics.suspendedBlocks;
        return;
    }
    MGuarded("MAudioPlugin::ProcessAudio", 0,
             [&]
             {
                 const MFlushToZeroScope flushToZero;
                 const MLockGuard guard(GetProcessingLock());
                 if (!isReady)
                     ZeroAll(outputs, samples);
                 else if (outputs[0] != nullptr)
                     ProcessBlock(inputs, outputs, samples, replacing);
                 return 0;
             });
}

void MAudioPluginPipeline::ProcessBlock(const float* const* inputs, float* const* outputs,
                                        int samples, bool replacing)
{
    if (samples > bufferedSamples)
        GrowBuffers(samples);
    hostBlock.samples = samples;
    TakeInputs(inputs);
    TakeOutputs(outputs, replacing);

    ProcessPre(hostBlock.inputs.data(), samples);
    const bool isBypass = IsBypassed();
    if (isBypass)
        ProcessBypass();
    else
    {
        if (latency > 0)
            FeedBypass();
        if (std::exchange(isPastOld, false))
            ForgetPast();
        activeChannelMode = channelMode.load(std::memory_order_relaxed);
        if (upsamplingFactor > 1)
            ProcessUpsampled();
        else
            ProcessSubBlocks(hostBlock);
    }
    if (!replacing)
        ForEachChannel(usedOutputBuses, [&](std::size_t i)
                       { kernels::Add(hostBlock.targets[i], hostBlock.outputs[i], samples); });
    if (isBypass)
        return;
    if (upsamplingFactor > 1)
        Clip();
    ProcessPost(hostBlock.outputs.data(), samples);
}

void MAudioPluginPipeline::TakeInputs(const float* const* inputs)
{
    const bool isSafe = isAntiDenormal.load(std::memory_order_relaxed);
    const float* source = nullptr;
    ForEachChannel(
        usedInputBuses,
        [&](std::size_t i)
        {
            const float* const left = i % ChannelsPerBus > 0 ? source : nullptr;
            const float* const own = inputs != nullptr && hasInputs ? inputs[i] : nullptr;
            source = own != nullptr ? own : left;
            // Two channels of silence are two blocks, if none of the host's.
            if (i % ChannelsPerBus == 1)
                hostBlock.isPair[i / ChannelsPerBus] = source == nullptr || source != left;

            float* const copy = channels[i].input.data();
            hostBlock.inputs[i] = copy;
            if (source == nullptr)
                kernels::Fill(copy, isSafe ? AntiDenormalOffset : 0.0f, hostBlock.samples);
            else if (isSafe)
                CopyWithOffset(copy, source, hostBlock.samples);
            else
                kernels::Copy(copy, source, hostBlock.samples);
        });
}

void MAudioPluginPipeline::TakeOutputs(float* const* outputs, bool replacing)
{
    ForEachChannel(usedOutputBuses,
                   [&](std::size_t i)
                   {
                       const bool isNew = !IsAmong(outputs[i], outputs, i);
                       hostBlock.targets[i] = isNew ? outputs[i] : nullptr;
                       hostBlock.outputs[i] = replacing && hostBlock.targets[i] != nullptr
                                                  ? hostBlock.targets[i]
                                                  : channels[i].output.data();
                       // One block for both, or none for the right one, is no pair.
                       if (i % ChannelsPerBus == 1 && hostBlock.targets[i] == nullptr)
                           hostBlock.isPair[i / ChannelsPerBus] = false;
                   });
}

void MAudioPluginPipeline::ProcessBypass()
{
    isPastOld = true;
    const int common = hasInputs ? usedInputBuses : 0;
    ForEachChannel(usedOutputBuses,
                   [&](std::size_t i)
                   {
                       const bool isCommon = static_cast<int>(i) / ChannelsPerBus < common;
                       channels[i].bypassQueue.Process(hostBlock.outputs[i],
                                                       isCommon ? hostBlock.inputs[i] : nullptr,
                                                       hostBlock.samples);
                   });
}

void MAudioPluginPipeline::FeedBypass()
{
    ForEachChannel(
        usedInputBuses, [&](std::size_t i)
        { channels[i].bypassQueue.Process(nullptr, hostBlock.inputs[i], hostBlock.samples); });
}

void MAudioPluginPipeline::ProcessUpsampled()
{
    Block stretched = hostBlock;
    stretched.samples = hostBlock.samples * upsamplingFactor;
    ForEachChannel(std::max(usedInputBuses, usedOutputBuses),
                   [&](std::size_t i)
                   {
                       const float* const input = hostBlock.inputs[i]; // none for further outputs
                       float* const up = channels[i].upsampler.Upsample(input, hostBlock.samples);
                       if (input != nullptr)
                           stretched.inputs[i] = up;
                       if (hostBlock.outputs[i] != nullptr)
                           stretched.outputs[i] = channels[i].upsampler.GetOutput();
                   });
    ProcessSubBlocks(stretched);

    ForEachChannel(
        usedOutputBuses, [&](std::size_t i)
        { channels[i].upsampler.Downsample(hostBlock.outputs[i], hostBlock.samples, false); });
}

void MAudioPluginPipeline::Clip()
{
    const double limit = GetClipLimit();
    if (limit >= 0.0)
        ForEachChannel(usedOutputBuses,
                       [&](std::size_t i) {
                           kernels::Clamp(hostBlock.targets[i], static_cast<float>(limit),
                                          hostBlock.samples);
                       });
}

void MAudioPluginPipeline::ForgetPast()
{
    for (Channel& channel : channels)
    {
        channel.upsampler.Reset();
        channel.aroundQueue.Clear();
    }
}

void MAudioPluginPipeline::ProcessSubBlocks(Block& block)
{
    TransformBuses(block, &ChannelModeTransform::Forward);
    int longestPiece = std::max(1, subBlockSize);
    ParameterInterpolation& lines = GetInterpolation();
    if (interpolationBlockSize < block.samples && lines.Prepare(block.samples))
    {
        longestPiece = std::min(longestPiece, std::max(1, interpolationBlockSize));
        ++statistics.interpolatedBlocks;
    }
    if (longestPiece < block.samples)
        ProcessPieces(block, longestPiece);
    else
        ProcessPiece(block, block.samples);
    lines.Finish();
    ProcessAround(block);
    TransformBuses(block, &ChannelModeTransform::Back);
}

void MAudioPluginPipeline::TransformBuses(Block& block, ChannelModeTransform::Operation operation)
{
    if (activeChannelMode == MChannelMode::LeftRight)
        return;
    for (std::size_t bus = 0; bus < MaxBuses; ++bus)
    {
        const ChannelModeTransform transform(activeChannelMode, block.isPair[bus]);
        const std::size_t first = bus * ChannelsPerBus;
        (transform.*operation)(&block.inputs[first], &block.outputs[first], block.samples);
    }
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
        ProcessPiece(block, n);
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

void MAudioPluginPipeline::ProcessPiece(const Block& block, int samples)
{
    Statistics& s = statistics;
    s.shortestSubBlock = s.subBlocks == 0 ? samples : std::min(s.shortestSubBlock, samples);
    s.longestSubBlock = std::max(s.longestSubBlock, samples);
    ++s.subBlocks;
    Process(block.inputs.data(), block.outputs.data(), samples);
}

void MAudioPluginPipeline::ProcessAround(const Block& block)
{
    const int processed =
        MChannelModeInfo::Get(activeChannelMode).CountEffectChannels(usedChannels);
    if (processed == usedChannels)
        return;
    ForEachChannel(usedOutputBuses,
                   [&](std::size_t i)
                   {
                       if (static_cast<int>(i % ChannelsPerBus) < processed)
                           return;
                       channels[i].aroundQueue.Process(block.outputs[i], block.inputs[i],
                                                       block.samples);
                       ProcessChannelAfter(block.outputs[i], block.samples);
                   });
}
