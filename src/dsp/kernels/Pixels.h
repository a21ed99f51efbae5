#pragma once

#include <cstdint>

/// Rows of pixels of 32 bits: alpha in the bits 24 to 31, not multiplied into the three colours
/// below; see Arithmetic.h for what all kernels share.
namespace kernels
{

/// Each colour = (that of v * alpha + its own * (255 - alpha)) >> 8; the pixels keep their alpha.
/// Of @p alpha the lower eight bits count, likewise of tint and weight below.
void BlendPixels(std::uint32_t* dst, std::uint32_t v, int alpha, int n) noexcept;

/// The same with a source and an alpha for each pixel, ((the source's alpha + 1) * tint) >> 8.
void BlitPixels(std::uint32_t* dst, const std::uint32_t* src, int tint, int n) noexcept;

/// Each of the four bytes = (that of a * (255 - weight) + that of b * weight) >> 8.
void MixPixels(std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int weight,
               int n) noexcept;

/// The same for neighbours: dst[i] of src[places[i]] and src[places[i] + 1] by weights[i], which
/// are 0 to 255. @p dst must not overlap anything.
void MixNeighbours(std::uint32_t* dst, const std::uint32_t* src, const std::int32_t* places,
                   const std::uint32_t* weights, int n) noexcept;

} // namespace kernels
