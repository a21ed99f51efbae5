#include "gui/drawing/Blits.h"

#include <algorithm>
#include <vector>

#include "gui/drawing/ColourRows.h"
#include "gui/drawing/MAlphaMask.h"
#include "gui/drawing/MPixelPainter.h"

namespace drawing
{
namespace
{

/// What is left of a blit after clipping: pixels of the target, and where the first of them comes
/// from.
struct Placement
{
    MRectangle target;
    int sx = 0;
    int sy = 0;
};

/// One axis of it: from @p from to @p to of the target, @p source being what @p from reads of a
/// source as long as @p sourceLength.
struct Extent
{
    std::int64_t from;
    std::int64_t to;
    std::int64_t source;

    void Clip(int first, int last, int sourceLength) noexcept
    {
        const std::int64_t outside = std::max<std::int64_t>(first - from, 0);
        from += outside;
        source += outside;
        const std::int64_t missing = std::max<std::int64_t>(-source, 0);
        from += missing;
        source += missing;
        to = std::min({to, std::int64_t{last}, from + sourceLength - 1 - source});
    }
};

/// With an empty target if nothing is left.
Placement Place(const DrawingArea& area, const MRectangle& rectangle, const MBaseBitmap& source,
                int sx, int sy) noexcept
{
    const MRectangle& clip = area.GetClip();
    Extent x{rectangle.left, rectangle.right, sx};
    Extent y{rectangle.top, rectangle.bottom, sy};
    x.Clip(clip.left, clip.right, source.GetWidth());
    y.Clip(clip.top, clip.bottom, source.GetHeight());
    if (area.IsEmpty() || source.IsEmpty() || x.to < x.from || y.to < y.from)
        return {};
    return {.target = {static_cast<int>(x.from), static_cast<int>(y.from), static_cast<int>(x.to),
                       static_cast<int>(y.to)},
            .sx = static_cast<int>(x.source),
            .sy = static_cast<int>(y.source)};
}

/// @p count pixels by the coverage of a mask's row from @p x on, which crosses the blocks in runs.
template <typename Painter>
void CoverRun(const Painter& painter, MColor* d, const MAlphaMask& mask, int x, int y, int count,
              int inversion) noexcept
{
    while (count > 0)
    {
        const MAlphaMask::Run run = mask.GetRun(x, y);
        const int pieceCount = std::min(run.count, count);
        if (run.bytes == nullptr)
            painter.CoverRow(d, pieceCount, run.constant ^ inversion);
        else
            for (int i = 0; i < pieceCount; ++i)
                painter.Cover(d[i], run.bytes[i] ^ inversion);
        d += pieceCount;
        x += pieceCount;
        count -= pieceCount;
    }
}

} // namespace

void PaintTiles(const DrawingArea& area, const MRectangle& rectangle, const MBitmap& source,
                const MRectangle& tile, MColor colour, MColorOp op)
{
    const MRectangle target = rectangle.Intersect(area.GetClip());
    const MRectangle part = tile.Intersect(source.GetBounds());
    if (target.IsEmpty() || part.IsEmpty())
        return;

    const int width = part.GetWidth();
    const auto phase = [](std::int64_t at, std::int64_t start, int period)
    { return static_cast<int>((at - start) % period); };
    const int columnPhase = phase(target.left, rectangle.left, width);
    const int count = target.GetWidth();
    ColourRows rows(source, width);
    std::vector<MColor> tiled(static_cast<std::size_t>(count));
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    for (int y = target.top; y <= target.bottom; ++y)
                    {
                        const int row = part.top + phase(y, rectangle.top, part.GetHeight());
                        const MColor* pixels = rows.Get(part.left, row, width);
                        for (int i = -columnPhase; i < count; i += width)
                            std::copy(pixels + std::max(-i, 0), pixels + std::min(width, count - i),
                                      tiled.begin() + std::max(i, 0));
                        painter.BlitRow(area.At(target.left, y), tiled.data(), count);
                    }
                });
}

void PaintBitmap(const DrawingArea& area, const MRectangle& rectangle, const MBitmap& source,
                 int sx, int sy, MColor colour, MColorOp op)
{
    const Placement place = Place(area, rectangle, source, sx, sy);
    const MRectangle& target = place.target;
    if (target.IsEmpty())
        return;
    const int count = target.GetWidth();
    ColourRows rows(source, count);
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    for (int y = target.top; y <= target.bottom; ++y)
                        painter.BlitRow(area.At(target.left, y),
                                        rows.Get(place.sx, place.sy + y - target.top, count),
                                        count);
                });
}

void PaintMask(const DrawingArea& area, const MRectangle& rectangle, const MAlphaMask& mask, int mx,
               int my, MColor colour, MColorOp op, bool invert)
{
    const Placement place = Place(area, rectangle, mask, mx, my);
    const MRectangle& target = place.target;
    if (target.IsEmpty())
        return;
    const int inversion = invert ? 255 : 0; // 255 - c is c ^ 255
    const int lastX = place.sx + target.GetWidth() - 1;
    const int lastY = place.sy + target.GetHeight() - 1;
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    const auto paint = [&](int x1, int x2, int y)
                    {
                        MColor* d = area.At(target.left + x1 - place.sx, target.top + y - place.sy);
                        CoverRun(painter, d, mask, x1, y, x2 - x1 + 1, inversion);
                    };
                    if (!mask.HasSpans())
                        for (int y = place.sy; y <= lastY; ++y)
                            paint(place.sx, lastX, y);
                    for (const MAlphaMask::Span& span : mask.GetSpans(place.sy, lastY))
                        if (span.firstX <= lastX && span.lastX >= place.sx)
                            paint(std::max(span.firstX, place.sx), std::min(span.lastX, lastX),
                                  span.y);
                });
}

} // namespace drawing
