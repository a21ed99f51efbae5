#pragma once

/// Reading a shape from a table, between whose samples lie straight lines; see Arithmetic.h for
/// what all kernels share.
namespace kernels
{

constexpr int CycleLength = 8192; ///< samples of a table, without its guard

/// Reads @p table, CycleLength samples and a guard that repeats the first, at @p phase + i *
/// @p step into dst[i]; both are in cycles, and the guard wraps whole cycles.
/// Phases keep 2^-32 of a cycle, so the 8192 parts of the cycle have 2^19 places each; an error of
/// half a place does not grow with the length of the block. The bits are the same on every
/// processor. A @p phase or @p step that is not finite counts as 0 here.
/// @return the phase after the block, phase + n * step, not wrapped; @p phase if nothing was read
double ReadCycle(float* dst, const float* table, double phase, double step, int n) noexcept;

constexpr int MaxLookupMask = (1 << 23) - 1; ///< beyond, positions have no fractions

/// Reads @p source at each @p position, in samples: a position p between a and a + 1 gives
/// source[a] * (1 - (p - a)) + source[(a + 1) & mask] * (p - a).
/// @p mask is a power of two less 1, at most MaxLookupMask. Behind the mask + 1 samples of the
/// cycle
/// @p source has one more, which is read by the position mask + 1 and nothing else. Positions are
/// clamped to 0 to mask + 1, and those that are not numbers count as 0. @p dst may be @p position.
void Lookup(float* dst, const float* source, const float* position, int n, int mask) noexcept;

/// Stretches or squeezes the @p k samples of @p src to @p n, of which the first and the last stay
/// what they are. The distance between readings is added up in f64. One sample is the first of
/// @p src, and one sample of @p src fills @p dst. The two must not overlap.
void Resample(float* dst, int n, const float* src, int k) noexcept;

} // namespace kernels
