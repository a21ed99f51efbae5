#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"
#include "shell/MTargetRange.h"

class MAudioPlugin;
class MXMLItem;

/// Lets a MIDI controller, pressure or the pitch wheel move one parameter.
struct MMIDIControllerAssignment
{
    /// Sources beyond the controllers 0 to 127.
    static constexpr int Pressure = 128; ///< of a channel or a note
    static constexpr int PitchBend = 129;

    void Store(MXMLItem& item) const;
    /// What is missing takes its default. Looks the parameter up in @p plugin.
    void Load(MXMLItem& item, const MAudioPlugin& plugin);
    bool operator==(const MMIDIControllerAssignment&) const = default;

    bool isEnabled = false;
    int parameterIndex = 0; ///< negative while no parameter has the name
    MString parameterName;  ///< finds the parameter again when the list has changed
    MTargetRange target;
    int channel = 0;    ///< 0 for any, else the MIDI channel plus 1
    int controller = 1; ///< 0 to PitchBend
};

/// Lets notes set a parameter, which takes their frequency.
struct MMIDINoteController
{
    void Store(MXMLItem& item) const;
    /// As above.
    void Load(MXMLItem& item, const MAudioPlugin& plugin);
    bool operator==(const MMIDINoteController&) const = default;

    /// The normalised value for @p note with the pitch wheel at @p semitones: 20 Hz is 0.0, 20 kHz
    /// is 1.0. Here note 57 is 440 Hz.
    double Map(int note, double semitones) const noexcept;

    bool isEnabled = false;
    int parameterIndex = 0;
    MString parameterName;
    bool isLogarithmic = true;
    int channel = 0;
};
