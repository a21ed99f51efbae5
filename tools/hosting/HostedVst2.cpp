#include "tools/hosting/HostedVst2.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string_view>

#include "tools/hosting/PluginModule.h"

using namespace Vst2;

namespace
{

/// The host of the effect that is being made on this thread, which cannot be asked for it yet.
thread_local HostedVst2* newHost = nullptr;

void CopyText(void* target, std::string_view text)
{
    constexpr std::size_t Room = 64;
    if (target == nullptr)
        return;
    const std::size_t length = std::min(text.size(), Room - 1);
    std::memcpy(target, text.data(), length);
    static_cast<char*>(target)[length] = '\0';
}

bool CanHostDo(const void* text)
{
    constexpr std::string_view Abilities[] = {"sendVstEvents", "sendVstMidiEvent",
                                              "sendVstTimeInfo", "receiveVstEvents",
                                              "receiveVstMidiEvent"};
    return text != nullptr &&
           std::ranges::find(Abilities, static_cast<const char*>(text)) != std::end(Abilities);
}

/// As VST2 names them, for 1 to 8 channels.
VstSpeakerArrangement MakeArrangement(int channels)
{
    constexpr std::array<std::int32_t, 9> Types = {-1, 0, 1, 6, 11, 14, 15, 18, 25};
    VstSpeakerArrangement arrangement;
    arrangement.type = Types.at(static_cast<std::size_t>(channels));
    arrangement.numChannels = channels;
    return arrangement;
}

/// One pointer for each of @p count channels: of @p given, or @p other.
template <typename Pointers>
void FillPointers(std::vector<float*>& pointers, int count, const Pointers& given, float* other)
{
    pointers.assign(static_cast<std::size_t>(count), other);
    for (std::size_t i = 0; i < std::min(pointers.size(), given.size()); ++i)
        if (given[i] != nullptr)
            pointers[i] = const_cast<float*>(given[i]); // the interface knows no const
}

} // namespace

HostedVst2::HostedVst2(std::shared_ptr<PluginModule> pluginModule)
    : module(std::move(pluginModule)),
      effect(MakeEffect())
{
    if (effect == nullptr)
        throw module->Failure("the plugin refuses to be made");
    if (effect->magic != EffectMagic || effect->dispatcher == nullptr ||
        effect->setParameter == nullptr || effect->getParameter == nullptr ||
        (effect->process == nullptr && effect->processReplacing == nullptr))
        throw module->Failure("what it makes is no VST2 effect");
    effect->reservedForHost[0] = this;
    Dispatch(EffectOpcode::Open);
}

AEffect* HostedVst2::MakeEffect()
{
    newHost = this;
    AEffect* const made = module->GetEntry()(&OnCallback);
    newHost = nullptr;
    return made;
}

HostedVst2::~HostedVst2()
{
    Stop();
    Dispatch(EffectOpcode::Close);
}

std::intptr_t HostedVst2::Dispatch(EffectOpcode opcode, std::int32_t index, std::intptr_t value,
                                   void* ptr, float opt) const
{
    return effect->dispatcher(effect, static_cast<std::int32_t>(opcode), index, value, ptr, opt);
}

std::intptr_t HostedVst2::OnCallback(AEffect* effect, std::int32_t opcode, std::int32_t /*index*/,
                                     std::intptr_t /*value*/, void* ptr, float /*opt*/)
{
    auto* host = effect != nullptr ? static_cast<HostedVst2*>(effect->reservedForHost[0]) : nullptr;
    if (host == nullptr)
        host = newHost;
    return host != nullptr ? host->Answer(static_cast<HostOpcode>(opcode), ptr) : 0;
}

std::intptr_t HostedVst2::Answer(HostOpcode opcode, void* ptr)
{
    constexpr std::intptr_t UserThread = 1;
    constexpr std::intptr_t Offline = 4;
    switch (opcode)
    {
    case HostOpcode::Version:
        return InterfaceVersion;
    case HostOpcode::GetTime:
        return isProcessing ? reinterpret_cast<std::intptr_t>(&time) : 0;
    case HostOpcode::GetSampleRate:
        return clock.rate;
    case HostOpcode::GetBlockSize:
        return maxSamples;
    case HostOpcode::GetCurrentProcessLevel:
        return isProcessing ? Offline : UserThread;
    case HostOpcode::GetVendorString:
        CopyText(ptr, "Quillfern");
        return 1;
    case HostOpcode::GetProductString:
        CopyText(ptr, "Tonvale host");
        return 1;
    case HostOpcode::CanDo:
        return CanHostDo(ptr) ? 1 : 0;
    case HostOpcode::WantMidi:
    case HostOpcode::ProcessEvents:
    case HostOpcode::IOChanged: // the latency is read anew at each start
    case HostOpcode::GetLanguage:
        return 1;
    default:
        return 0;
    }
}

std::string HostedVst2::Ask(EffectOpcode opcode, int index) const
{
    std::array<char, 512> text{}; // more than any effect is known to write
    Dispatch(opcode, index, 0, text.data());
    text.back() = '\0';
    return text.data();
}

std::string HostedVst2::GetName() const
{
    for (const EffectOpcode opcode : {EffectOpcode::GetEffectName, EffectOpcode::GetProductString})
        if (std::string name = Ask(opcode); !name.empty())
            return name;
    return module->GetPath().stem().string();
}

std::string HostedVst2::GetMaker() const
{
    return Ask(EffectOpcode::GetVendorString);
}

std::string HostedVst2::GetVersion() const
{
    const std::intptr_t version = Dispatch(EffectOpcode::GetVendorVersion);
    return std::to_string(version != 0 ? version : effect->version);
}

int HostedVst2::GetParameterCount() const
{
    return std::max(0, effect->numParams);
}

std::string HostedVst2::GetParameterName(int index) const
{
    return Ask(EffectOpcode::GetParamName, index);
}

double HostedVst2::Get01(int index) const
{
    return effect->getParameter(effect, index);
}

void HostedVst2::Set01(int index, double value01)
{
    effect->setParameter(effect, index, static_cast<float>(value01));
}

std::string HostedVst2::GetText(int index) const
{
    std::string text = Ask(EffectOpcode::GetParamDisplay, index);
    const std::string unit = Ask(EffectOpcode::GetParamLabel, index);
    if (!unit.empty() && !text.ends_with(unit))
        text += ' ' + unit;
    return text;
}

std::string HostedVst2::GetTextAt(int index, double value01)
{
    const float present = effect->getParameter(effect, index);
    Set01(index, value01);
    std::string text = GetText(index);
    effect->setParameter(effect, index, present);
    return text;
}

std::optional<double> HostedVst2::Parse(int index, const std::string& text)
{
    const float present = effect->getParameter(effect, index);
    std::string copy = text;
    if (Dispatch(EffectOpcode::String2Parameter, index, 0, copy.data()) == 0)
        return std::nullopt;
    const double parsed = Get01(index);
    effect->setParameter(effect, index, present);
    return parsed;
}

bool HostedVst2::SetBypassed(bool on)
{
    return Dispatch(EffectOpcode::SetBypass, 0, on ? 1 : 0) != 0;
}

std::vector<std::byte> HostedVst2::SaveState()
{
    if ((effect->flags & AEffect::ProgramChunks) == 0)
    {
        std::vector<float> values;
        values.reserve(static_cast<std::size_t>(GetParameterCount()));
        for (int index = 0; index < GetParameterCount(); ++index)
            values.push_back(effect->getParameter(effect, index));
        const auto bytes = std::as_bytes(std::span(values));
        return {bytes.begin(), bytes.end()};
    }
    void* data = nullptr;
    const std::intptr_t size = Dispatch(EffectOpcode::GetChunk, 0, 0, &data);
    if (data == nullptr || size <= 0)
        throw Refusal("the plugin gives no state");
    const std::span bytes(static_cast<const std::byte*>(data), static_cast<std::size_t>(size));
    return {bytes.begin(), bytes.end()};
}

void HostedVst2::LoadState(std::span<const std::byte> state)
{
    const MException refusal = Refusal("the plugin does not take this state");
    std::vector<std::byte> copy(state.begin(), state.end()); // an effect may write to it
    if ((effect->flags & AEffect::ProgramChunks) != 0)
    {
        // Not all that take it say so; those show it by what they have then.
        const std::vector<std::byte> before = SaveState();
        if (Dispatch(EffectOpcode::SetChunk, 0, static_cast<std::intptr_t>(copy.size()),
                     copy.data()) == 0 &&
            SaveState() == before && !std::ranges::equal(before, state))
            throw refusal;
        return;
    }
    std::vector<float> values(static_cast<std::size_t>(GetParameterCount()));
    if (copy.size() != values.size() * sizeof(float))
        throw refusal;
    std::memcpy(values.data(), copy.data(), copy.size());
    for (std::size_t index = 0; index < values.size(); ++index)
        effect->setParameter(effect, static_cast<std::int32_t>(index), values[index]);
}

void HostedVst2::Start(int channels, int rate, int maxBlock)
{
    Stop();
    clock.Start(rate);
    maxSamples = maxBlock;
    Dispatch(EffectOpcode::SetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
    Dispatch(EffectOpcode::SetBlockSize, 0, maxBlock);
    Arrange(channels);
    Dispatch(EffectOpcode::MainsChanged, 0, 1);
    Dispatch(EffectOpcode::StartProcess);
    isRunning = true;
}

void HostedVst2::Stop()
{
    if (!isRunning)
        return;
    Dispatch(EffectOpcode::StopProcess);
    Dispatch(EffectOpcode::MainsChanged, 0, 0);
    isRunning = false;
}

void HostedVst2::Arrange(int channels)
{
    if (effect->numOutputs == channels && (arrangedChannels == 0 || arrangedChannels == channels))
        return;
    VstSpeakerArrangement inputs = MakeArrangement(effect->numInputs > 0 ? channels : 0);
    VstSpeakerArrangement outputs = MakeArrangement(channels);
    const bool isTaken = Dispatch(EffectOpcode::SetSpeakerArrangement, 0,
                                  reinterpret_cast<std::intptr_t>(&inputs), &outputs) != 0;
    // Outputs behind the first pair may be those of other buses; the second one is not.
    if (effect->numOutputs < channels || (!isTaken && channels == 1 && effect->numOutputs > 1))
        throw ChannelRefusal(channels, effect->numOutputs);
    arrangedChannels = channels;
}

int HostedVst2::GetLatency() const
{
    return std::max(0, effect->initialDelay);
}

void HostedVst2::Send(std::span<const std::uint8_t, 3> message, int offset)
{
    VstMidiEvent event;
    event.deltaFrames = offset;
    std::ranges::copy(message, event.midiData.begin());
    messages.push_back(event);
}

void HostedVst2::Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                         int samples)
{
    const auto count = static_cast<std::size_t>(samples);
    silence.resize(std::max(silence.size(), count));
    discarded.resize(silence.size());
    FillPointers(inputPointers, effect->numInputs, inputs, silence.data());
    FillPointers(outputPointers, effect->numOutputs, outputs, discarded.data());
    for (float* const output : outputs)
        std::fill_n(output, samples, 0.0f);

    TellTime();
    isProcessing = true;
    DeliverMessages();
    const bool isReplacing =
        effect->processReplacing != nullptr &&
        ((effect->flags & AEffect::CanReplacing) != 0 || effect->process == nullptr);
    (isReplacing ? effect->processReplacing : effect->process)(effect, inputPointers.data(),
                                                               outputPointers.data(), samples);
    isProcessing = false;
    clock.samples += samples;
}

void HostedVst2::TellTime()
{
    time = {};
    time.samplePos = static_cast<double>(clock.samples);
    time.sampleRate = clock.rate;
    if (!clock.IsPlaying())
        return;
    time.ppqPos = clock.GetQuarters();
    time.tempo = *clock.tempo;
    time.barStartPos = clock.GetBarStart();
    time.timeSigNumerator = HostClock::QuartersABar;
    time.timeSigDenominator = 4;
    time.flags = VstTimeInfo::TransportPlaying | VstTimeInfo::PpqPosValid |
                 VstTimeInfo::TempoValid | VstTimeInfo::BarsValid | VstTimeInfo::TimeSigValid;
    if (clock.IsStarting())
        time.flags |= VstTimeInfo::TransportChanged;
}

void HostedVst2::DeliverMessages()
{
    if (messages.empty())
        return;
    constexpr std::size_t FirstPointer = offsetof(VstEvents, events);
    messageList.assign(std::max(sizeof(VstEvents), FirstPointer + messages.size() * sizeof(void*)),
                       std::byte{});
    auto* const list = new (messageList.data()) VstEvents;
    list->numEvents = static_cast<std::int32_t>(messages.size());
    for (std::size_t i = 0; i < messages.size(); ++i)
    {
        const VstMidiEvent* const event = &messages[i];
        std::memcpy(messageList.data() + FirstPointer + i * sizeof(void*), &event, sizeof(void*));
    }
    Dispatch(EffectOpcode::ProcessEvents, 0, 0, list);
    messages.clear();
}
