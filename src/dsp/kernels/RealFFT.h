#pragma once

#include <vector>

#include "dsp/kernels/Spectra.h"

namespace kernels
{

/// Fourier transform of blocks of real samples. Only its construction allocates; one thread at a
/// time may use it. It owns a block to work in, size * 4 bytes. Tables, another size * 10 bytes or
/// so, belong to all objects of its size: the first makes them, and they stay for the process.
class RealFFT
{
public:
    static constexpr int MinSize = 16;
    static constexpr int MaxSize = 65536;

    /// For blocks of @p transformSize samples, a power of two from MinSize to MaxSize.
    /// @throws MException "Invalid transform size." (2) for any other
    explicit RealFFT(int transformSize);

    RealFFT(RealFFT&&) noexcept = default;
    RealFFT& operator=(RealFFT&&) noexcept = default;

    /// spectrum[k] = sum of time[i] * exp(-2 * pi * j * i * k / size), for k from 0 to size / 2.
    /// @p time has size samples, @p spectrum size / 2 + 1 numbers; the two must not overlap. A null
    /// pointer makes the call do nothing.
    void Forward(const float* time, Complex* spectrum) noexcept;

    /// The way back, with its 1 / size. The imaginary parts of the first and the last number, which
    /// no real block has, do not count.
    void Inverse(const Complex* spectrum, float* time) noexcept;

    int GetSize() const noexcept { return size; }

private:
    struct Plan;

    int size;
    const Plan* plan;             ///< of all objects of this size
    std::vector<Complex> scratch; ///< size / 2; empty in what was moved from
};

} // namespace kernels
