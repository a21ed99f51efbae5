#include "gui/drawing/Rectangles.h"

#include <algorithm>
#include <vector>

#include "dsp/kernels/Arithmetic.h"
#include "gui/drawing/MPixelPainter.h"

namespace drawing
{
namespace
{

/// Of the row or column @p at, in a gradient that runs from @p from to @p to.
MColor GradientColour(std::int64_t at, std::int64_t from, std::int64_t to, MColor first,
                      MColor last) noexcept
{
    const auto share =
        static_cast<int>(((at - from) * 255 / std::max<std::int64_t>(to - from, 1)) & 255);
    const auto mixed = [share](int a, int b) { return pixels::Blend(a, b, share); };
    return {mixed(first.GetRed(), last.GetRed()), mixed(first.GetGreen(), last.GetGreen()),
            mixed(first.GetBlue(), last.GetBlue()), mixed(first.GetAlpha(), last.GetAlpha())};
}

} // namespace

void PaintFrame(const DrawingArea& area, const MRectangle& rectangle, MColor colour, MColorOp op)
{
    const std::int64_t left = rectangle.left;
    const std::int64_t top = rectangle.top;
    const std::int64_t right = rectangle.right;
    const std::int64_t bottom = rectangle.bottom;
    if (rectangle.IsEmpty())
        return;
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    area.CoverRow(painter, left, right, top, 255);
                    if (bottom > top)
                        area.CoverRow(painter, left, right, bottom, 255);
                    area.CoverColumn(painter, left, top + 1, bottom - 1, 255);
                    if (right > left)
                        area.CoverColumn(painter, right, top + 1, bottom - 1, 255);
                });
}

void FillArea(const DrawingArea& area, const MRectangle& rectangle, MColor colour, MColorOp op)
{
    const MRectangle target = rectangle.Intersect(area.GetClip());
    if (target.IsEmpty())
        return;
    // Whole rows are one long one.
    const bool isWhole = target.GetWidth() == area.GetStride();
    const int rows = isWhole ? 1 : target.GetHeight();
    const int count = isWhole ? target.GetWidth() * target.GetHeight() : target.GetWidth();

    if (op == MColorOp::Copy || (op == MColorOp::Alphablend && colour.GetAlpha() == 255))
    {
        for (int row = 0; row < rows; ++row)
            kernels::FillPixels(Values(area.At(target.left, std::int64_t{target.top} + row)),
                                colour.GetValue(), count);
        return;
    }
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    for (int row = 0; row < rows; ++row)
                        painter.CoverRow(area.At(target.left, std::int64_t{target.top} + row),
                                         count, 255);
                });
}

void FillGradient(const DrawingArea& area, const MRectangle& rectangle, MColor first, MColor last,
                  bool isHorizontal, MColorOp op)
{
    const MRectangle target = rectangle.Intersect(area.GetClip());
    if (target.IsEmpty())
        return;
    if (!isHorizontal)
    {
        for (int y = target.top; y <= target.bottom; ++y)
            FillArea(area, {target.left, y, target.right, y},
                     GradientColour(y, rectangle.top, rectangle.bottom, first, last), op);
        return;
    }

    // The same row again and again. A blit with full tint paints what filling the columns would,
    // as no mixed colour is opaque: only an opaque one would be stored.
    std::vector<MColor> row(static_cast<std::size_t>(target.GetWidth()));
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = GradientColour(target.left + static_cast<std::int64_t>(i), rectangle.left,
                                rectangle.right, first, last);
    WithPainter(op, MColor(0, 0, 0, 255),
                [&](const auto& painter)
                {
                    for (int y = target.top; y <= target.bottom; ++y)
                        painter.BlitRow(area.At(target.left, y), row.data(), target.GetWidth());
                });
}

} // namespace drawing
