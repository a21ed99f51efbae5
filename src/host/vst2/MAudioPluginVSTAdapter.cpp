#include "host/vst2/MAudioPluginVSTAdapter.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"
#include "host/PluginState.h"

using namespace Vst2;

namespace
{

constexpr std::intptr_t OldestWideVersion = 2300; ///< older hosts get stereo at most
constexpr std::intptr_t FirstVersion = 100;       ///< still older ones get two inputs at least

/// Transport, automation, position, tempo, bars, cycle and signature.
constexpr std::int32_t TimeMask = 0x3EC7;

/// The version of the module as one decimal number, 503 for 5.3.
std::int32_t GetDecimalVersion() noexcept
{
    const std::uint32_t version = MModule::Get().GetVersion();
    return static_cast<std::int32_t>((version >> 24) * 100 + (version >> 16 & 0xFF));
}

HostTime ToHostTime(const VstTimeInfo& info) noexcept
{
    const auto has = [&](VstTimeInfo::Flag flag) { return (info.flags & flag) != 0; };
    HostTime time;
    if (has(VstTimeInfo::PpqPosValid))
        time.position = info.ppqPos;
    if (has(VstTimeInfo::TempoValid))
        time.tempo = info.tempo;
    if (has(VstTimeInfo::BarsValid))
        time.barStart = info.barStartPos;
    if (has(VstTimeInfo::TimeSigValid))
        time.signature = {info.timeSigNumerator, info.timeSigDenominator};
    if (has(VstTimeInfo::CyclePosValid))
        time.loop = {info.cycleStartPos, info.cycleEndPos};
    time.isPlaying = has(VstTimeInfo::TransportPlaying);
    return time;
}

/// Reports a value to the host, whose echo on this thread is left out meanwhile.
class EchoScope
{
public:
    explicit EchoScope(std::atomic<std::thread::id>& ignored) noexcept
        : thread(ignored),
          before(ignored.exchange(std::this_thread::get_id()))
    {
    }
    ~EchoScope() { thread = before; }
    EchoScope(const EchoScope&) = delete;
    EchoScope& operator=(const EchoScope&) = delete;

private:
    std::atomic<std::thread::id>& thread;
    std::thread::id before;
};

} // namespace

MAudioPluginVSTAdapter::MAudioPluginVSTAdapter(HostCallback hostCallback,
                                               std::unique_ptr<MAudioPlugin> effectPlugin)
    : AudioEffect(hostCallback, 1, effectPlugin->GetParameterCount()),
      plugin(std::move(effectPlugin)),
      echoes(record.numParams),
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

bool MAudioPluginVSTAdapter::HasParameter(std::int32_t index) const noexcept
{
    return index >= 0 && index < record.numParams;
}

void MAudioPluginVSTAdapter::setParameter(std::int32_t index, float value) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::setParameter", 0,
             [&]
             {
                 if (!HasParameter(index) || !std::isfinite(value) || IgnoresHostParameters())
                     return 0;
                 plugin->SetParameterFromHostSafely(index, value);
                 echoes.Note(index, std::clamp(value, 0.0f, 1.0f), GetOwnParameter(index));
                 return 0;
             });
}

float MAudioPluginVSTAdapter::getParameter(std::int32_t index) noexcept
{
    return MGuarded(
        "MAudioPluginVSTAdapter::getParameter", 0.0f,
        [&] { return HasParameter(index) ? echoes.Read(index, GetOwnParameter(index)) : 0.0f; });
}

float MAudioPluginVSTAdapter::GetOwnParameter(int index) const
{
    // Some hosts keep the values they read as the state, and set them later.
    return static_cast<float>(plugin->GetRestorableParameter(index));
}

void MAudioPluginVSTAdapter::getProgramName(std::span<char> text) noexcept
{
    getProgramNameIndexed(0, text);
}

bool MAudioPluginVSTAdapter::getProgramNameIndexed(std::int32_t index,
                                                   std::span<char> text) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::getProgramNameIndexed", false,
                    [&]
                    {
                        if (index != 0)
                            return false;
                        CopyText(plugin->GetName(), text);
                        return !text.empty();
                    });
}

void MAudioPluginVSTAdapter::getParameterName(std::int32_t index, std::span<char> text) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::getParameterName", 0,
             [&]
             {
                 CopyText(plugin->GetParameterName(index), text);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::getParameterDisplay(std::int32_t index, std::span<char> text) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::getParameterDisplay", 0,
             [&]
             {
                 CopyText(plugin->GetParameterValueName(index), text);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::getParameterLabel(std::int32_t index, std::span<char> text) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::getParameterLabel", 0,
             [&]
             {
                 CopyText(plugin->GetParameterUnitsName(index), text);
                 return 0;
             });
}

bool MAudioPluginVSTAdapter::canParameterBeAutomated(std::int32_t index) noexcept
{
    return HasParameter(index);
}

bool MAudioPluginVSTAdapter::string2parameter(std::int32_t index, const char* text) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::string2parameter", false,
                    [&]
                    {
                        if (!HasParameter(index))
                            return false;
                        if (text != nullptr)
                            plugin->SetParameterFromHostSafely(
                                index,
                                plugin->ParseParameterValueName(index, MString::FromUTF8(text)));
                        return true;
                    });
}

std::intptr_t MAudioPluginVSTAdapter::getChunk(void*& data, bool /*isPreset*/) noexcept
{
    data = nullptr;
    return MGuarded("MAudioPluginVSTAdapter::getChunk", std::intptr_t{0},
                    [&]
                    {
                        chunk = pluginstate::Save(*plugin);
                        const std::span<const std::byte> bytes = chunk.GetData();
                        data = const_cast<std::byte*>(bytes.data()); // hosts only read
                        return static_cast<std::intptr_t>(bytes.size());
                    });
}

std::int32_t MAudioPluginVSTAdapter::setChunk(const void* data, std::intptr_t size,
                                              bool /*isPreset*/) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::setChunk", 0,
                    [&]
                    {
                        if (data == nullptr || size <= 0)
                            return 0;
                        MMemoryStream stream = MMemoryStream::Refer(
                            {static_cast<const std::byte*>(data), static_cast<std::size_t>(size)});
                        pluginstate::Load(*plugin, stream);
                        updateDisplay();
                        return 1;
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

void MAudioPluginVSTAdapter::process(float** inputs, float** outputs, std::int32_t samples) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::process", 0,
             [&]
             {
                 ProcessBlock(inputs, outputs, samples, false);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::processReplacing(float** inputs, float** outputs,
                                              std::int32_t samples) noexcept
{
    MGuarded("MAudioPluginVSTAdapter::processReplacing", 0,
             [&]
             {
                 ProcessBlock(inputs, outputs, samples, true);
                 return 0;
             });
}

void MAudioPluginVSTAdapter::ProcessBlock(float** inputs, float** outputs, int samples,
                                          bool replacing)
{
    if (samples <= 0 || outputs == nullptr)
        return;
    PrepareProcessing();
    if (!plugin->IsSuspended())
    {
        const MLockGuard guard(plugin->GetProcessingLock());
        DeliverQueue();
    }
    const Channels<const float> in = Spread<const float>(inputs, record.numInputs);
    const Channels<float> out = Spread<float>(outputs, record.numOutputs);
    plugin->ProcessAudio(in.data(), out.data(), samples, replacing);
    if (replacing && plugin->GetOutputChannels() < channelsPerBus)
        SilenceUnused(outputs, samples);
    if (output != nullptr)
        if (const VstEvents* const events = output->Pack())
            CallHost(HostOpcode::ProcessEvents, 0, 0, events);
}

void MAudioPluginVSTAdapter::PrepareProcessing()
{
    if (!plugin->WantsTime())
        return;
    if (const VstTimeInfo* const info = getTimeInfo(TimeMask))
        transport.Tell(*plugin, ToHostTime(*info));
}

void MAudioPluginVSTAdapter::DeliverQueue()
{
    for (const auto& [offset, bytes] : inputQueue.Take())
        plugin->ProcessMIDIEvent(offset, bytes.data());
}

template <typename Sample>
MAudioPluginVSTAdapter::Channels<Sample> MAudioPluginVSTAdapter::Spread(Sample* const* row,
                                                                        int count) const noexcept
{
    Channels<Sample> channels{};
    if (row == nullptr)
        return channels;
    for (int i = 0; i < MAudioPlugin::MaxChannels; ++i)
    {
        // Behind the channels of a bus its last one again.
        const int bus = i / MAudioPlugin::ChannelsPerBus;
        const int place = std::min(i % MAudioPlugin::ChannelsPerBus, channelsPerBus - 1);
        const int flat = bus * channelsPerBus + place;
        if (flat < count)
            channels.data()[i] = row[flat];
    }
    return channels;
}

void MAudioPluginVSTAdapter::SilenceUnused(float* const* outputs, int samples) const noexcept
{
    const int used = plugin->GetOutputChannels();
    float* const* const end = outputs + record.numOutputs;
    for (int i = 0; i < record.numOutputs; ++i)
    {
        // A block that stands for two channels has been written.
        const bool isOnly = std::find(outputs, end, outputs[i]) == outputs + i;
        if (i % channelsPerBus >= used && isOnly && outputs[i] != nullptr)
            std::fill_n(outputs[i], samples, 0.0f);
    }
}

std::int32_t MAudioPluginVSTAdapter::processEvents(const VstEvents* events) noexcept
{
    return MGuarded("MAudioPluginVSTAdapter::processEvents", 0,
                    [&]
                    {
                        if (events == nullptr || events->numEvents <= 0)
                            return 1;
                        if (plugin->WantsTime())
                            if (const VstTimeInfo* const info = getTimeInfo(TimeMask))
                                HostTransport::TellEventTime(*plugin, ToHostTime(*info));

                        // The audio thread does not wait for whoever suspended processing.
                        const bool isDelivered = !plugin->IsSuspended();
                        std::optional<MLockGuard> guard;
                        if (isDelivered)
                        {
                            guard.emplace(plugin->GetProcessingLock());
                            DeliverQueue(); // older than these
                        }
                        const VstEvent* const* const list =
                            events->events.data(); // longer than declared
                        for (int i = 0; i < events->numEvents; ++i)
                        {
                            const VstEvent* const event = list[i];
                            if (event == nullptr || event->type != VstEvent::Midi)
                                continue;
                            const auto* const midi = reinterpret_cast<const VstMidiEvent*>(event);
                            if (isDelivered)
                                plugin->ProcessMIDIEvent(midi->deltaFrames, midi->midiData.data());
                            else
                                inputQueue.Add(midi->deltaFrames, midi->midiData.data());
                        }
                        return 1;
                    });
}

void MAudioPluginVSTAdapter::SendAutomation(int index, double value01)
{
    if (!HasParameter(index))
        return;
    const EchoScope scope(ignoreHostParameters);
    CallHost(HostOpcode::BeginEdit, index);
    CallHost(HostOpcode::Automate, index, 0, nullptr, static_cast<float>(value01));
    CallHost(HostOpcode::EndEdit, index);
}

void MAudioPluginVSTAdapter::GenerateMIDIEvent(int offset, const std::uint8_t* bytes)
{
    if (output != nullptr)
        output->GetQueue().Add(offset, bytes);
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

bool MAudioPluginVSTAdapter::IgnoresHostParameters() const noexcept
{
    return ignoreHostParameters.load(std::memory_order_relaxed) == std::this_thread::get_id();
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
