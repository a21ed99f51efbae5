#include "host/vst2/MAudioPluginVSTAdapter.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "foundation/threads/MGuard.h"

using namespace Vst2;

namespace
{

constexpr std::intptr_t OldestWideVersion = 2300; ///< older hosts get stereo at most
constexpr std::intptr_t FirstVersion = 100;       ///< still older ones get two inputs at least

/// The version of the module as one decimal number, 503 for 5.3.
std::int32_t GetDecimalVersion() noexcept
{
    const std::uint32_t version = MModule::Get().GetVersion();
    return static_cast<std::int32_t>((version >> 24) * 100 + (version >> 16 & 0xFF));
}

} // namespace

MAudioPluginVSTAdapter::MAudioPluginVSTAdapter(HostCallback hostCallback,
                                               std::unique_ptr<MAudioPlugin> effectPlugin)
    : AudioEffect(hostCallback, 1, effectPlugin->GetParameterCount()),
      plugin(std::move(effectPlugin)),
      channelsPerBus(plugin->GetChannelsPerBus())
{
    MModule::Get().SetHostName("VST2");
    if (plugin->SendsMIDIOutput())
        output = std::make_unique<MIDIOutput>();
    Describe(CallHost(HostOpcode::Version));
    resume();
    // From here on changes of the latency are told; the host does not know the effect before.
    record.initialDelay = plugin->GetEffectiveLatency();
    plugin->SetAdapter(this);
}

MAudioPluginVSTAdapter::~MAudioPluginVSTAdapter() noexcept
{
    plugin->SetAdapter(nullptr);
}

void MAudioPluginVSTAdapter::Describe(std::intptr_t hostVersion)
{
    const bool isNarrow = hostVersion < OldestWideVersion;
    if (isNarrow && channelsPerBus > 2)
    {
        channelsPerBus = 2;
        plugin->SetChannels(2, 2);
    }
    const int widest = isNarrow ? 2 : MAudioPlugin::MaxChannels;
    record.numInputs = std::min(plugin->GetInputBusCount() * channelsPerBus, widest);
    record.numOutputs = std::min(plugin->GetOutputBusCount() * channelsPerBus, widest);
    record.flags = AEffect::CanReplacing | AEffect::ProgramChunks;
    if (plugin->WantsMIDIInput() && record.numInputs == 0)
        record.flags |= AEffect::IsSynth;
    if (hostVersion < FirstVersion)
        record.numInputs = std::max(record.numInputs, 2);
    record.uniqueID = MakeCode("Tnv+");
    record.version = GetDecimalVersion();
}

void MAudioPluginVSTAdapter::resume() noexcept
{
    MGuarded("MAudioPluginVSTAdapter::resume", 0,
             [&]
             {
                 if (IsSynth() || canHostDo("receiveVstMidiEvent"))
                     wantEvents();
                 plugin->InitProcessing();
                 return 0;
             });
}

void MAudioPluginVSTAdapter::setSampleRate(float rate) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::setSampleRate", 0,
             [&]
             {
                 if (!(rate > 0.0f && rate <= MAudioPlugin::MaxRate))
                     return 0;
                 const int rounded = static_cast<int>(std::lround(rate));
                 if (rounded != plugin->GetHostSampleRate() && plugin->SetHostSampleRate(rounded))
                     plugin->InitProcessing();
                 return 0;
             });
}

void MAudioPluginVSTAdapter::setBlockSize(std::intptr_t samples) noexcept
{
    // Hosts resume behind it, and prepare everything by that.
    MGuarded("MAudioPluginVSTAdapter::setBlockSize", 0,
             [&]
             {
                 plugin->SetMaxBlock(static_cast<int>(
                     std::clamp<std::intptr_t>(samples, 0, MAudioPlugin::MaxBlock)));
                 return 0;
             });
}

int MAudioPluginVSTAdapter::ChannelOf(std::int32_t index) const noexcept
{
    return index / channelsPerBus * MAudioPlugin::ChannelsPerBus + index % channelsPerBus;
}

void MAudioPluginVSTAdapter::DescribePin(const MString& name, VstPinProperties& properties) const
{
    properties = VstPinProperties();
    CopyText(name, properties.label);
    CopyText(name, properties.shortLabel);
    properties.flags = VstPinProperties::IsActive;
    switch (channelsPerBus)
    {
    case 1:
        properties.arrangementType = VstSpeakerArrangement::Mono;
        break;
    case 2:
        properties.flags |= VstPinProperties::IsStereo;
        properties.arrangementType = VstSpeakerArrangement::Stereo;
        break;
    default:
        properties.flags |= VstPinProperties::UseSpeaker;
        properties.arrangementType = VstSpeakerArrangement::Music71;
        break;
    }
}

bool MAudioPluginVSTAdapter::getInputProperties(std::int32_t index,
                                                VstPinProperties& properties) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::getInputProperties", false,
                    [&]
                    {
                        if (index < 0 || index >= record.numInputs)
                            return false;
                        DescribePin(plugin->GetInputChannelName(ChannelOf(index)), properties);
                        return true;
                    });
}

bool MAudioPluginVSTAdapter::getOutputProperties(std::int32_t index,
                                                 VstPinProperties& properties) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::getOutputProperties", false,
                    [&]
                    {
                        if (index < 0 || index >= record.numOutputs)
                            return false;
                        DescribePin(plugin->GetOutputChannelName(ChannelOf(index)), properties);
                        return true;
                    });
}

bool MAudioPluginVSTAdapter::setSpeakerArrangement(const VstSpeakerArrangement* inputs,
                                                   const VstSpeakerArrangement* outputs) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::setSpeakerArrangement", false,
                    [&]
                    {
                        const int wantedInputs = inputs != nullptr ? inputs->numChannels : -1;
                        const int wantedOutputs = outputs != nullptr ? outputs->numChannels : 0;
                        if (wantedInputs > record.numInputs || wantedOutputs > record.numOutputs)
                            return false;
                        // Some hosts count all buses of a side as one.
                        const int out = std::clamp(wantedOutputs, 1, channelsPerBus);
                        const int in = wantedInputs < 0 ? out // not told; the effect has as many
                                                        : std::min(wantedInputs, channelsPerBus);
                        plugin->SetChannels(in, out); // without an input bus, no inputs
                        return true;
                    });
}

std::int32_t MAudioPluginVSTAdapter::canDo(const char* text) noexcept
{
    using namespace std::string_view_literals;
    struct Answer
    {
        std::string_view text;
        std::int32_t answer;
    };
    const std::int32_t receives = plugin->WantsMIDIInput() ? 1 : -1;
    const std::int32_t sends = plugin->SendsMIDIOutput() ? 1 : -1;
    const Answer answers[] = {
        {"receiveVstEvents"sv, receives},
        {"receiveVstEvent"sv, receives},
        {"receiveVstMidiEvents"sv, receives},
        {"receiveVstMidiEvent"sv, receives},
        {"sendVstEvents"sv, sends},
        {"sendVstEvent"sv, sends},
        {"sendVstMidiEvents"sv, sends},
        {"sendVstMidiEvent"sv, sends},
        {"plugAsChannelInsert"sv, 1},
        {"canMono"sv, 1},
        {"plugAsSend"sv, 1},
        {"receiveVstTimeInfo"sv, 1},
        {"bypass"sv, -1}, // the plugin's own parameter alone
    };
    const auto* const found = std::ranges::find(answers, std::string_view(text), &Answer::text);
    return found != std::end(answers) ? found->answer : 0;
}

PlugCategory MAudioPluginVSTAdapter::getPlugCategory() noexcept
{
    return IsSynth() ? PlugCategory::Synth : PlugCategory::Effect;
}

bool MAudioPluginVSTAdapter::getEffectName(std::span<char> text) noexcept
{
    return getProgramNameIndexed(0, text);
}

bool MAudioPluginVSTAdapter::getVendorString(std::span<char> text) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::getVendorString", false,
                    [&]
                    {
                        CopyText(plugin->GetMaker(), text);
                        return !text.empty();
                    });
}

bool MAudioPluginVSTAdapter::getProductString(std::span<char> text) noexcept
{
    return getProgramNameIndexed(0, text);
}

std::int32_t MAudioPluginVSTAdapter::getVendorVersion() noexcept
{
    return GetDecimalVersion();
}

void MAudioPluginVSTAdapter::idle() noexcept
{
    MGuarded("MAudioPluginVSTAdapter::idle", 0,
             [&]
             {
                 plugin->ProcessUpdate();
                 return 0;
             });
}

bool MAudioPluginVSTAdapter::ChangeEditorSize(int width, int height)
{
    return CallHost(HostOpcode::SizeWindow, width, height) != 0;
}

void MAudioPluginVSTAdapter::LatencyChanged()
{
    // Hosts read the field at any time.
    const int latency = plugin->GetEffectiveLatency();
    if (std::atomic_ref(record.initialDelay).exchange(latency) != latency)
        CallHost(HostOpcode::IOChanged);
}

AEffect* Vst2::CreateEffect(HostCallback host) noexcept
{
    return MGuarded("VST Plugin main", static_cast<AEffect*>(nullptr),
                    [&]() -> AEffect*
                    {
                        OstrelDLLInitialize();
                        std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
                        if (plugin == nullptr)
                        {
                            Trace("Error creating Vst plugin object.");
                            return nullptr;
                        }
                        auto adapter =
                            std::make_unique<MAudioPluginVSTAdapter>(host, std::move(plugin));
                        return &adapter.release()->GetAEffect(); // the host's, until it closes it
                    });
}
