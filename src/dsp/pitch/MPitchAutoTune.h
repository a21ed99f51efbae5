#pragma once

#include <optional>

#include "dsp/pitch/MPitchScale.h"

/// Pulls detected frequencies to the notes of a scale, at a speed and by a share.
/// Owned by whoever owns the detector, and used on the same thread; never allocates.
class MPitchAutoTune
{
public:
    /// The correction's time constant falls from 500 ms at @p value 0 to 1 ms at 1, by equal
    /// shares. Clamped to 0 to 1.
    void SetSpeed(double value) noexcept;

    /// The share of the correction that is applied, from 0 (none) to 1. Clamped.
    void SetDepth(double value) noexcept;

    /// Chromatic unless told.
    void SetScale(const MPitchScale& newScale) noexcept { scale = newScale; }

    /// Starts over: no correction, no note to stay at.
    void Reset() noexcept;

    /// For each detection. @p hz is what was detected, @p seconds the time since the last one. The
    /// note that it is pulled to stays until another is nearer by more than 0.1 semitones.
    /// @return the tuned frequency in Hz; @p hz itself if it is not above 0 or not finite, which
    /// also ends the correction
    double Process(double hz, double seconds) noexcept;

private:
    int ChooseTarget(double note) noexcept;

    MPitchScale scale;
    double speed = 0.5;
    double depth = 0.5;
    double correction = 0.0;   ///< semitones
    std::optional<int> target; ///< the last one
};
