#include "shell/midi/MMIDIProcessor.h"

#include <algorithm>

namespace
{

constexpr int ChannelMask = 0x0F;
constexpr int NoteMask = 0x7F;
constexpr double PerStep = 0.007874015748031496; ///< 1/127

double Unipolar(std::uint8_t data) noexcept
{
    return (data & 0x7F) * PerStep;
}

/// Velocity 1 is 0.0 and 127 is 126/127.
double Velocity(std::uint8_t data) noexcept
{
    return std::max(0, (data & 0x7F) - 1) * PerStep;
}

/// The high byte counts 256 steps; the centre is 3e-5 above 0.
double Wheel(std::uint8_t low, std::uint8_t high) noexcept
{
    const int value = static_cast<std::int8_t>(high) << 8 | static_cast<std::int8_t>(low);
    return value * 6.103701895199438e-05 - 1.0;
}

} // namespace

void MMIDIProcessor::SetTime(double newTempo, double newRate, double newPosition) noexcept
{
    tempo = newTempo;
    sampleRate = newRate;
    position = newPosition;
}

bool MMIDIProcessor::ProcessMIDIEvent(int offset, const std::uint8_t* bytes)
{
    if (offset > 0)
        --offset;
    const int channel = bytes[0] & ChannelMask;
    const double time = GetEventTime(offset);
    const int number = bytes[1] & NoteMask;

    switch (bytes[0] & 0xF0)
    {
    case 0x80:
    case 0x90:
        ProcessNotePerform(offset, time, channel, number, Velocity(bytes[2]),
                           (bytes[0] & 0xF0) == 0x90 && bytes[2] != 0);
        return true;
    case 0xA0:
        ProcessNotePressure(offset, time, channel, number, Unipolar(bytes[2]));
        return true;
    case 0xB0:
        return ProcessMIDIController(offset, time, channel, number, Unipolar(bytes[2]));
    case 0xC0:
        ProcessProgramChange(offset, time, channel, number);
        return false;
    case 0xD0:
        ProcessPressure(offset, time, channel, -1, Unipolar(bytes[1]));
        return true;
    case 0xE0:
        ProcessPitchWheel(offset, time, channel, Wheel(bytes[1], bytes[2]));
        return true;
    default:
        return false;
    }
}

void MMIDIProcessor::ProcessNotePerform(int offset, double time, int channel, int note,
                                        double velocity, bool on)
{
    if (on)
        OnNoteBegin();
    channel &= ChannelMask;
    note &= NoteMask;
    int& heldCount = held.at(static_cast<std::size_t>(channel)).at(static_cast<std::size_t>(note));
    int& soundingCount =
        sounding.at(static_cast<std::size_t>(channel)).at(static_cast<std::size_t>(note));
    if (on)
    {
        if (sustain && heldCount > 0)
            --heldCount;
        ++soundingCount;
    }
    else if (sustain)
    {
        ++heldCount;
        return;
    }
    else
        soundingCount = std::max(0, soundingCount - 1);
    ProcessNote(offset, time, channel, note, velocity, on);
}

void MMIDIProcessor::ProcessNotePressure(int offset, double time, int channel, int note,
                                         double value)
{
    ProcessPressure(offset, time, channel & ChannelMask, note & NoteMask, value);
}

void MMIDIProcessor::ProcessAllNotesOff(int offset, double time)
{
    MMIDIProcessorBase::ProcessAllNotesOff(offset, time);
    for (int channel = 0; channel < Rows; ++channel)
        ReleaseAll(offset, time, channel);
}

void MMIDIProcessor::ProcessChannelNotesOff(int offset, double time, int channel)
{
    MMIDIProcessorBase::ProcessChannelNotesOff(offset, time, channel);
    ReleaseAll(offset, time, channel);
}

void MMIDIProcessor::ReleaseAll(int offset, double time, int channel)
{
    const auto row = static_cast<std::size_t>(channel);
    held.at(row).fill(0);
    for (int note = 0; note < Notes; ++note)
        for (int& count = sounding.at(row).at(static_cast<std::size_t>(note)); count > 0; --count)
            ProcessNote(offset, time, channel, note, 0.0, false);
}

bool MMIDIProcessor::ProcessMIDIController(int offset, double time, int channel, int number,
                                           double value)
{
    const bool isTaken =
        MMIDIProcessorBase::ProcessMIDIController(offset, time, channel, number, value);
    switch (number)
    {
    case 7:
        ProcessVolume(offset, time, channel, value);
        return true;
    case 10:
        ProcessPan(offset, time, channel, value);
        return true;
    case 64:
        ProcessSustain(offset, time, channel, value >= 0.5);
        return true;
    case 123:
        ProcessAllNotesOff(offset, time);
        return true;
    case 126:
        ProcessChannelNotesOff(offset, time, channel);
        return true;
    default:
        return isTaken;
    }
}

void MMIDIProcessor::ProcessSustain(int offset, double time, int channel, bool on)
{
    sustain = on;
    if (on)
        return;
    const auto row = static_cast<std::size_t>(channel);
    for (int note = 0; note < Notes; ++note)
    {
        int& soundingCount = sounding.at(row).at(static_cast<std::size_t>(note));
        for (int& count = held.at(row).at(static_cast<std::size_t>(note)); count > 0; --count)
        {
            soundingCount = std::max(0, soundingCount - 1);
            ProcessNote(offset, time, channel, note, 0.0, false);
        }
    }
}
