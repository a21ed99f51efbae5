#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "dsp/kernels/RealFFT.h"

/// Circular Gaussian low-pass over one cycle of a shape.
/// The kernel is cut at two standard units and sums to 1, so a constant cycle passes unchanged.
/// Narrow kernels are summed directly, wide ones through a real FFT of the cycle, which is circular
/// by itself; both agree within 1e-5.
/// Owned by one MSignalGenerator and used under its RebuildLock, also on the audio thread when a
/// modulator rebuilds the shape: nothing allocates after construction.
class MGaussianSmoother
{
public:
    static constexpr int CycleLength = 8192; ///< samples
    static constexpr int MaxHalfWidth = 256; ///< samples to each side of the centre
    static constexpr int FFTHalfWidth = 31;  ///< samples; from here on the FFT is faster

    /// As after SetHalfWidth(1.0).
    MGaussianSmoother() { SetHalfWidth(1.0); }

    /// Makes the kernel for @p request samples to each side, clamped to 0 (none) to MaxHalfWidth.
    /// What is not a number counts as 0.
    /// Requests that round up to the present half width keep the kernel of the first of them.
    void SetHalfWidth(double request) noexcept;

    /// Smooths @p cycle in place; its last sample is followed by its first.
    void Process(std::span<float, CycleLength> cycle) noexcept;

    int GetHalfWidth() const noexcept { return halfWidth; }

private:
    static constexpr std::size_t BinCount = CycleLength / 2 + 1;

    void ProcessDirect(std::span<float, CycleLength> cycle) noexcept;
    void ProcessFFT(std::span<float, CycleLength> cycle) noexcept;
    void MakeGains() noexcept;

    int halfWidth = 0;
    bool gainsAreOld = true;
    std::array<float, 2 * MaxHalfWidth + 1> kernel{1.0f}; ///< first 2 * halfWidth + 1 in use
    /// Spectrum of the kernel, which is real because the kernel is symmetric. Made by the first
    /// wide cycle after a change of the kernel, so that narrow ones never pay for it.
    std::array<float, BinCount> gains{};
    /// The spectrum of a wide cycle; or, as floats, a narrow one with its wrapped ends.
    std::array<kernels::Complex, CycleLength / 2 + FFTHalfWidth> work{};
    kernels::RealFFT fft{CycleLength};
};
