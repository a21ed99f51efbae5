#pragma once

/// Gains that change from sample to sample; see Arithmetic.h for what all kernels share.
///
/// A gain runs by addition in f32. The first four samples have start, start + step,
/// start + 2 * step and start + 3 * step, and each of the four grows by 4 * step for every further
/// four samples. What is left at the end goes on singly from the first of the four.
namespace kernels
{

/// dst = dst * gain
void RampScale(float* dst, float start, float step, int n) noexcept;

/// dst = dst + src * gain
void RampScaleAdd(float* dst, const float* src, float start, float step, int n) noexcept;

/// dst = dst * dstGain + src * srcGain, the same bits as RampScale and then RampScaleAdd.
/// The sums of a gain wait for each other; both gains in one loop take the time of one.
void RampMix(float* dst, const float* src, float dstStart, float dstStep, float srcStart,
             float srcStep, int n) noexcept;

} // namespace kernels
