#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <vector>

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
    /// @p factor is limited to 1 to 16. Prepares anew.
    void SetUpsampling(int factor, bool isHighQuality);

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
    std::atomic<bool> midiFlushPending = false; ///< all notes end with the next block
    int wantedUpsampling = 1;
    bool highQualityUpsampling = true;
    int subBlockSize = 0;           ///< samples, the longest piece of a block
    int interpolationBlockSize = 0; ///< the same while parameters are interpolated
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
        bool isPair = false; ///< left and right are two blocks on both sides
    };

    void ProcessBlock(const float* const* inputs, float* const* outputs, int samples,
                      bool replacing);
    /// For blocks of @p samples at the host's rate.
    void GrowBuffers(int samples);
    /// Copies the inputs. Returns whether left and right differ.
    bool TakeInputs(const float* const* inputs, Block& block);
    /// Finds a block for each output; what the host has not, or has twice, is dropped.
    void TakeOutputs(float* const* outputs, bool replacing, Block& block);
    void ProcessBypass(const Block& block);
    /// Keeps the way of the bypass filled while it is not taken.
    void FeedBypass(const Block& block);
    void ProcessUpsampled(const Block& block);
    /// The rest of the road, at the effective rate.
    void ProcessSubBlocks(Block block);
    void ProcessPieces(Block block, int longestPiece);
    /// The channels that the effect does not get.
    void ProcessAround(const Block& block);

    /// Calls @p work with the index of each channel of the first @p buses buses.
    template <typename Work>
    void ForEachChannel(int buses, Work&& work) const
    {
        for (int bus = 0; bus < buses; ++bus)
            for (int channel = 0; channel < CountChannels(); ++channel)
                work(static_cast<std::size_t>(bus * ChannelsPerBus + channel));
    }
    int CountUsedInputBuses() const noexcept { return std::max(1, GetInputBusCount()); }
    int CountUsedOutputBuses() const noexcept { return std::max(1, GetOutputBusCount()); }

    std::array<Channel, MaxChannels> channels;
};
