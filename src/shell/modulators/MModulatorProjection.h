#pragma once

#include "foundation/threads/MRelaxed.h"

class MSignalGenerator;

/// How the state of a mode, from 0.0 to 1.0, becomes the value of the modulator: as it is, or as a
/// walk through a window of the LFO's shape; and how much of the LFO itself is mixed in.
/// Any thread writes the fields.
struct MModulatorProjection
{
    /// From -1.0 to 1.0. @p y is 0.0 or more; what lies above 1.0 counts as 1.0 without a window.
    double Apply(double y, double lfo, const MSignalGenerator& signal) const noexcept;
    /// @p value with the LFO mixed in.
    static double Mix(double amount, double lfo, double value) noexcept
    {
        return amount * lfo + (1.0 - amount) * value;
    }

    MRelaxed<double> LFOModulation = 0.0; ///< share of the LFO, 0.0 to 1.0
    MRelaxed<bool> Project = false;
    MRelaxed<double> PhaseShift = 0.75;  ///< where the window begins, 0.0 to 1.0 cycles
    MRelaxed<double> IntervalSize = 0.5; ///< of the window, 0.0 to 2.0 cycles
};
