#pragma once

#include <span>
#include <vector>

/// A logarithmic axis of frequency as a row of pixels, and how a spectrum lies below it.
class LogScale
{
public:
    /// @p pixelCount, 2 or more, from @p lowest to @p highest Hz, both above 0.
    LogScale(double lowest, double highest, int pixelCount);

    int GetPixelCount() const noexcept { return pixels; }
    double GetLowest() const noexcept { return lowHz; }
    double GetHighest() const noexcept { return highHz; }
    /// The frequency in the middle of a pixel.
    double GetFrequency(double pixel) const noexcept;
    /// The way back; also outside the axis.
    double GetPixel(double hz) const noexcept;
    /// What each pixel holds of @p power, whose bins run from 0 Hz to @p nyquist: the largest bin
    /// within it, or, where the bins are wider than the pixels, what lies between the two beside
    /// it on a scale of decibels. Writes to @p levels, one a pixel.
    void Spread(std::span<const double> power, double nyquist, std::span<double> levels) const;

private:
    double lowHz;
    double highHz;
    int pixels;
    double octavesPerPixel;
};
