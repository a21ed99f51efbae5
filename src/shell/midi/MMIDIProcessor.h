#pragma once

#include <array>

#include "shell/midi/MMIDIProcessorBase.h"

/// Decodes MIDI bytes into the named operations, and keeps which notes sound and which the sustain
/// pedal holds.
class MMIDIProcessor : public MMIDIProcessorBase
{
public:
    /// From which event times follow: @p newTempo in quarters a minute, @p newRate in Hz, both
    /// above 0, @p newPosition of the block's start in quarters.
    void SetTime(double newTempo, double newRate, double newPosition) noexcept;
    /// Quarters, @p offset samples behind the start of the block.
    double GetEventTime(int offset) const noexcept
    {
        return offset * tempo / (sampleRate * 60.0) + position;
    }

    // What hosts give decoded: the low 4 bits of the channel and 7 of the note count.

    /// A note from the keyboard, before the sustain pedal's say.
    void ProcessNotePerform(int offset, double time, int channel, int note, double velocity,
                            bool on);
    /// Polyphonic pressure.
    void ProcessNotePressure(int offset, double time, int channel, int note, double value);

    /// An @p offset above 0 counts one sample early, as hosts expect.
    bool ProcessMIDIEvent(int offset, const std::uint8_t* bytes) override;
    void ProcessAllNotesOff(int offset, double time) override;
    void ProcessChannelNotesOff(int offset, double time, int channel) override;
    bool ProcessMIDIController(int offset, double time, int channel, int number,
                               double value) override;

protected:
    /// A note begins, and does not yet count among those that sound.
    virtual void OnNoteBegin() {}

private:
    static constexpr int Rows = 17; ///< sixteen channels and a spare one
    static constexpr int Notes = 128;
    using NoteCounts = std::array<std::array<int, Notes>, Rows>;

    void ProcessSustain(int offset, double time, int channel, bool on);
    void ReleaseAll(int offset, double time, int channel);

    double tempo = 120.0;        ///< quarters a minute
    double sampleRate = 44100.0; ///< Hz
    double position = 0.0;       ///< quarters
    bool sustain = false;
    NoteCounts held{};     ///< note-offs that wait for the pedal
    NoteCounts sounding{}; ///< note-ons passed on and not yet ended
};
