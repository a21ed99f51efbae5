#include "shell/midi/MMIDIProcessorBase.h"

#include <type_traits>

void MMIDIProcessorBase::AddListener(MMIDIProcessorBase& listener, std::uint32_t channelMask)
{
    listeners.push_back({&listener, channelMask});
}

template <typename Result, typename... Arguments>
bool MMIDIProcessorBase::Forward(int channel, Result (MMIDIProcessorBase::*operation)(Arguments...),
                                 Arguments... arguments)
{
    bool isTaken = false;
    for (const Listener& listener : listeners)
    {
        if ((listener.channelMask >> (static_cast<unsigned>(channel) & 31u) & 1u) == 0)
            continue;
        if constexpr (std::is_void_v<Result>)
            (listener.processor->*operation)(arguments...);
        else if ((listener.processor->*operation)(arguments...))
            isTaken = true;
    }
    return isTaken;
}

void MMIDIProcessorBase::ProcessNote(int offset, double time, int channel, int note,
                                     double velocity, bool on)
{
    Forward(channel, &MMIDIProcessorBase::ProcessNote, offset, time, channel, note, velocity, on);
}

void MMIDIProcessorBase::ProcessAllNotesOff(int offset, double time)
{
    // It has no channel, so the masks do not matter.
    for (const Listener& listener : listeners)
        listener.processor->ProcessAllNotesOff(offset, time);
}

void MMIDIProcessorBase::ProcessChannelNotesOff(int offset, double time, int channel)
{
    Forward(channel, &MMIDIProcessorBase::ProcessChannelNotesOff, offset, time, channel);
}

void MMIDIProcessorBase::ProcessPressure(int offset, double time, int channel, int note,
                                         double value)
{
    if (note < 0)
        lastPressure = value;
    Forward(channel, &MMIDIProcessorBase::ProcessPressure, offset, time, channel, note, value);
}

void MMIDIProcessorBase::ProcessProgramChange(int offset, double time, int channel, int program)
{
    lastProgram = program;
    Forward(channel, &MMIDIProcessorBase::ProcessProgramChange, offset, time, channel, program);
}

void MMIDIProcessorBase::ProcessVolume(int offset, double time, int channel, double value)
{
    volume = value;
    Forward(channel, &MMIDIProcessorBase::ProcessVolume, offset, time, channel, value);
}

void MMIDIProcessorBase::ProcessPan(int offset, double time, int channel, double value)
{
    pan = value;
    Forward(channel, &MMIDIProcessorBase::ProcessPan, offset, time, channel, value);
}

void MMIDIProcessorBase::ProcessPitchWheel(int offset, double time, int channel, double value)
{
    pitch = value;
    Forward(channel, &MMIDIProcessorBase::ProcessPitchWheel, offset, time, channel, value);
}

bool MMIDIProcessorBase::ProcessMIDIController(int offset, double time, int channel, int number,
                                               double value)
{
    return Forward(channel, &MMIDIProcessorBase::ProcessMIDIController, offset, time, channel,
                   number, value);
}

bool MMIDIProcessorBase::ProcessMIDIEvent(int offset, const std::uint8_t* bytes)
{
    return Forward(bytes[0] & 0x0F, &MMIDIProcessorBase::ProcessMIDIEvent, offset, bytes);
}

bool MMIDIProcessorBase::ProcessRawEvent(int offset, std::span<const std::byte> event)
{
    bool isTaken = false;
    for (const Listener& listener : listeners)
        isTaken |= listener.processor->ProcessRawEvent(offset, event);
    return isTaken;
}
