#include "gui/drawing/Lines.h"

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <utility>

#include "gui/drawing/MPixelPainter.h"
#include "gui/drawing/Proportion.h"

namespace drawing
{
namespace
{

/// A line between places of integers or doubles.
template <typename T>
struct Line
{
    T x1, y1, x2, y2;
};

std::int64_t Share(std::int64_t a, std::int64_t b, std::int64_t c) noexcept
{
    return Proportion(a, b, c);
}

double Share(double a, double b, double c) noexcept
{
    return a * (b / c);
}

/// Brings the end (@p x, @p y) of @p line into the clip, unless the line misses it.
template <typename T>
bool ClipEnd(const Line<T>& line, const MRectangle& clip, T& x, T& y) noexcept
{
    const T left = clip.left;
    const T top = clip.top;
    const T right = clip.right;
    const T bottom = clip.bottom;
    const auto isOutside = [&] { return !(x >= left && x <= right && y >= top && y <= bottom); };
    const auto cutX = [&](T edge)
    {
        y = line.y1 + Share(line.y2 - line.y1, edge - line.x1, line.x2 - line.x1);
        x = edge;
    };
    const auto cutY = [&](T edge)
    {
        x = line.x1 + Share(line.x2 - line.x1, edge - line.y1, line.y2 - line.y1);
        y = edge;
    };
    // At the second edge an end has arrived; one that has not passes a corner by.
    for (int cut = 0; cut < 2 && isOutside(); ++cut)
    {
        if (x < left)
            cutX(left);
        else if (x > right)
            cutX(right);
        else if (y < top)
            cutY(top);
        else
            cutY(bottom);
    }
    return !isOutside();
}

/// Cuts @p line to the clip. @return whether anything is left
template <typename T>
bool ClipLine(Line<T>& line, const MRectangle& clip) noexcept
{
    const auto isBeyond = [](T a, T b, int first, int last)
    { return (a < first && b < first) || (a > last && b > last); };
    if (isBeyond(line.x1, line.x2, clip.left, clip.right) ||
        isBeyond(line.y1, line.y2, clip.top, clip.bottom))
        return false;
    const Line<T> whole = line;
    return ClipEnd(whole, clip, line.x1, line.y1) && ClipEnd(whole, clip, line.x2, line.y2);
}

/// An axis of a walk from pixel to pixel.
struct Walk
{
    int length;           ///< steps
    int sign;             ///< the direction
    std::ptrdiff_t pitch; ///< pixels of memory for a step upward

    Walk(std::int64_t from, std::int64_t to, std::ptrdiff_t memoryPitch) noexcept
        : length(static_cast<int>(std::abs(to - from))),
          sign(to < from ? -1 : 1),
          pitch(memoryPitch)
    {
    }
};

/// Walks @p major from @p d on. All numbers stay small, as the line lies in a bitmap.
template <typename Painter>
void PaintWalk(const Painter& painter, MColor* d, const Walk& major, const Walk& minor) noexcept
{
    // How far the line has gone away from the main pixel, in 256ths of it over 2 * major.length.
    int error = 0;
    // The way back, rounded up: a division a step would take as long as the pixels. It is exact,
    // as errors stay below 2^24 and lengths below 2^16.
    constexpr int Bits = 42;
    const std::uint64_t inverse =
        major.length > 0
            ? (std::uint64_t{1} << Bits) / (2 * static_cast<std::uint64_t>(major.length)) + 1
            : 0;
    const std::ptrdiff_t ahead = major.sign * major.pitch;
    const std::ptrdiff_t aside = minor.sign * minor.pitch;
    for (int step = 0; step < major.length; ++step)
    {
        const auto share =
            static_cast<int>((static_cast<std::uint64_t>(std::abs(error)) * inverse) >> Bits);
        painter.Cover(*d, 255 - share);
        // The neighbour lies between the ends of the line, so inside the clip, too.
        if (share != 0)
            painter.Cover(d[error < 0 ? -aside : aside], share);
        error += 2 * 256 * minor.length;
        if (error > 256 * major.length)
        {
            error -= 2 * 256 * major.length;
            d += aside;
        }
        d += ahead;
    }
    painter.Cover(*d, 255);
}

/// Shares a sample at (@p x, @p y), which is inside, between the four pixels around.
template <typename Painter>
void PaintSample(const DrawingArea& area, const Painter& painter, double x, double y) noexcept
{
    const auto ix = static_cast<int>(x);
    const auto iy = static_cast<int>(y);
    const auto fx = static_cast<int>((x - ix) * 255.0);
    const auto fy = static_cast<int>((y - iy) * 255.0);
    const auto cover = [&](int px, int py, int product)
    {
        if (product > 255)
            area.Cover(painter, px, py, product >> 8);
    };
    cover(ix + 1, iy + 1, fy * (fx + 1));
    cover(ix + 1, iy, (255 - fy) * (fx + 1));
    cover(ix, iy + 1, fy * (256 - fx));
    cover(ix, iy, (255 - fy) * (256 - fx));
}

} // namespace

void PaintLine(const DrawingArea& area, int x1, int y1, int x2, int y2, MColor colour, MColorOp op)
{
    Line<std::int64_t> line{x1, y1, x2, y2};
    if (area.IsEmpty() || !ClipLine(line, area.GetClip()))
        return;

    MColor* d = area.At(line.x1, line.y1);
    const Walk x(line.x1, line.x2, 1);
    const Walk y(line.y1, line.y2, area.GetStride());
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    if (x.length >= y.length)
                        PaintWalk(painter, d, x, y);
                    else
                        PaintWalk(painter, d, y, x);
                });
}

void PaintPreciseLine(const DrawingArea& area, double x1, double y1, double x2, double y2,
                      MColor colour, MColorOp op)
{
    Line<double> line{x1, y1, x2, y2};
    if (area.IsEmpty() || !ClipLine(line, area.GetClip()))
        return;

    double dx = line.x2 - line.x1;
    double dy = line.y2 - line.y1;
    const double length = std::sqrt(dx * dx + dy * dy);
    dx = length > 0.0 ? dx / length : 1.0;
    dy = length > 0.0 ? dy / length : 1.0;
    const bool isVertical = std::abs(dx) < 0.001;
    if (isVertical ? dy < 0.0 : dx < 0.0)
    {
        std::swap(line.x1, line.x2);
        std::swap(line.y1, line.y2);
        dx = -dx;
        dy = -dy;
    }
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    // A last sample that rounding has moved just beyond the end may be missing.
                    if (isVertical)
                        for (; line.y1 <= line.y2 + 1.2e-38; line.x1 += dx, line.y1 += dy)
                            PaintSample(area, painter, line.x1, line.y1);
                    else
                        for (; line.x1 <= line.x2; line.x1 += dx, line.y1 += dy)
                            PaintSample(area, painter, line.x1, line.y1);
                });
}

} // namespace drawing
