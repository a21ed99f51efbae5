#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/threads/MRelaxed.h"
#include "host/MAudioPlugin.h"
#include "shell/ChannelModes.h"
#include "shell/DelayQueue.h"
#include "shell/MUpsampler.h"

/// The road of one block from the host to what makes the sound, and back: own copies of the inputs,
/// bypass, a higher rate, sub-blocks, channel modes, and channels that go round the effect.
/// What makes the sound is the operation Process of a derived class.
///
/// Everything that a block needs exists since the last InitProcessing, for blocks of up to the
/// length that the host announced; a longer one makes the audio thread allocate once.
class MAudioPluginPipeline : public MAudioPlugin
{
public:
    /// What became of the blocks so far. For the thread that has them made, between two of them.
    struct Statistics
    {
        std::int64_t suspendedBlocks = 0;    ///< silent, as processing was suspended
        std::int64_t interpolatedBlocks = 0; ///< in which automation moved a parameter
        std::int64_t subBlocks = 0;          ///< that the effect made
        int shortestSubBlock = 0;            ///< samples at the effective rate
        int longestSubBlock = 0;
    };

    void InitProcessing() override;
    void ProcessAudio(const float* const* inputs, float* const* outputs, int samples,
                      bool replacing) noexcept override;

    int GetEffectChannels() const override;

    bool IsBypassed() const noexcept override { return bypassed.load(std::memory_order_relaxed); }
    void SetBypassed(bool on) override;

    MChannelMode GetChannelMode() const noexcept { return channelMode.load(); }
    /// Prepares anew, as the effect may get another number of channels. Not on the audio thread.
    void SetChannelMode(MChannelMode newMode);

    int GetWantedUpsampling() const noexcept { return wantedUpsampling; }
    bool IsHighQualityUpsampling() const noexcept { return highQualityUpsampling; }
    /// @p factor is limited to 1 to 16. Prepares anew; not on the audio thread.
    void SetUpsampling(int factor, bool isHighQuality);

    const Statistics& GetStatistics() const noexcept { return statistics; }

    /// Whether the smallest possible offset keeps inputs from denormal numbers; for all plugins of
    /// the process, on unless told.
    static void SetAntiDenormal(bool on) noexcept;

protected:
    /// Makes @p samples samples at the effective rate. @p inputs and @p outputs hold MaxChannels
    /// pointers, none of them null and no block among both kinds; inputs may be written to.
    /// Under the processing lock.
    virtual void Process(float* const* inputs, float* const* outputs, int samples) = 0;
    /// Before and after the block as the host has it; sets subBlockSize.
    virtual void ProcessPre(const float* const* inputs, int samples) = 0;
    virtual void ProcessPost(float* const* outputs, int samples) = 0;
    /// A channel that went round the effect.
    virtual void ProcessChannelAfter(float* /*buffer*/, int /*samples*/) {}
    /// The effect gets its channels and rate. Under the locks, while processing is suspended.
    virtual void InitEffect() = 0;
    /// Behind InitProcessing, without locks.
    virtual void InitDone() {}

    /// InitProcessing for who holds the locks and keeps processing suspended.
    void InitLocked();

    std::atomic<MChannelMode> channelMode = MChannelMode::LeftRight;
    std::atomic<bool> bypassed = false;
    std::atomic<bool> midiFlushPending = false;  ///< all notes end with the next block
    MRelaxed<std::int32_t> wantedUpsampling = 1; ///< written under the settings lock
    MRelaxed<bool> highQualityUpsampling = true; ///< likewise
    int subBlockSize = 0;                        ///< samples, the longest piece of a block
    int interpolationBlockSize = 0;              ///< the same while parameters are interpolated
    MChannelMode activeChannelMode = MChannelMode::LeftRight; ///< of the block under way

private:
    /// One channel of one bus.
    struct Channel
    {
        std::vector<float> input;  ///< copy of the host's
        std::vector<float> output; ///< where the host has no block for it
        DelayQueue bypassQueue;    ///< as long as the latency, at the host's rate
        DelayQueue aroundQueue;    ///< as long as the effect's latency, at the effective rate
        MUpsampler upsampler;
    };

    /// The blocks of one call, as the stages pass them on.
    struct Block
    {
        std::array<float*, MaxChannels> inputs{};  ///< own copies
        std::array<float*, MaxChannels> targets{}; ///< the host's; null if it has none, or it again
        std::array<float*, MaxChannels> outputs{}; ///< targets, or own blocks
        int samples = 0;
        /// By bus: the first two channels are two blocks of the host, on both sides.
        std::array<bool, MaxBuses> isPair{};
    };

    /// Prepares anew after @p change, which runs under the locks so that no block meets half of it.
    template <typename Change>
    void Reconfigure(Change&& change);
    void ProcessBlock(const float* const* inputs, float* const* outputs, int samples,
                      bool replacing);
    /// For blocks of @p samples at the host's rate.
    void GrowBuffers(int samples);
    /// Copies the inputs.
    void TakeInputs(const float* const* inputs);
    /// Finds a block for each output; what the host has not, or has twice, is dropped.
    void TakeOutputs(float* const* outputs, bool replacing);
    void ProcessBypass();
    /// Keeps the way of the bypass filled while it is not taken.
    void FeedBypass();
    void ProcessUpsampled();
    /// The rest of the road, at the effective rate.
    void ProcessSubBlocks(Block& block);
    void ProcessPieces(Block block, int longestPiece);
    /// One sub-block, which is counted.
    void ProcessPiece(const Block& block, int samples);
    void TransformBuses(Block& block, ChannelModeTransform::Operation operation);
    /// The channels that the effect does not get.
    void ProcessAround(const Block& block);
    /// Holds what the host gets to the limit of the effect.
    void Clip();
    /// Drops what upsamplers and ways round the effect hold from before a bypass.
    void ForgetPast();

    /// Calls @p work with the index of each channel of the first @p buses buses.
    template <typename Work>
    void ForEachChannel(int buses, Work&& work) const
    {
        for (int bus = 0; bus < buses; ++bus)
            for (int channel = 0; channel < usedChannels; ++channel)
                work(static_cast<std::size_t>(bus) * ChannelsPerBus +
                     static_cast<std::size_t>(channel));
    }

    std::array<Channel, MaxChannels> channels;
    Statistics statistics;
    Block hostBlock; ///< under way; stays, as most of its pointers are null for good
    // Of the layout in force.
    int usedInputBuses = 0; ///< at least one, which is silent if the host has none
    int usedOutputBuses = 0;
    int usedChannels = 0;    ///< of each bus
    int bufferedSamples = 0; ///< that the buffers of all channels hold
    bool hasInputs = false;  ///< of the host
    bool isReady = false;    ///< the last preparation succeeded; without it all is silent
    bool isPastOld = false;  ///< the effect's way stood still during a bypass
};
