#include "gui/drawing/Polygons.h"

#include <algorithm>

#include "gui/drawing/MPixelPainter.h"
#include "gui/drawing/PolygonScanner.h"

namespace drawing
{

void PaintPolygon(const DrawingArea& area, std::span<const MPoint> outline, MColor colour,
                  MColorOp op)
{
    if (area.IsEmpty())
        return;
    PolygonScanner scanner(outline);
    const std::int64_t first = std::max<std::int64_t>(scanner.GetFirstY(), area.GetClip().top);
    const std::int64_t last = std::min<std::int64_t>(scanner.GetLastY(), area.GetClip().bottom);
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    for (std::int64_t y = first; y <= last; ++y)
                        for (const PolygonScanner::Span& span : scanner.Scan(y))
                            area.CoverRow(painter, span.firstX, span.lastX, y, 255);
                });
}

} // namespace drawing
