#pragma once

#include <cstdint>

/// Vector loops over blocks of samples, on the best instruction set of the processor.
///
/// Common to all kernels: a length of 0 or less or a null pointer makes the call do nothing. Blocks
/// need no alignment; @p dst may be one of the sources, otherwise no two blocks overlap. Multiply
/// and add round one after the other, so every processor gives the same bits. Nothing allocates or
/// locks. The first call in the process asks the processor what it can do, which is slow in a
/// virtual machine: let it not be on the audio thread.
namespace kernels
{

void Zero(float* dst, int n) noexcept;
void Fill(float* dst, float v, int n) noexcept;
void FillDouble(double* dst, double v, int n) noexcept;
void FillPixels(std::uint32_t* dst, std::uint32_t v, int n) noexcept;

/// dst = src; the two may overlap in any way.
void Copy(float* dst, const float* src, int n) noexcept;

/// dst = src * k
void Scale(float* dst, const float* src, float k, int n) noexcept;

/// dst = dst + src
void Add(float* dst, const float* src, int n) noexcept;

/// dst = dst + src * k
void ScaleAdd(float* dst, const float* src, float k, int n) noexcept;

/// dst = a * ka + b * kb
void Mix(float* dst, const float* a, float ka, const float* b, float kb, int n) noexcept;

/// dst = dst + k
void AddConstant(float* dst, float k, int n) noexcept;

/// Brings samples beyond plus or minus @p limit back to it; those that are not numbers become 0.
/// A limit below 0 or one that is not a number leaves all as it is.
void Clamp(float* dst, float limit, int n) noexcept;

/// Samples that are infinite or no numbers become 0.
void ZeroNonFinite(float* dst, int n) noexcept;

/// Two channels, which must not overlap, turn into their middle and half their difference:
/// l = (l + r) * 0.5, r = (l - r) * 0.5 of the old values. SumDifference is the way back.
void MidSide(float* l, float* r, int n) noexcept;

/// m = m + s, s = m - s of the old values; the two must not overlap.
void SumDifference(float* m, float* s, int n) noexcept;

} // namespace kernels
