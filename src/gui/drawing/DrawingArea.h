#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "gui/drawing/MBitmap.h"

/// The pixels of a bitmap that a primitive may change: those inside its clip, and none of a
/// paletted bitmap, which is a source only. Primitives reckon in 64 bits, where no sum of
/// coordinates overflows, and clip what comes out.
class DrawingArea
{
public:
    /// For the time of one call; the bitmap must stay as it is.
    explicit DrawingArea(MBitmap& target) noexcept
        : clip(target.IsPaletted() ? MRectangle() : target.GetClip()),
          first(IsEmpty() ? nullptr : target.GetRow(0)),
          stride(target.GetWidth())
    {
    }

    bool IsEmpty() const noexcept { return clip.IsEmpty(); }
    const MRectangle& GetClip() const noexcept { return clip; }

    /// Pixels from row to row.
    std::ptrdiff_t GetStride() const noexcept { return stride; }
    /// Inside the clip.
    MColor* At(std::int64_t x, std::int64_t y) const noexcept { return first + (y * stride + x); }

    template <typename Painter>
    void Cover(const Painter& painter, std::int64_t x, std::int64_t y, int coverage) const noexcept
    {
        if (clip.Contains(x, y))
            painter.Cover(*At(x, y), coverage);
    }

    /// From @p x1 to @p x2.
    template <typename Painter>
    void CoverRow(const Painter& painter, std::int64_t x1, std::int64_t x2, std::int64_t y,
                  int coverage) const noexcept
    {
        const std::int64_t from = std::max<std::int64_t>(x1, clip.left);
        const std::int64_t to = std::min<std::int64_t>(x2, clip.right);
        if (from <= to && y >= clip.top && y <= clip.bottom)
            painter.CoverRow(At(from, y), static_cast<int>(to - from + 1), coverage);
    }

    /// From @p y1 to @p y2.
    template <typename Painter>
    void CoverColumn(const Painter& painter, std::int64_t x, std::int64_t y1, std::int64_t y2,
                     int coverage) const noexcept
    {
        if (x < clip.left || x > clip.right)
            return;
        const std::int64_t to = std::min<std::int64_t>(y2, clip.bottom);
        for (std::int64_t y = std::max<std::int64_t>(y1, clip.top); y <= to; ++y)
            painter.Cover(*At(x, y), coverage);
    }

private:
    MRectangle clip;
    MColor* first; ///< of the top row, outside the clip or not
    std::ptrdiff_t stride;
};
