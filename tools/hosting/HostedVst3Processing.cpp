// What a VST3 plugin does: layouts, blocks, events and time.

#include <algorithm>
#include <bit>

#include "tools/hosting/HostedVst3.h"

using namespace Vst3;

namespace
{

/// For 1 to 8 channels.
constexpr std::array<SpeakerArrangement, 9> Arrangements = {SpeakerArr::kEmpty,
                                                            SpeakerArr::kMono,
                                                            SpeakerArr::kStereo,
                                                            0x7,
                                                            0x33,
                                                            0x37,
                                                            SpeakerArr::k51,
                                                            0x637,
                                                            SpeakerArr::k80Music};

constexpr std::int16_t ProgramChange = 130; // this and the next as controllers are numbered
constexpr std::int16_t AfterTouch = 128;
constexpr std::int16_t PitchBend = 129;

} // namespace

void HostedVst3::Start(int channels, int rate, int maxBlock)
{
    Stop();
    Arrange(channels);
    ProcessSetup setup{.processMode = kOffline,
                       .symbolicSampleSize = kSample32,
                       .maxSamplesPerBlock = maxBlock,
                       .sampleRate = static_cast<double>(rate)};
    if (processor->setupProcessing(setup) != kResultOk)
        throw Refusal("the plugin refuses " + std::to_string(rate) + " Hz");
    ActivateBuses();
    inputBuses = MakeBuses(kInput);
    outputBuses = MakeBuses(kOutput);
    if (component->setActive(1) != kResultOk)
        throw Refusal("the plugin refuses to start");
    processor->setProcessing(1);
    isActive = true;
    clock.Start(rate);
}

void HostedVst3::Stop()
{
    if (!isActive)
        return;
    processor->setProcessing(0);
    component->setActive(0);
    isActive = false;
}

SpeakerArrangement HostedVst3::GetArrangement(std::int32_t direction, std::int32_t index)
{
    SpeakerArrangement arrangement = SpeakerArr::kEmpty;
    processor->getBusArrangement(direction, index, arrangement);
    return arrangement;
}

bool HostedVst3::AskForChannels(int channels)
{
    std::array<std::vector<SpeakerArrangement>, 2> sides;
    for (const std::int32_t direction : {kInput, kOutput})
    {
        auto& side = sides.at(static_cast<std::size_t>(direction));
        const std::int32_t count = component->getBusCount(kAudio, direction);
        for (std::int32_t index = 0; index < count; ++index)
            side.push_back(index == 0 ? Arrangements.at(static_cast<std::size_t>(channels))
                                      : GetArrangement(direction, index));
    }
    auto& [inputs, outputs] = sides;
    return processor->setBusArrangements(inputs.data(), static_cast<std::int32_t>(inputs.size()),
                                         outputs.data(),
                                         static_cast<std::int32_t>(outputs.size())) == kResultOk;
}

void HostedVst3::Arrange(int channels)
{
    if (AskForChannels(channels))
        return;
    // It may still have them already, or be able to do that alone.
    const int present = std::popcount(GetArrangement(kOutput, 0));
    if (present != channels)
        throw ChannelRefusal(channels, present);
}

void HostedVst3::ActivateBuses()
{
    for (const std::int32_t media : {kAudio, kEvent})
        for (const std::int32_t direction : {kInput, kOutput})
            for (std::int32_t i = 0; i < component->getBusCount(media, direction); ++i)
                component->activateBus(media, direction, i, i == 0 ? 1 : 0);
}

HostedVst3::Buses HostedVst3::MakeBuses(std::int32_t direction)
{
    Buses buses;
    const std::int32_t count = std::max(0, component->getBusCount(kAudio, direction));
    for (std::int32_t index = 0; index < count; ++index)
    {
        BusInfo info{};
        component->getBusInfo(kAudio, direction, index, info);
        buses.channels.emplace_back(static_cast<std::size_t>(std::clamp(info.channelCount, 0, 64)));
    }
    for (auto& channels : buses.channels)
        buses.buffers.push_back({.numChannels = static_cast<std::int32_t>(channels.size()),
                                 .silenceFlags = 0,
                                 .channelBuffers32 = channels.data()});
    return buses;
}

void HostedVst3::Buses::Point(std::span<const float* const> given, float* other)
{
    for (auto& bus : channels)
        std::ranges::fill(bus, other);
    for (std::size_t i = 0; !channels.empty() && i < std::min(given.size(), channels[0].size());
         ++i)
        if (given[i] != nullptr)
            channels[0][i] = const_cast<float*>(given[i]); // the interface knows no const
    for (AudioBusBuffers& bus : buffers)
        bus.silenceFlags = 0;
}

int HostedVst3::GetLatency() const
{
    constexpr std::uint32_t Longest = 1u << 24; // beyond, it is a mistake
    return static_cast<int>(std::min(processor->getLatencySamples(), Longest));
}

void HostedVst3::Send(std::span<const std::uint8_t, 3> message, int offset)
{
    const auto channel = static_cast<std::int16_t>(message[0] & 0x0F);
    const auto low = static_cast<std::int16_t>(message[1] & 0x7F);
    const auto high = static_cast<std::int16_t>(message[2] & 0x7F);
    const float part = static_cast<float>(high) / 127.0f;
    Event event{};
    event.sampleOffset = offset;
    switch (message[0] & 0xF0)
    {
    case 0x90:
        if (high > 0)
        {
            event.type = Event::kNoteOnEvent;
            event.noteOn = {channel, low, 0.0f, part, 0, -1};
            break;
        }
        [[fallthrough]];
    case 0x80:
        event.type = Event::kNoteOffEvent;
        event.noteOff = {channel, low, part, -1, 0.0f};
        break;
    case 0xA0:
        event.type = Event::kPolyPressureEvent;
        event.polyPressure = {channel, low, part, -1};
        break;
    case 0xC0:
        return SendController(channel, ProgramChange, low / 127.0, message, offset);
    case 0xD0:
        return SendController(channel, AfterTouch, low / 127.0, message, offset);
    case 0xE0:
        return SendController(channel, PitchBend, (high * 128 + low) / 16383.0, message, offset);
    default:
        return SendController(channel, low, high / 127.0, message, offset);
    }
    events.addEvent(event);
}

void HostedVst3::SendController(std::int16_t channel, std::int16_t number, double value01,
                                std::span<const std::uint8_t, 3> message, int offset)
{
    ParamID id = 0;
    if (mapping && mapping->getMidiControllerAssignment(0, channel, number, id) == kResultOk)
    {
        changes.Add(id, offset, value01);
        return;
    }
    // Without a parameter for it, all that is left are the bytes themselves.
    std::ranges::copy(message, eventBytes.emplace_back().begin());
    Event event{};
    event.sampleOffset = offset;
    event.type = Event::kDataEvent;
    event.data = {static_cast<std::uint32_t>(message.size()), DataEvent::kMidiSysEx,
                  eventBytes.back().data()};
    events.addEvent(event);
}

void HostedVst3::Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                         int samples)
{
    const auto count = static_cast<std::size_t>(samples);
    silence.resize(std::max(silence.size(), count));
    discarded.resize(silence.size());
    for (float* const output : outputs)
        std::fill_n(output, samples, 0.0f);
    inputBuses.Point(inputs, silence.data());
    outputBuses.Point(outputs, discarded.data());
    RunProcess(samples, &inputBuses, &outputBuses);
    clock.samples += samples;
    changes.Clear();
    events.events.clear();
    eventBytes.clear();
}

void HostedVst3::RunProcess(int samples, Buses* inputs, Buses* outputs)
{
    TellTime();
    Vst3ParameterChanges outputChanges;
    Vst3EventList outputEvents;
    ProcessData data{};
    data.processMode = kOffline;
    data.symbolicSampleSize = kSample32;
    data.numSamples = samples;
    const auto attach = [](Buses* buses, std::int32_t& count, AudioBusBuffers*& buffers)
    {
        if (buses == nullptr)
            return;
        count = static_cast<std::int32_t>(buses->buffers.size());
        buffers = buses->buffers.data();
    };
    attach(inputs, data.numInputs, data.inputs);
    attach(outputs, data.numOutputs, data.outputs);
    data.inputParameterChanges = &changes;
    data.outputParameterChanges = &outputChanges;
    Vst3EventList noEvents;
    data.inputEvents = samples > 0 ? &events : &noEvents;
    data.outputEvents = &outputEvents;
    data.processContext = &context;
    processor->process(data);
}

void HostedVst3::TellTime()
{
    context = {};
    context.sampleRate = clock.rate;
    context.projectTimeSamples = clock.samples;
    context.continousTimeSamples = clock.samples;
    context.state = ProcessContext::kContTimeValid;
    if (!clock.IsPlaying())
        return;
    context.projectTimeMusic = clock.GetQuarters();
    context.tempo = *clock.tempo;
    context.barPositionMusic = clock.GetBarStart();
    context.timeSigNumerator = HostClock::QuartersABar;
    context.timeSigDenominator = 4;
    context.state |= ProcessContext::kPlaying | ProcessContext::kProjectTimeMusicValid |
                     ProcessContext::kTempoValid | ProcessContext::kBarPositionValid |
                     ProcessContext::kTimeSigValid;
}
