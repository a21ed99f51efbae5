#pragma once

/// Filters; see Arithmetic.h for what all kernels share.
namespace kernels
{

/// dst[i] = src[i * stride] * taps[0] + ... + src[i * stride + tapCount - 1] * taps[tapCount - 1],
/// added up in f32 in this order.
/// The taps run along with the samples: whoever has an impulse response passes it back to front.
/// @p src has (n - 1) * stride + tapCount samples. A @p stride of u keeps every u-th output of the
/// filter, so it squeezes to one u-th of the rate; a stretch to the u-fold rate is u calls with
/// stride 1, each with every u-th tap. @p tapCount and @p stride below 1 make the call do nothing.
void FIR(float* dst, const float* src, const float* taps, int tapCount, int n, int stride) noexcept;

} // namespace kernels
