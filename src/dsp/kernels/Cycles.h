#pragma once

/// Reading one cycle of a shape from a table; see Arithmetic.h for what all kernels share.
namespace kernels
{

constexpr int CycleLength = 8192; ///< samples of a table, without its guard

/// Reads @p table, CycleLength samples and a guard that repeats the first, at @p phase + i *
/// @p step into dst[i]; both are in cycles, and the guard wraps whole cycles. Between two samples
/// of the table lies a straight line.
/// Phases keep 2^-32 of a cycle, so the 8192 parts of the cycle have 2^19 places each; an error of
/// half a place does not grow with the length of the block. The bits are the same on every
/// processor. A @p phase or @p step that is not finite counts as 0 here.
/// @return the phase after the block, phase + n * step, not wrapped; @p phase if nothing was read
double ReadCycle(float* dst, const float* table, double phase, double step, int n) noexcept;

} // namespace kernels
