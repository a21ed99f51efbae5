#pragma once

#include <algorithm>
#include <cstdint>

#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/MColorOp.h"

namespace drawing
{

/// A rectangle with round corners as the centres of these, which lie @p radius inside its edges;
/// in a circle all four are one.
struct RoundShape
{
    std::int64_t left, top, right, bottom;
    std::int64_t radius;

    /// A negative radius makes it empty.
    static constexpr RoundShape Circle(int x, int y, int radius) noexcept
    {
        return {x, y, x, y, radius};
    }
    /// The radius is cut to half the smaller side.
    static constexpr RoundShape Rectangle(const MRectangle& rectangle, int radius) noexcept
    {
        const std::int64_t side = std::min(std::int64_t{rectangle.right} - rectangle.left,
                                           std::int64_t{rectangle.bottom} - rectangle.top);
        const std::int64_t cut =
            std::clamp<std::int64_t>(radius, 0, std::max<std::int64_t>(side / 2, 0));
        return {rectangle.left + cut, rectangle.top + cut, rectangle.right - cut,
                rectangle.bottom - cut, cut};
    }

    bool IsOutside(const MRectangle& clip) const noexcept
    {
        return radius < 0 || right < left || bottom < top || right + radius < clip.left ||
               left - radius > clip.right || bottom + radius < clip.top ||
               top - radius > clip.bottom;
    }
};

/// The outline, one pixel wide and antialiased. Straight parts have full coverage, and nothing is
/// painted twice.
void PaintOutline(const DrawingArea& area, const RoundShape& shape, MColor colour, MColorOp op);

/// The inside as well.
void FillShape(const DrawingArea& area, const RoundShape& shape, MColor colour, MColorOp op);

} // namespace drawing
