#include "gui/drawing/RoundShapes.h"

#include <array>
#include <cmath>
#include <cstdlib>

#include "gui/drawing/MPixelPainter.h"

namespace drawing
{
namespace
{

/// Walks an eighth of the corners, whose steps x lie 1, 2, 3... from the centres, in the clip
/// alone: a circle may be far larger than any bitmap.
class ArcSteps
{
public:
    ArcSteps(const RoundShape& shape, const MRectangle& clip) noexcept
        : visible{{{clip.left - shape.right, clip.right - shape.right},
                   {shape.left - clip.right, shape.left - clip.left},
                   {clip.top - shape.bottom, clip.bottom - shape.bottom},
                   {shape.top - clip.bottom, shape.top - clip.top}}}
    {
    }

    /// The first step from @p x on of which any point can be visible; @p end if none is before it.
    std::int64_t GetNext(std::int64_t x, std::int64_t end) const noexcept
    {
        std::int64_t next = end;
        for (const Range& range : visible)
            if (x <= range.last)
                next = std::min(next, std::max(x, range.first));
        return next;
    }

private:
    struct Range
    {
        std::int64_t first, last;
    };
    std::array<Range, 4> visible; ///< one for each side on which a step leaves the centres
};

/// Paints what lies alike in the four corners.
template <typename Painter>
class CornerPainter
{
public:
    CornerPainter(const DrawingArea& drawingArea, const Painter& pixelPainter,
                  const RoundShape& roundShape) noexcept
        : area(drawingArea),
          painter(pixelPainter),
          shape(roundShape)
    {
    }

    void Cover(std::int64_t dx, std::int64_t dy, int coverage) const noexcept
    {
        area.Cover(painter, shape.right + dx, shape.bottom + dy, coverage);
        area.Cover(painter, shape.left - dx, shape.bottom + dy, coverage);
        area.Cover(painter, shape.right + dx, shape.top - dy, coverage);
        area.Cover(painter, shape.left - dx, shape.top - dy, coverage);
    }

    /// On both sides of the diagonal.
    void CoverBoth(std::int64_t dx, std::int64_t dy, int coverage) const noexcept
    {
        Cover(dx, dy, coverage);
        Cover(dy, dx, coverage);
    }

private:
    const DrawingArea& area;
    const Painter& painter;
    const RoundShape& shape;
};

/// The place of the circle above a step, between the pixels y and y - 1.
struct ArcPlace
{
    std::int64_t y;
    int outer; ///< coverage of the pixel y
    int inner; ///< of y - 1

    ArcPlace(std::int64_t radius, std::int64_t x) noexcept
    {
        const double exact = std::sqrt(static_cast<double>(radius * radius - x * x));
        y = static_cast<std::int64_t>(exact + 1.0);
        const double f = std::abs(static_cast<double>(y) - exact);
        outer = static_cast<int>(255.0 - f * 255.0);
        inner = static_cast<int>(f * 255.0);
    }
};

template <typename Painter>
void PaintArcs(const CornerPainter<Painter>& corners, const ArcSteps& steps, std::int64_t radius)
{
    for (std::int64_t x = steps.GetNext(1, radius + 1); x <= radius;
         x = steps.GetNext(x + 1, radius + 1))
    {
        const ArcPlace place(radius, x);
        if (place.y > x + 1)
        {
            corners.CoverBoth(x, place.y, place.outer);
            corners.CoverBoth(x, place.y - 1, place.inner);
            continue;
        }
        // The eighths meet here: the pixel on the diagonal belongs to both and is painted once. If
        // the step before had met them already, nothing is left.
        if (x > 1 && ArcPlace(radius, x - 1).y <= x)
            return;
        if (place.y == x + 1)
        {
            corners.CoverBoth(x, place.y, place.outer);
            corners.Cover(x, x, place.inner);
        }
        else if (place.y == x)
            corners.Cover(x, x, place.outer);
        return;
    }
}

/// Half of a row of a disc, seen from its centre.
struct HalfRow
{
    std::int64_t inside; ///< pixels up to here are covered wholly
    std::int64_t edge;   ///< and those up to here in part

    /// @p dy is 1 to @p radius.
    HalfRow(std::int64_t radius, std::int64_t dy) noexcept
    {
        const std::int64_t square = radius * radius - dy * dy;
        inside = static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)));
        // The root of a number beyond 2^53 may be one too large.
        if (inside * inside > square)
            --inside;
        const auto r = static_cast<double>(radius);
        const double y = static_cast<double>(dy) - 0.5;
        edge = static_cast<std::int64_t>(std::floor(std::sqrt(r * r - y * y) + 0.5));
    }
};

/// The rows above and below the centres that the clip shows, by their distance.
struct CornerRows
{
    std::int64_t first;
    std::int64_t last;

    CornerRows(const RoundShape& shape, const MRectangle& clip) noexcept
    {
        const std::int64_t nearest = 1;
        const std::int64_t firstAbove = std::max(shape.top - clip.bottom, nearest);
        const std::int64_t lastAbove = std::min(shape.top - clip.top, shape.radius);
        const std::int64_t firstBelow = std::max(clip.top - shape.bottom, nearest);
        const std::int64_t lastBelow = std::min(clip.bottom - shape.bottom, shape.radius);
        // If both are seen, then from the nearest on.
        first = firstAbove <= lastAbove ? firstAbove : firstBelow;
        last = std::max(lastAbove, lastBelow);
    }
};

int DiscCoverage(std::int64_t radius, std::int64_t dx, std::int64_t dy) noexcept
{
    const double distance = std::sqrt(static_cast<double>(dx * dx + dy * dy));
    return static_cast<int>(255.0 *
                            std::clamp(static_cast<double>(radius) - distance + 1.0, 0.0, 1.0));
}

/// The rows @p dy above and below the centres, which are alike.
template <typename Painter>
void FillCorners(const DrawingArea& area, const Painter& painter, const RoundShape& shape,
                 std::int64_t dy) noexcept
{
    const HalfRow half(shape.radius, dy);
    const std::int64_t above = shape.top - dy;
    const std::int64_t below = shape.bottom + dy;
    area.CoverRow(painter, shape.left - half.inside, shape.right + half.inside, above, 255);
    area.CoverRow(painter, shape.left - half.inside, shape.right + half.inside, below, 255);
    for (std::int64_t dx = half.inside + 1; dx <= half.edge; ++dx)
    {
        const int coverage = DiscCoverage(shape.radius, dx, dy);
        for (const std::int64_t y : {above, below})
        {
            area.Cover(painter, shape.left - dx, y, coverage);
            area.Cover(painter, shape.right + dx, y, coverage);
        }
    }
}

} // namespace

void PaintOutline(const DrawingArea& area, const RoundShape& shape, MColor colour, MColorOp op)
{
    const MRectangle& clip = area.GetClip();
    if (area.IsEmpty() || shape.IsOutside(clip))
        return;
    // Without corners, the columns leave their ends to the rows.
    const std::int64_t corner = shape.radius == 0 ? 1 : 0;
    const std::int64_t top = shape.top - shape.radius;
    const std::int64_t bottom = shape.bottom + shape.radius;
    const std::int64_t left = shape.left - shape.radius;
    const std::int64_t right = shape.right + shape.radius;
    WithPainter(
        op, colour,
        [&](const auto& painter)
        {
            area.CoverRow(painter, shape.left, shape.right, top, 255);
            if (bottom > top)
                area.CoverRow(painter, shape.left, shape.right, bottom, 255);
            area.CoverColumn(painter, left, shape.top + corner, shape.bottom - corner, 255);
            if (right > left)
                area.CoverColumn(painter, right, shape.top + corner, shape.bottom - corner, 255);
            PaintArcs(CornerPainter(area, painter, shape), ArcSteps(shape, clip), shape.radius);
        });
}

void FillShape(const DrawingArea& area, const RoundShape& shape, MColor colour, MColorOp op)
{
    const MRectangle& clip = area.GetClip();
    if (area.IsEmpty() || shape.IsOutside(clip))
        return;
    const std::int64_t bandTop = std::max<std::int64_t>(shape.top, clip.top);
    const std::int64_t bandBottom = std::min<std::int64_t>(shape.bottom, clip.bottom);
    const CornerRows rows(shape, clip);
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    for (std::int64_t y = bandTop; y <= bandBottom; ++y)
                        area.CoverRow(painter, shape.left - shape.radius,
                                      shape.right + shape.radius, y, 255);
                    for (std::int64_t dy = rows.first; dy <= rows.last; ++dy)
                        FillCorners(area, painter, shape, dy);
                });
}

} // namespace drawing
