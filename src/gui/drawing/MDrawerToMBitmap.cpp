#include "gui/drawing/MDrawerToMBitmap.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "foundation/threads/MGuard.h"
#include "gui/drawing/Blits.h"
#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/Lines.h"
#include "gui/drawing/MAlphaMask.h"
#include "gui/drawing/Polygons.h"
#include "gui/drawing/Proportion.h"
#include "gui/drawing/Rectangles.h"
#include "gui/drawing/RoundShapes.h"
#include "gui/drawing/Stretching.h"
#include "gui/text/AlignedText.h"

namespace
{

using namespace drawing;

/// Runs @p draw; what it throws is reported under the name of @p operation and goes no further.
template <typename Draw>
void Guard(const char* operation, Draw&& draw) noexcept
{
    MGuarded(operation, 0,
             [&]
             {
                 draw();
                 return 0;
             });
}

bool IsUsable(const MBaseBitmap* source) noexcept
{
    return source != nullptr && !source->IsEmpty();
}

/// Stretches piece by piece: @p paint(piece, end) for each piece of @p length pixels between @p
/// from and @p to of which anything lies between @p first and @p last.
template <typename Paint>
void ForPieces(int from, int to, std::int64_t length, int first, int last, Paint paint)
{
    const std::int64_t hidden = std::max<std::int64_t>(std::int64_t{first} - from, 0) / length;
    for (std::int64_t piece = from + hidden * length; piece <= std::min(to, last); piece += length)
        paint(static_cast<int>(piece),
              static_cast<int>(std::min(piece + length - 1, std::int64_t{to})));
}

/// The last pixel of a source that a piece from @p first to @p last needs, from @p start on.
int PieceEnd(int start, int first, int last) noexcept
{
    return static_cast<int>(std::int64_t{start} + last - first);
}

/// Where an image of @p size pixels starts between @p from and @p to.
int Aligned(int from, int to, std::int64_t size, bool isAtStart, bool isAtEnd) noexcept
{
    const std::int64_t room = std::int64_t{to} - from + 1 - size;
    return static_cast<int>(from + (isAtStart ? 0 : isAtEnd ? room : room / 2));
}

} // namespace

int MDrawerToMBitmap::GetWidth() const noexcept
{
    return bitmap.GetWidth();
}

int MDrawerToMBitmap::GetHeight() const noexcept
{
    return bitmap.GetHeight();
}

MRectangle MDrawerToMBitmap::GetClipRect() const noexcept
{
    return bitmap.GetClip();
}

void MDrawerToMBitmap::SetClipRect(const MRectangle& rectangle) noexcept
{
    bitmap.SetClip(rectangle);
}

void MDrawerToMBitmap::PatBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                              int sy1, int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::PatBlt",
          [&]
          {
              if (IsUsable(source))
                  PaintTiles(DrawingArea(bitmap), {x1, y1, x2, y2}, *source, {sx1, sy1, sx2, sy2},
                             colour, op);
          });
}

void MDrawerToMBitmap::BitBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx, int sy,
                              MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::BitBlt",
          [&]
          {
              if (IsUsable(source))
                  PaintBitmap(DrawingArea(bitmap), {x1, y1, x2, y2}, *source, sx, sy, colour, op);
          });
}

void MDrawerToMBitmap::MaskBlt(int x1, int y1, int x2, int y2, const MAlphaMask* mask, int mx,
                               int my, MColor colour, MColorOp op, bool invert) noexcept
{
    Guard(
        "MDrawerToMBitmap::MaskBlt",
        [&]
        {
            if (IsUsable(mask))
                PaintMask(DrawingArea(bitmap), {x1, y1, x2, y2}, *mask, mx, my, colour, op, invert);
        });
}

void MDrawerToMBitmap::StretchBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                                  int sy1, int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::StretchBlt",
          [&]
          {
              if (IsUsable(source))
                  PaintStretched(DrawingArea(bitmap), {x1, y1, x2, y2}, *source,
                                 {sx1, sy1, sx2, sy2}, colour, op);
          });
}

void MDrawerToMBitmap::StretchBltH(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                                   int sy1, int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::StretchBltH",
          [&]
          {
              const DrawingArea area(bitmap);
              if (!IsUsable(source) || sy2 < sy1 || area.IsEmpty())
                  return;
              const MRectangle& clip = area.GetClip();
              ForPieces(y1, y2, std::int64_t{sy2} - sy1 + 1, clip.top, clip.bottom,
                        [&](int first, int last)
                        {
                            const MRectangle part{sx1, sy1, sx2, PieceEnd(sy1, first, last)};
                            PaintStretched(area, {x1, first, x2, last}, *source, part, colour, op);
                        });
          });
}

void MDrawerToMBitmap::StretchBltV(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                                   int sy1, int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::StretchBltV",
          [&]
          {
              const DrawingArea area(bitmap);
              if (!IsUsable(source) || sx2 < sx1 || area.IsEmpty())
                  return;
              const MRectangle& clip = area.GetClip();
              ForPieces(x1, x2, std::int64_t{sx2} - sx1 + 1, clip.left, clip.right,
                        [&](int first, int last)
                        {
                            const MRectangle part{sx1, sy1, PieceEnd(sx1, first, last), sy2};
                            PaintStretched(area, {first, y1, last, y2}, *source, part, colour, op);
                        });
          });
}

void MDrawerToMBitmap::AlignedBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                                  int sy1, int sx2, int sy2, int flags, MColor colour,
                                  MColorOp op) noexcept
{
    const std::int64_t targetWidth = std::int64_t{x2} - x1 + 1;
    const std::int64_t targetHeight = std::int64_t{y2} - y1 + 1;
    const std::int64_t sourceWidth = std::int64_t{sx2} - sx1 + 1;
    const std::int64_t sourceHeight = std::int64_t{sy2} - sy1 + 1;
    if (targetWidth < 1 || targetHeight < 1 || sourceWidth < 1 || sourceHeight < 1)
        return;

    const auto has = [flags](int flag) { return (flags & flag) != 0; };
    std::int64_t width = sourceWidth;
    std::int64_t height = sourceHeight;
    if (width > targetWidth || height > targetHeight)
    {
        // The flatter of the two shapes is bounded by its width.
        const auto product = [](std::int64_t a, std::int64_t b)
        { return static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b); };
        if (product(sourceWidth, targetHeight) < product(sourceHeight, targetWidth))
        {
            width = Proportion(sourceWidth, targetHeight, sourceHeight);
            height = targetHeight;
        }
        else
        {
            height = Proportion(sourceHeight, targetWidth, sourceWidth);
            width = targetWidth;
        }
    }
    if (has(alignedblt::FullWidth))
        width = targetWidth;
    if (has(alignedblt::FullHeight))
        height = targetHeight;
    if (width < 1 || height < 1)
        return;

    const int x = Aligned(x1, x2, width, has(alignedblt::Left), has(alignedblt::Right));
    const int y = Aligned(y1, y2, height, has(alignedblt::Top), has(alignedblt::Bottom));
    const auto right = static_cast<int>(x + width - 1);
    const auto bottom = static_cast<int>(y + height - 1);
    if (width == sourceWidth && height == sourceHeight)
        BitBlt(x, y, right, bottom, source, sx1, sy1, colour, op);
    else
        StretchBlt(x, y, right, bottom, source, sx1, sy1, sx2, sy2, colour, op);
}

void MDrawerToMBitmap::AlignedTextOut(const MFont& font, int x1, int y1, int x2, int y2,
                                      const MString& text, int flags, MColor colour,
                                      MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::AlignedTextOut",
          [&]
          {
              const AlignedText aligned = {.font = font,
                                           .text = text,
                                           .rectangle = {x1, y1, x2, y2},
                                           .flags = flags,
                                           .op = op};
              aligned.Draw(*this, colour, textShadow);
          });
}

void MDrawerToMBitmap::MoveTo(int x, int y) noexcept
{
    bitmap.pens.x = x;
    bitmap.pens.y = y;
}

void MDrawerToMBitmap::LineTo(int x, int y, MColor colour, MColorOp op) noexcept
{
    MBitmap::Pens& pens = bitmap.pens;
    if (x == pens.x && y == pens.y)
        return;
    Guard("MDrawerToMBitmap::LineTo",
          [&] { PaintLine(DrawingArea(bitmap), pens.x, pens.y, x, y, colour, op); });
    MoveTo(x, y);
}

void MDrawerToMBitmap::MoveToF(double x, double y) noexcept
{
    if (!std::isfinite(x) || !std::isfinite(y))
        return;
    bitmap.pens.preciseX = x;
    bitmap.pens.preciseY = y;
}

void MDrawerToMBitmap::LineToF(double x, double y, MColor colour, MColorOp op) noexcept
{
    const MBitmap::Pens& pens = bitmap.pens;
    const auto isSame = [](double a, double b) { return std::abs(a - b) < 1e-50; };
    if (!std::isfinite(x) || !std::isfinite(y) ||
        (isSame(x, pens.preciseX) && isSame(y, pens.preciseY)))
        return;
    Guard("MDrawerToMBitmap::LineToF",
          [&] {
              PaintPreciseLine(DrawingArea(bitmap), pens.preciseX, pens.preciseY, x, y, colour, op);
          });
    MoveToF(x, y);
}

void MDrawerToMBitmap::Rectangle(int x1, int y1, int x2, int y2, MColor colour,
                                 MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::Rectangle",
          [&] {
              PaintFrame(DrawingArea(bitmap), {x1, y1, x2, y2}, colour, op);
          });
}

void MDrawerToMBitmap::FillRectangle(int x1, int y1, int x2, int y2, MColor colour,
                                     MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::FillRectangle",
          [&] {
              FillArea(DrawingArea(bitmap), {x1, y1, x2, y2}, colour, op);
          });
}

void MDrawerToMBitmap::FillRectangleGradient(int x1, int y1, int x2, int y2, MColor colour1,
                                             MColor colour2, int direction, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::FillRectangleGradient",
          [&] {
              FillGradient(DrawingArea(bitmap), {x1, y1, x2, y2}, colour1, colour2, direction == 1,
                           op);
          });
}

void MDrawerToMBitmap::RoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                                      MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::RoundRectangle",
          [&]
          {
              PaintOutline(DrawingArea(bitmap), RoundShape::Rectangle({x1, y1, x2, y2}, radius),
                           colour, op);
          });
}

void MDrawerToMBitmap::FillRoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                                          MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::FillRoundRectangle",
          [&] {
              FillShape(DrawingArea(bitmap), RoundShape::Rectangle({x1, y1, x2, y2}, radius),
                        colour, op);
          });
}

void MDrawerToMBitmap::Circle(int x, int y, int radius, MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::Circle",
          [&] { PaintOutline(DrawingArea(bitmap), RoundShape::Circle(x, y, radius), colour, op); });
}

void MDrawerToMBitmap::FillCircle(int x, int y, int radius, MColor colour, MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::FillCircle",
          [&] { FillShape(DrawingArea(bitmap), RoundShape::Circle(x, y, radius), colour, op); });
}

void MDrawerToMBitmap::PolyLine(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept
{
    if (points.empty())
        return;
    Guard("MDrawerToMBitmap::PolyLine",
          [&]
          {
              MoveTo(points.front().x, points.front().y);
              for (const MPoint& point : points.subspan(1))
                  LineTo(point.x, point.y, colour, op);
          });
}

void MDrawerToMBitmap::FillPolygon(std::span<const MPoint> points, MColor colour,
                                   MColorOp op) noexcept
{
    Guard("MDrawerToMBitmap::FillPolygon",
          [&] { PaintPolygon(DrawingArea(bitmap), points, colour, op); });
}

MColor MDrawerToMBitmap::GetPixel(int x, int y) const noexcept
{
    return bitmap.GetClip().Contains(x, y) ? bitmap.GetColor(x, y) : MColor(0, 0, 0);
}

void MDrawerToMBitmap::SetPixel(int x, int y, MColor colour) noexcept
{
    if (!bitmap.IsPaletted() && bitmap.GetClip().Contains(x, y))
        *bitmap.GetRow(y, x) = colour;
}
