#pragma once

#include <optional>
#include <span>
#include <vector>

/// Finds how long one cycle of a sound is, whatever its shape, to a percent or so: the first lag
/// at which the sound is nearly as like itself as it ever gets.
/// Owns its scratch memory, so one object serves many sounds.
class PeriodFinder
{
public:
    /// Samples in one cycle of @p sound, or nothing if it holds fewer than about four cycles or
    /// does not repeat. Cycles shorter than 2.2 samples are not found.
    std::optional<double> Find(std::span<const float> sound);

private:
    std::optional<double> FindIn(std::span<const double> window);
    /// Fills likeness with 1 where the window repeats itself, down to -1.
    void CompareWithItself(std::span<const double> window);

    std::vector<double> likeness; ///< by lag, Oversampling steps a sample
};
