#include "host/vst3/Vst3Events.h"

#include <algorithm>
#include <cmath>

#include "host/MAudioPlugin.h"

namespace Vst3
{

namespace
{

constexpr float PerStep = 1.0f / 127.0f;

double Unipolar(float value) noexcept
{
    return std::isfinite(value) ? std::clamp(static_cast<double>(value), 0.0, 1.0) : 0.0;
}

std::uint8_t SevenBits(int value) noexcept
{
    return static_cast<std::uint8_t>(value & 0x7F);
}

void SendNote(MAudioPlugin& plugin, int offset, int channel, int pitch, float velocity, bool on)
{
    const double time = plugin.WantsTime() ? plugin.GetEventTime(offset) : 0.0;
    plugin.ProcessNotePerform(offset, time, channel, pitch, Unipolar(velocity), on);
}

/// The first three bytes; what is no channel message the plugin leaves out.
void SendData(MAudioPlugin& plugin, int offset, const DataEvent& data)
{
    if (data.bytes == nullptr || data.size == 0)
        return;
    std::array<std::uint8_t, 3> bytes{};
    std::copy_n(data.bytes, std::min<std::size_t>(data.size, bytes.size()), bytes.begin());
    plugin.ProcessMIDIEvent(offset, bytes.data());
}

} // namespace

void InputEvents::Deliver(MAudioPlugin& plugin, IEventList* list, int samples)
{
    const bool isWaiting = plugin.IsSuspended();
    if (!isWaiting)
    {
        for (std::size_t i = 0; i < keptCount; ++i)
            Send(plugin, kept[i]);
        keptCount = 0;
    }
    const std::int32_t count = list != nullptr ? list->getEventCount() : 0;
    for (std::int32_t i = 0; i < count; ++i)
    {
        Event event{};
        if (list->getEvent(i, event) != kResultOk)
            continue;
        event.sampleOffset = std::clamp(event.sampleOffset, 0, samples - 1);
        if (!isWaiting)
            Send(plugin, event);
        else if (event.type != Event::kDataEvent && keptCount < kept.size())
        {
            event.sampleOffset = 0;
            kept[keptCount++] = event;
        }
    }
}

void InputEvents::Send(MAudioPlugin& plugin, const Event& event)
{
    const int offset = event.sampleOffset;
    switch (event.type)
    {
    case Event::kNoteOnEvent:
        SendNote(plugin, offset, event.noteOn.channel, event.noteOn.pitch, event.noteOn.velocity,
                 true);
        break;
    case Event::kNoteOffEvent:
        SendNote(plugin, offset, event.noteOff.channel, event.noteOff.pitch, event.noteOff.velocity,
                 false);
        break;
    case Event::kPolyPressureEvent:
    {
        const PolyPressureEvent& pressed = event.polyPressure;
        const std::array bytes = {
            static_cast<std::uint8_t>(0xA0 | (pressed.channel & 0x0F)), SevenBits(pressed.pitch),
            SevenBits(static_cast<int>(std::lround(Unipolar(pressed.pressure) * 127.0)))};
        plugin.ProcessMIDIEvent(offset, bytes.data());
        break;
    }
    case Event::kDataEvent:
        SendData(plugin, offset, event.data);
        break;
    default:
        break;
    }
}

bool MakeEvent(const MIDIQueue::Message& message, Event& event) noexcept
{
    event = {};
    event.sampleOffset = message.offset;
    const auto [status, first, second] = message.bytes;
    const auto channel = static_cast<std::int8_t>(status & 0x0F);
    const auto low = static_cast<std::int8_t>(SevenBits(first));
    const auto high = static_cast<std::int8_t>(SevenBits(second));
    const auto makeController = [&](std::uint8_t number, std::int8_t value, std::int8_t value2)
    {
        event.type = Event::kLegacyMIDICCOutEvent;
        event.midiCCOut = {number, channel, value, value2};
        return true;
    };
    switch (status & 0xF0)
    {
    case 0x90:
        if (high > 0)
        {
            event.type = Event::kNoteOnEvent;
            event.noteOn = {.channel = channel,
                            .pitch = low,
                            .tuning = 0.0f,
                            .velocity = high * PerStep,
                            .length = 0,
                            .noteId = -1};
            return true;
        }
        [[fallthrough]];
    case 0x80:
        event.type = Event::kNoteOffEvent;
        event.noteOff = {.channel = channel,
                         .pitch = low,
                         .velocity = high * PerStep,
                         .noteId = -1,
                         .tuning = 0.0f};
        return true;
    case 0xA0:
        event.type = Event::kPolyPressureEvent;
        event.polyPressure = {
            .channel = channel, .pitch = low, .pressure = high * PerStep, .noteId = -1};
        return true;
    case 0xB0:
        return makeController(SevenBits(first), high, 0);
    case 0xC0:
        return makeController(LegacyMIDICCOutEvent::kCtrlProgramChange, low, 0);
    case 0xD0:
        return makeController(LegacyMIDICCOutEvent::kAfterTouch, low, 0);
    case 0xE0:
        return makeController(LegacyMIDICCOutEvent::kPitchBend, low, high);
    default:
        return false;
    }
}

} // namespace Vst3
