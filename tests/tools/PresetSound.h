#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "tools/render/NotePlan.h"

/// What a preset sounds like: ten seconds at 48 kHz and 120 quarters a minute, in stereo.
struct PresetSound
{
    static constexpr int Rate = 48000;

    /// @p state as plugins take it; @p messages in the order of time.
    static PresetSound Play(std::span<const std::byte> state,
                            std::span<const ScheduledMessage> messages);

    double GetPeak() const;
    /// Over all of it, and the mean, of @p channel.
    double GetRMS(std::size_t channel = 0) const;
    double GetMean(std::size_t channel = 0) const;
    /// RMS of the difference of the channels over that of the louder one.
    double GetWidth() const;
    /// Hz, of the first second of @p channel.
    std::optional<double> GetFrequency(std::size_t channel = 0) const;

    /// In pieces of 50 ms of the first channel from half a second on: the highest level over the
    /// lowest one, in dB, and the highest brightness (level of the slope over level) over the
    /// lowest one.
    double GetLevelMovement() const;
    double GetBrightnessMovement() const;
    /// How often the level of the first channel swells, or the brightness where the level stays, in
    /// pieces of 10 ms.
    int CountSwells() const;

    std::vector<std::vector<float>> channels;
};
