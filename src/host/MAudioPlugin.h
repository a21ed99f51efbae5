#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "foundation/strings/MString.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MRelaxed.h"
#include "host/MAudioPluginAutomation.h"
#include "host/MAudioPluginTime.h"

class MAudioPlugin;
class MAudioPluginAdapter;
struct MStorageDescriptor;

/// Who brings editors up to date; the GUI installs one for the process.
class MAudioPluginUpdateRequestSink
{
public:
    /// Posts to the GUI thread that pending editor updates of @p plugin wait to be taken; comes
    /// again until they are. On a thread of the plugin; waits for no one.
    virtual void RequestUpdate(MAudioPlugin& plugin) = 0;

protected:
    ~MAudioPluginUpdateRequestSink() = default;
};

/// A plugin as every host standard sees it: channels and buses, parameters, time, latency, bypass,
/// state, and one operation that makes a block. It knows no standard; an adapter drives it and is
/// asked through MAudioPluginAdapter.
///
/// Order of locks: settings lock, processing lock. The audio thread takes the second alone, and
/// while processing is suspended none: then it writes silence.
class MAudioPlugin : public MAudioPluginAutomation
{
public:
    static constexpr int ChannelsPerBus = 8; ///< stride of the channel arrays
    static constexpr int MaxBuses = 2;
    static constexpr int MaxChannels = ChannelsPerBus * MaxBuses;
    static constexpr int MinRate = 101; ///< Hz; lower ones are refused
    static constexpr int MaxRate = 6144000;
    static constexpr int MaxBlock = 1 << 24; ///< samples of one call

    /// Keeps processing suspended, however its scope ends.
    class SuspendScope
    {
    public:
        explicit SuspendScope(MAudioPlugin& suspended) noexcept : plugin(suspended)
        {
            plugin.suspendCount.fetch_add(1);
        }
        ~SuspendScope() { plugin.suspendCount.fetch_sub(1); }
        SuspendScope(const SuspendScope&) = delete;
        SuspendScope& operator=(const SuspendScope&) = delete;

    private:
        MAudioPlugin& plugin;
    };

    MAudioPlugin();
    ~MAudioPlugin() override;

    // What the host wants. It is in force, and is told, from the next InitProcessing on. Host
    // threads.

    /// Takes the channels of a bus, 1 to 8, or 0 inputs for none. Returns whether it is possible.
    virtual bool SetChannels(int inputChannels, int outputChannels);
    /// Hz, from MinRate, and to MaxRate when multiplied by the upsampling; others are refused.
    bool SetHostSampleRate(int rate);
    /// Samples, the longest block that the host announces; longer ones make the audio thread
    /// allocate once.
    void SetMaxBlock(int samples);

    /// Prepares for the layout and rate that were set last; blocks are silent meanwhile. Not on the
    /// audio thread.
    virtual void InitProcessing() = 0;
    /// Makes one block. @p inputs and @p outputs hold MaxChannels pointers, channel c of bus b at
    /// b * 8 + c; null ones take their left neighbour. Adds to the outputs unless @p replacing.
    /// Audio thread; never throws.
    virtual void ProcessAudio(const float* const* inputs, float* const* outputs, int samples,
                              bool replacing) noexcept = 0;
    /// GUI thread, now and then.
    virtual void ProcessUpdate() {}

    /// Writes the state to the item, or reads it. A load leaves blocks silent instead of late.
    /// @throws MException if that fails; a load then leaves the state from before
    virtual void Store(const MStorageDescriptor& storage) = 0;
    virtual void StoreSettings(const MStorageDescriptor& storage) = 0;

    // What the effect is given, and what the host sees, with the present channel mode.
    virtual int GetEffectInputChannels() const;
    virtual int GetEffectChannels() const;
    virtual int GetInputChannels() const;
    virtual int GetOutputChannels() const;
    int GetInputBusCount() const noexcept;
    int GetOutputBusCount() const noexcept;
    /// Width of a bus, of which a host may use a part: see SetChannels.
    int GetChannelsPerBus() const noexcept { return channelsPerBus; }
    int GetInputChannelsTotal() const noexcept { return inputChannelsTotal; }
    int GetOutputChannelsTotal() const noexcept { return outputChannelsTotal; }
    /// "In 0", "Sidechain 0", "Out 0" and so on for channel bus * 8 + c; empty outside the buses.
    virtual MString GetInputChannelName(int channel) const;
    virtual MString GetOutputChannelName(int channel) const;

    /// Of the effect alone, samples at the effective rate.
    virtual int GetLatency() { return 0; }
    /// What the host has to compensate, samples at its rate.
    int GetEffectiveLatency() const noexcept { return latency; }
    virtual int GetTail() { return -1; }                 ///< samples; negative for unknown
    virtual double GetClipLimit() const { return -1.0; } ///< below 0: none

    virtual bool IsBypassed() const noexcept = 0;
    virtual void SetBypassed(bool on) = 0;

    int GetSampleRate() const noexcept { return sampleRate; } ///< Hz, effective
    int GetHostSampleRate() const noexcept { return hostSampleRate; }
    int GetUpsamplingFactor() const noexcept { return upsamplingFactor; }
    bool WantsMIDIInput() const noexcept { return wantsMIDIInput; }
    bool SendsMIDIOutput() const noexcept { return sendsMIDIOutput; }
    /// Whether the plugin asks the host for time.
    bool WantsTime() const noexcept { return timeAvailable; }
    MAudioPluginTime& GetTime() noexcept { return time; }
    const MString& GetMaker() const noexcept { return maker; }
    const MString& GetName() const noexcept { return name; }

    /// What the user does to an adapter on the GUI thread: values between 0.0 and 1.0 (the nearest
    /// one otherwise; what is not finite is left out), unless the host adapter ignores them.
    void SetParameterFromHostSafely(int index, double value01);
    /// Reports all values of @p adapter to the host.
    void SendAllAutomation(const AutomationAdapter& adapter);
    // Passed on to the host adapter, if there is one.
    void SendBypassAutomation(bool isBypassed);
    void GenerateMIDIEvent(int offset, const std::uint8_t* bytes);
    bool ChangeEditorSize(int width, int height);

    /// Null for none. The sink has to live until the next call, which waits while it is in use.
    static void SetUpdateRequestSink(MAudioPluginUpdateRequestSink* sink);
    /// While an editor is open: a thread tells the sink of pending editor updates. GUI thread.
    /// @throws MException (0) "Could not create system thread."
    void StartUpdateRequests();
    void StopUpdateRequests() noexcept;

    /// Null for none. Before the first block.
    void SetAdapter(MAudioPluginAdapter* newAdapter) noexcept { adapterPointer = newAdapter; }
    MAudioPluginAdapter* GetAdapter() const noexcept { return adapterPointer; }

    MLock& GetProcessingLock() noexcept override { return processingLock; }
    MLock& GetSettingsLock() noexcept { return settingsLock; }
    bool IsSuspended() const noexcept { return suspendCount.load() > 0; }

protected:
    /// How many buses the plugin has and how wide they are; all of their channels are in use until
    /// SetChannels says otherwise. While the plugin is set up.
    void SetBuses(int inputBuses, int outputBuses, int busChannels);
    /// Puts in force what the host wants: the first thing in InitProcessing, under both locks.
    void TakeLayout() noexcept;
    /// Channels of a bus that the host uses.
    int CountChannels() const noexcept
    {
        return forcedChannels > 0 ? forcedChannels : channelsPerBus;
    }

    MString name;
    MString maker = "Quillfern";
    MAudioPluginTime time;
    // Written in InitProcessing under both locks, read by any thread.
    MRelaxed<std::int32_t> sampleRate = 44100; ///< Hz; the host's times upsamplingFactor
    MRelaxed<std::int32_t> hostSampleRate = 44100;
    MRelaxed<std::int32_t> inputChannelsTotal = 2; ///< of all buses
    MRelaxed<std::int32_t> outputChannelsTotal = 2;
    MRelaxed<std::int32_t> forcedChannels = -1; ///< below 0: channelsPerBus counts
    MRelaxed<std::int32_t> channelsPerBus = 2;
    MRelaxed<std::int32_t> upsamplingFactor = 1;
    MRelaxed<std::int32_t> latency = 0;     ///< samples at the host's rate
    MRelaxed<std::int32_t> maxBlock = 4096; ///< samples that the host announced, at least 4096
    bool wantsMIDIInput = true;
    bool sendsMIDIOutput = false;
    bool timeAvailable = true; ///< the plugin's wish
    std::atomic<std::int32_t> suspendCount = 0;

private:
    class AutomationUpdateRequestThread;

    static constexpr int LeastMaxBlock = 4096;

    /// What the host asked for.
    struct Wishes
    {
        int inputChannels = 2; ///< of a bus
        int outputChannels = 2;
        int sampleRate = 44100;
        int maxBlock = LeastMaxBlock;
    };

    std::int32_t inputBuses = 1;
    std::int32_t outputBuses = 1;
    Wishes wishes; ///< under settingsLock
    MAudioPluginAdapter* adapterPointer = nullptr;
    MLock settingsLock;
    MLock processingLock;
    std::unique_ptr<AutomationUpdateRequestThread> updateRequests;
};

/// The one product of this module, ready for its first InitProcessing; null if it cannot be made.
/// Defined where the plugin is put together.
std::unique_ptr<MAudioPlugin> CreateAudioPlugin() noexcept;
