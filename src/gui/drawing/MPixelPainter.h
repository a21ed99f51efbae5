#pragma once

#include <algorithm>
#include <type_traits>

#include "dsp/kernels/Pixels.h"
#include "gui/drawing/ColorOperations.h"
#include "gui/drawing/MColorOp.h"

/// Pixels as the kernels take them.
inline std::uint32_t* Values(MColor* d) noexcept
{
    static_assert(std::is_standard_layout_v<MColor>);
    return reinterpret_cast<std::uint32_t*>(d);
}
inline const std::uint32_t* Values(const MColor* d) noexcept
{
    return reinterpret_cast<const std::uint32_t*>(d);
}

/// Paints with one operation and one colour: single pixels, and rows of them, which have vector
/// loops where an operation is common enough.
template <MPixelOp Op>
class MPixelPainterT
{
public:
    explicit MPixelPainterT(MColor paintColour) noexcept
        : colour(paintColour),
          source(paintColour.GetPixel())
    {
    }

    /// Paints the colour with @p coverage from 0 to 255.
    void Cover(MColor& d, int coverage) const noexcept
    {
        Apply(d, colour, pixels::Scaled(source.alpha, coverage));
    }

    /// Paints @p from; of the colour only the alpha counts, as its tint.
    void Blit(MColor& d, MColor from) const noexcept
    {
        Apply(d, from, pixels::Scaled(from.GetAlpha(), source.alpha));
    }

    void CoverRow(MColor* d, int count, int coverage) const noexcept
    {
        if constexpr (std::is_same_v<Op, MPixelOpAlphablend>)
            kernels::BlendPixels(Values(d), colour.GetValue(),
                                 pixels::Scaled(source.alpha, coverage), count);
        else
            for (int i = 0; i < count; ++i)
                Cover(d[i], coverage);
    }

    /// The two rows must not overlap.
    void BlitRow(MColor* d, const MColor* from, int count) const noexcept
    {
        if constexpr (std::is_same_v<Op, MPixelOpAlphablend>)
            kernels::BlitPixels(Values(d), Values(from), source.alpha, count);
        else
        {
            // A full tint copies as it is.
            if (std::is_same_v<Op, MPixelOpCopy> && source.alpha == 255)
                std::copy_n(from, count, d);
            else
                for (int i = 0; i < count; ++i)
                    Blit(d[i], from[i]);
        }
    }

private:
    static void Apply(MColor& d, MColor s, int a) noexcept
    {
        if constexpr (std::is_same_v<Op, MPixelOpAlphablend>)
            d = BlendPacked(d, s, static_cast<std::uint32_t>(a));
        else
        {
            MPixel pixel = d.GetPixel();
            Op::Apply(pixel, s.GetPixel(), a);
            d = MColor(pixel);
        }
    }

    /// The same as MPixelOpAlphablend: no product of a byte leaves the 16 bits that it has in red
    /// and blue, so that these take one multiplication.
    static MColor BlendPacked(MColor d, MColor s, std::uint32_t a) noexcept
    {
        constexpr std::uint32_t RedAndBlue = 0x00FF00FF;
        constexpr std::uint32_t Green = 0x0000FF00;
        const std::uint32_t to = d.GetValue();
        const std::uint32_t from = s.GetValue();
        const std::uint32_t rest = 255U - a;
        const std::uint32_t redAndBlue = (from & RedAndBlue) * a + (to & RedAndBlue) * rest;
        const std::uint32_t green = (from & Green) * a + (to & Green) * rest;
        return MColor((to & 0xFF000000U) | ((redAndBlue >> 8U) & RedAndBlue) |
                      ((green >> 8U) & Green));
    }

    MColor colour;
    MPixel source; ///< the same by channels
};

/// Calls @p paint with the painter of @p op, the only choice between operations: what it does is
/// compiled once for each. Nothing is called for None and for values that are no operation.
template <typename Paint>
void WithPainter(MColorOp op, MColor colour, Paint&& paint)
{
    using enum MColorOp;
    switch (op)
    {
    case None:
        return;
    case Alphablend:
        return paint(MPixelPainterT<MPixelOpAlphablend>(colour));
    case Modulate:
        return paint(MPixelPainterT<MPixelOpModulate>(colour));
    case Copy:
        return paint(MPixelPainterT<MPixelOpCopy>(colour));
    case Overlay:
        return paint(MPixelPainterT<MPixelOpOverlay>(colour));
    case Color:
        return paint(MPixelPainterT<MPixelOpColor>(colour));
    case Invert:
        return paint(MPixelPainterT<MPixelOpInvert>(colour));
    case Add:
        return paint(MPixelPainterT<MPixelOpAdd>(colour));
    case Subtract:
        return paint(MPixelPainterT<MPixelOpSubtract>(colour));
    case Lighten:
        return paint(MPixelPainterT<MPixelOpLighten>(colour));
    case Darken:
        return paint(MPixelPainterT<MPixelOpDarken>(colour));
    case Difference:
        return paint(MPixelPainterT<MPixelOpDifference>(colour));
    case IncContrast:
        return paint(MPixelPainterT<MPixelOpIncContrast>(colour));
    case DecContrast:
        return paint(MPixelPainterT<MPixelOpDecContrast>(colour));
    case LightenByContrast:
        return paint(MPixelPainterT<MPixelOpLightenByContrast>(colour));
    case DarkenByContrast:
        return paint(MPixelPainterT<MPixelOpDarkenByContrast>(colour));
    case AddAndOverflow:
        return paint(MPixelPainterT<MPixelOpAddAndOverflow>(colour));
    }
}
