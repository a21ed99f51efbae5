#pragma once

#include <cmath>

/// The share of the last value that a one-pole filter keeps with each sample. Computed anew only
/// when time or rate have changed, so it may be asked for with every block.
class MOnePole
{
public:
    /// 0.0, so that the filter follows at once, for no time or no rate.
    double Get(double newSeconds, double newRate) noexcept
    {
        if (newSeconds != seconds || newRate != rate)
        {
            seconds = newSeconds;
            rate = newRate;
            const double samples = seconds * rate;
            share = samples < 1e-50 ? 0.0 : std::exp(-1.0 / samples);
        }
        return share;
    }

private:
    double seconds = 0.0;
    double rate = 0.0;
    double share = 0.0;
};
