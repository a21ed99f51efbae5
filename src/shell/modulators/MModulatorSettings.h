#pragma once

#include <cstdint>
#include <vector>

#include "foundation/threads/MRelaxed.h"

class MXMLItem;
struct MModulatorParameter;

/// What a modulator computes its value from. Stored by name.
enum class MModulatorMode : std::int32_t
{
    Normal = 0,       ///< the LFO alone
    Envelope = 1,     ///< the follower
    MIDIEnvelope = 2, ///< the envelope of notes or a loud input
    Random = 3,
    Pitch = 4,
};

/// What of MModulator is stored, but for its parts. Any thread writes the fields.
struct MModulatorSettings
{
    /// Writes attributes of @p item and its subitem "MIDIReset".
    void Store(MXMLItem& item) const;
    /// What is missing takes its default; older data tell the follower's mode by a switch.
    void Load(MXMLItem& item);
    /// Adds what can be automated, but for what concerns the reset by notes.
    void Publish(std::vector<MModulatorParameter>& parameters);
    /// Adds that.
    void PublishReset(std::vector<MModulatorParameter>& parameters);

    MModulatorMode GetMode() const noexcept
    {
        return static_cast<MModulatorMode>(std::int32_t{Mode});
    }
    void SetMode(MModulatorMode newMode) noexcept { Mode = static_cast<std::int32_t>(newMode); }

    MRelaxed<bool> Enabled = false;
    MRelaxed<bool> Frozen = false;           ///< it does not run meanwhile; not stored
    MRelaxed<double> Frequency = 0.1;        ///< Hz of the LFO, 0.001 to 1
    MRelaxed<bool> HiSpeed = false;          ///< ten times that
    MRelaxed<bool> SideChain = false;        ///< inputs are those of the second bus
    MRelaxed<bool> MIDIResetEnabled = false; ///< a note puts the LFO to ResetPhase
    MRelaxed<double> MinVelocity = 0.0;      ///< of such notes, 0.0 to 1.0, inclusive
    MRelaxed<double> MaxVelocity = 1.0;
    MRelaxed<double> ResetPhase = 0.0;  ///< 0.0 to 1.0
    MRelaxed<std::int32_t> Channel = 0; ///< 0 for any, else the MIDI channel plus 1
    MRelaxed<std::int32_t> Mode = static_cast<std::int32_t>(MModulatorMode::Normal);
};
