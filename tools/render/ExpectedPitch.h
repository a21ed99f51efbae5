#pragma once

class InProcessPlugin;

/// The frequency of a note, worked out from the parameter values alone, to judge what the effect
/// plays. Of the first channel, which is the lowest or highest of the spread.
class ExpectedPitch
{
public:
    /// Takes the present values of @p plugin, for a sound of @p channels.
    ExpectedPitch(const InProcessPlugin& plugin, int channels);

    /// Hz of MIDI note @p note with the pitch wheel at @p wheel, -1.0 to 1.0.
    double Hz(int note, double wheel) const noexcept;

private:
    bool isFixed;   ///< "Frequency" overrides the note
    double fixedHz; ///< if so
    double offset;  ///< semitones
};
