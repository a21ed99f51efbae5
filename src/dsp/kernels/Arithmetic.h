#pragma once

/// Vector loops over blocks of samples, on the best instruction set of the processor.
///
/// Common to all kernels: a length of 0 or less or a null pointer makes the call do nothing. Blocks
/// need no alignment; @p dst may be one of the sources, otherwise no two blocks overlap. Multiply
/// and add round one after the other, so every processor gives the same bits. Nothing allocates or
/// locks. The first call in the process asks the processor what it can do, which is slow in a
/// virtual machine: let it not be on the audio thread.
namespace kernels
{

void Fill(float* dst, float v, int n) noexcept;
void FillDouble(double* dst, double v, int n) noexcept;

/// dst = src * k
void Scale(float* dst, const float* src, float k, int n) noexcept;

/// dst = dst + src
void Add(float* dst, const float* src, int n) noexcept;

/// dst = dst + src * k
void ScaleAdd(float* dst, const float* src, float k, int n) noexcept;

/// dst = a * ka + b * kb
void Mix(float* dst, const float* a, float ka, const float* b, float kb, int n) noexcept;

} // namespace kernels
