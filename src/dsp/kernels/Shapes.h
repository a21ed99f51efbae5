#pragma once

/// Reshaping one cycle of a table; see Arithmetic.h for what all kernels share.
namespace kernels
{

/// Lookup of Cycles.h with positions in f64, whose fractions are rounded to f32. The same limits
/// hold; @p dst must not overlap the positions.
void Lookup(float* dst, const float* source, const double* position, int n, int mask) noexcept;

/// dst[i] = dst[i] + source[(first + i * stride) & mask] * gain.
/// @p mask is a power of two less 1; @p first and @p stride are any numbers, of which the bits of
/// @p mask count. An even stride is the faster the more often it comes by the same samples. No
/// blocks may overlap.
void AddStrided(float* dst, const float* source, int first, int stride, float gain, int n,
                int mask) noexcept;

/// dst[i] = (i * step)^exponent for i from @p first on, in f64; 0 at i = 0.
/// Values up to 1 are right within 1e-15, larger ones within 3e-13 of themselves. A @p first below
/// 0, and an @p exponent or @p step that is not above 0, make the call do nothing.
void PowerRamp(double* dst, double step, double exponent, int first, int n) noexcept;

} // namespace kernels
