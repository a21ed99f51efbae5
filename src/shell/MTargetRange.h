#pragma once

#include <cstdint>

/// How a moving value from -1.0 to 1.0 becomes a place in the range of a parameter: the record that
/// modulators, multiparameters and MIDI controllers share.
struct MTargetRange
{
    /// The numbers are stored.
    enum class Mode : std::int32_t
    {
        UpAndDown = 0, ///< round the centre, squeezed where the range ends
        FullRange = 1, ///< the whole depth, with the centre moved where the range ends
        UpOnly = 2,
        DownOnly = 3,
        Interval = 4, ///< from value to maxValue
    };

    /// The new normalised value of the parameter for @p moving.
    double Map(double moving) const noexcept;
    bool operator==(const MTargetRange&) const = default;

    double value = 0.0;    ///< the centre, 0.0 to 1.0
    double maxValue = 1.0; ///< the other end of an interval
    double range = 1.0;    ///< the depth, 0.0 to 1.0
    Mode mode = Mode::UpOnly;
    bool isInverted = false;
};
