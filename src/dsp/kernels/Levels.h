#pragma once

/// What level a block of samples has; see Arithmetic.h for what all kernels share.
namespace kernels
{

/// The largest magnitude; samples that are not numbers count as 0. 0 for an empty block.
float PeakAbs(const float* src, int n) noexcept;

/// In f64, summed in an order that depends on the processor: the last few bits may differ.
/// 0 for an empty block.
double SumSquares(const float* src, int n) noexcept;

} // namespace kernels
