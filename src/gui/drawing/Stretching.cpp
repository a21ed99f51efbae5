#include "gui/drawing/Stretching.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "gui/drawing/ColourRows.h"
#include "gui/drawing/MPixelPainter.h"

namespace drawing
{
namespace
{

/// Where the pixels of one axis come from.
struct Axis
{
    int first = 0;                      ///< of the target
    std::vector<std::int32_t> places;   ///< of the left or upper neighbour
    std::vector<std::uint32_t> weights; ///< of the other one, 0 to 255

    int GetCount() const noexcept { return static_cast<int>(places.size()); }
};

/// For the target from @p from to @p to, of which @p first to @p last lies in the clip, and for the
/// source from @p sourceFrom to @p sourceTo, whose bitmap has @p length pixels.
Axis MakeAxis(std::int64_t from, std::int64_t to, int first, int last, std::int64_t sourceFrom,
              std::int64_t sourceTo, int length)
{
    Axis axis;
    axis.first = static_cast<int>(std::max<std::int64_t>(from, first));
    const auto count = static_cast<int>(std::min<std::int64_t>(to, last)) - axis.first + 1;
    const float step =
        from == to ? 0.0f
                   : static_cast<float>(sourceTo - sourceFrom) / static_cast<float>(to - from);
    const float start =
        static_cast<float>(sourceFrom) + static_cast<float>(axis.first - from) * step;
    axis.places.reserve(static_cast<std::size_t>(count));
    axis.weights.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
    {
        const float place = start + static_cast<float>(i) * step;
        if (place >= static_cast<float>(length))
            break;
        const int pixel =
            place > 0.0f ? std::max(std::min(static_cast<int>(place), length - 2), 0) : 0;
        const float weight = (place - static_cast<float>(pixel)) * 255.0f;
        axis.places.push_back(pixel);
        axis.weights.push_back(static_cast<std::uint32_t>(std::clamp(weight, 0.0f, 255.0f)));
    }
    return axis;
}

/// The rows of a source scaled along x, of which it keeps the last two: when a picture grows, most
/// rows need the same ones again.
class ScaledRows
{
public:
    ScaledRows(const MBitmap& sourceBitmap, const Axis& columns)
        : source(sourceBitmap),
          axis(columns),
          rows(sourceBitmap, sourceBitmap.GetWidth())
    {
        for (Row& row : kept)
            row.pixels.resize(columns.places.size());
    }

    /// Both rows until the next call.
    std::pair<const MColor*, const MColor*> GetPair(int y)
    {
        if (kept[0].y != y)
            std::swap(kept[0], kept[1]);
        Make(kept[0], y);
        if (y + 1 < source.GetHeight())
            Make(kept[1], y + 1);
        return {kept[0].pixels.data(), kept[1].pixels.data()};
    }

private:
    struct Row
    {
        int y = -1;
        std::vector<MColor> pixels;
    };

    void Make(Row& row, int y)
    {
        if (row.y == y)
            return;
        const MColor* pixels = rows.Get(0, y, source.GetWidth());
        if (source.GetWidth() == 1)
            std::ranges::fill(row.pixels, *pixels);
        else
            kernels::MixNeighbours(Values(row.pixels.data()), Values(pixels), axis.places.data(),
                                   axis.weights.data(), axis.GetCount());
        row.y = y;
    }

    const MBitmap& source;
    const Axis& axis;
    ColourRows rows;
    std::array<Row, 2> kept;
};

} // namespace

void PaintStretched(const DrawingArea& area, const MRectangle& rectangle, const MBitmap& source,
                    const MRectangle& part, MColor colour, MColorOp op)
{
    const MRectangle& clip = area.GetClip();
    if (rectangle.IsEmpty() || part.IsEmpty() || source.IsEmpty() ||
        rectangle.Intersect(clip).IsEmpty())
        return;

    const Axis columns = MakeAxis(rectangle.left, rectangle.right, clip.left, clip.right, part.left,
                                  part.right, source.GetWidth());
    const Axis rows = MakeAxis(rectangle.top, rectangle.bottom, clip.top, clip.bottom, part.top,
                               part.bottom, source.GetHeight());
    ScaledRows scaled(source, columns);
    const int count = columns.GetCount();
    std::vector<MColor> mixed(columns.places.size());
    WithPainter(op, colour,
                [&](const auto& painter)
                {
                    for (int i = 0; i < rows.GetCount(); ++i)
                    {
                        const auto at = static_cast<std::size_t>(i);
                        const auto [upper, lower] = scaled.GetPair(rows.places[at]);
                        if (source.GetHeight() > 1)
                            kernels::MixPixels(Values(mixed.data()), Values(upper), Values(lower),
                                               static_cast<int>(rows.weights[at]), count);
                        painter.BlitRow(area.At(columns.first, rows.first + i),
                                        source.GetHeight() > 1 ? mixed.data() : upper, count);
                    }
                });
}

} // namespace drawing
