#pragma once

#include <span>
#include <vector>

#include "dsp/kernels/RealFFT.h"

/// The power of a piece of sound by frequency, seen through a window whose side lobes lie 180 dB
/// down. A sine at full scale has the power 1.0 at its frequency, and less 7 bins beside it than
/// 32-bit samples can hold. Owns its scratch memory; one thread.
class WindowedSpectrum
{
public:
    /// For pieces of @p pieceLength samples, a power of two that RealFFT takes.
    explicit WindowedSpectrum(int pieceLength);

    int GetLength() const noexcept { return static_cast<int>(window.size()); }
    /// From 0 Hz to half the sample rate.
    int GetBinCount() const noexcept { return GetLength() / 2 + 1; }
    /// Of a piece, which is taken as silent behind its end. Valid until the next call.
    std::span<const double> Measure(std::span<const float> piece);

private:
    kernels::RealFFT fft;
    std::vector<float> window; ///< sums to 2, so that a sine of 1.0 has a magnitude of 1.0
    std::vector<float> windowed;
    std::vector<kernels::Complex> spectrum;
    std::vector<double> power;
};
