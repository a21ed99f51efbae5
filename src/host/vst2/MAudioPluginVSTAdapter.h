#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <thread>

#include "foundation/modules/MModule.h"
#include "foundation/streams/MMemoryStream.h"
#include "host/HostTransport.h"
#include "host/MAudioPlugin.h"
#include "host/MAudioPluginAdapter.h"
#include "host/MIDIQueue.h"
#include "host/vst2/AudioEffect.h"
#include "host/vst2/MIDIOutput.h"

namespace Vst2
{

/// Runs a plugin in a VST2 host: translates parameters, channels, MIDI, time and states.
/// Whatever the host calls, in whichever order and with whichever numbers, gets an answer, a
/// neutral one if need be; its pointers have to be null or good. From construction on blocks can
/// come.
class MAudioPluginVSTAdapter final : public AudioEffect, public MAudioPluginAdapter
{
public:
    /// @p effectPlugin is set up and not null, @p hostCallback may be.
    MAudioPluginVSTAdapter(HostCallback hostCallback, std::unique_ptr<MAudioPlugin> effectPlugin);
    ~MAudioPluginVSTAdapter() noexcept override;

    // For the plugin.
    void SendAutomation(int index, double value01) override;
    /// The host owns no bypass.
    void SendBypassAutomation(bool /*isBypassed*/) override {}
    void GenerateMIDIEvent(int offset, const std::uint8_t* bytes) override;
    bool ChangeEditorSize(int width, int height) override;
    void LatencyChanged() override;
    bool IgnoresHostParameters() const noexcept override;

    /// Delivers three bytes with the next block. Any thread.
    void QueueMIDIEvent(int offset, const std::uint8_t* bytes) { inputQueue.Add(offset, bytes); }

private:
    /// What lies in the stride of the plugin's channels, from the host's flat row of them.
    template <typename Sample>
    using Channels = std::array<Sample*, MAudioPlugin::MaxChannels>;

    void resume() noexcept override;
    void setSampleRate(float rate) noexcept override;
    void processReplacing(float** inputs, float** outputs, std::int32_t samples) noexcept override;
    void setParameter(std::int32_t index, float value) noexcept override;
    float getParameter(std::int32_t index) noexcept override;
    void getProgramName(std::span<char> text) noexcept override;
    bool getProgramNameIndexed(std::int32_t index, std::span<char> text) noexcept override;
    void getParameterName(std::int32_t index, std::span<char> text) noexcept override;
    void getParameterDisplay(std::int32_t index, std::span<char> text) noexcept override;
    void getParameterLabel(std::int32_t index, std::span<char> text) noexcept override;
    bool canParameterBeAutomated(std::int32_t index) noexcept override;
    bool string2parameter(std::int32_t index, const char* text) noexcept override;
    std::intptr_t getChunk(void*& data, bool isPreset) noexcept override;
    std::int32_t setChunk(const void* data, std::intptr_t size, bool isPreset) noexcept override;
    void process(float** inputs, float** outputs, std::int32_t samples) noexcept override;
    bool getInputProperties(std::int32_t index, VstPinProperties& properties) noexcept override;
    bool getOutputProperties(std::int32_t index, VstPinProperties& properties) noexcept override;
    bool setSpeakerArrangement(const VstSpeakerArrangement* inputs,
                               const VstSpeakerArrangement* outputs) noexcept override;
    std::int32_t canDo(const char* text) noexcept override;
    std::int32_t processEvents(const VstEvents* events) noexcept override;
    void setBlockSize(std::intptr_t samples) noexcept override;
    PlugCategory getPlugCategory() noexcept override;
    bool getEffectName(std::span<char> text) noexcept override;
    bool getVendorString(std::span<char> text) noexcept override;
    bool getProductString(std::span<char> text) noexcept override;
    std::int32_t getVendorVersion() noexcept override;
    void idle() noexcept override;

    /// Fills the record, with fewer channels for hosts that know no more.
    void Describe(std::intptr_t hostVersion);
    bool HasParameter(std::int32_t index) const noexcept;
    bool IsSynth() const noexcept { return (record.flags & AEffect::IsSynth) != 0; }

    void ProcessBlock(float** inputs, float** outputs, int samples, bool replacing);
    /// Takes the host's time once a block.
    void PrepareProcessing();
    /// Hands the plugin what waits in the input queue; leaves it there while processing is
    /// suspended. Under the processing lock.
    void DeliverQueue();
    template <typename Sample>
    void Spread(Sample* const* row, int count, Channels<Sample>& channels) const noexcept;
    /// Zeroes the host's blocks of channels that the plugin leaves out.
    void SilenceUnused(float* const* outputs, int samples) const noexcept;
    void DescribePin(const MString& name, VstPinProperties& properties) const;
    /// Place of the pin @p index among the plugin's channels.
    int ChannelOf(std::int32_t index) const noexcept;

    MModule::User user;
    std::unique_ptr<MAudioPlugin> plugin;
    MMemoryStream chunk; ///< the host's until it asks for the next
    HostTransport transport;
    MIDIQueue inputQueue;
    Channels<const float> inputBlocks{}; ///< of the call under way
    Channels<float> outputBlocks{};
    std::unique_ptr<MIDIOutput> output; ///< null if the plugin sends nothing
    /// Whose echo is left out: the thread that reports a value to the host at present.
    std::atomic<std::thread::id> ignoreHostParameters;
    int channelsPerBus; ///< in the host's row
};

/// What the module's entry does: makes the plugin with its adapter. Null if that fails.
AEffect* CreateEffect(HostCallback host) noexcept;

} // namespace Vst2
