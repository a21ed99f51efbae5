#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

/// Where the transport of a host stands at the start of a block. It runs from 0 without a stop if
/// it has a tempo, and stands at 0 without.
struct HostClock
{
    static constexpr int QuartersABar = 4;

    void Start(int newRate) noexcept
    {
        rate = newRate;
        samples = 0;
    }
    bool IsPlaying() const noexcept { return tempo.has_value(); }
    /// At the first block.
    bool IsStarting() const noexcept { return tempo.has_value() && samples == 0; }
    double GetQuarters() const noexcept
    {
        return tempo ? static_cast<double>(samples) / rate * *tempo / 60.0 : 0.0;
    }
    double GetBarStart() const noexcept
    {
        return std::floor(GetQuarters() / QuartersABar) * QuartersABar;
    }

    std::optional<double> tempo; ///< quarters a minute
    int rate = 44100;            ///< Hz
    std::int64_t samples = 0;    ///< since the start
};
