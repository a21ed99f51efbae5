#pragma once

#include <cstdint>

/// The notes of the twelve that count, in every octave. Notes are those of MIDI, with fractions
/// where they are numbers: 69 is 440 Hz, and there are 12 to the octave.
class MPitchScale
{
public:
    static constexpr std::uint32_t Chromatic = 0xFFF;

    /// Bit 0 of @p mask is C, bit 11 is B, others do not count. Without any note it is chromatic.
    constexpr explicit MPitchScale(std::uint32_t mask = Chromatic) noexcept
        : notes((mask & Chromatic) != 0 ? mask & Chromatic : Chromatic)
    {
    }

    constexpr bool Contains(int note) const noexcept
    {
        return (notes >> ((note % 12 + 12) % 12) & 1) != 0;
    }

    /// The note of the scale that is nearest to @p note, which is within plus or minus a million;
    /// of two the lower one.
    int Nearest(double note) const noexcept;

    /// @p hz is above 0.
    static double NoteOf(double hz) noexcept;
    static double FrequencyOf(double note) noexcept;

private:
    std::uint32_t notes;
};
