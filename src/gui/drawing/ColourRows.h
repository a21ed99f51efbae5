#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "gui/drawing/MBitmap.h"

/// The rows of a bitmap as colours: of a true-colour one as they lie, of a paletted one looked up.
class ColourRows
{
public:
    /// For parts of up to @p maxCount pixels.
    ColourRows(const MBitmap& sourceBitmap, int maxCount)
        : bitmap(sourceBitmap),
          lookedUp(sourceBitmap.IsPaletted() ? static_cast<std::size_t>(maxCount) : 0)
    {
    }

    /// @p count pixels of row @p y from @p x on, all inside; until the next call.
    const MColor* Get(int x, int y, int count)
    {
        if (!bitmap.IsPaletted())
            return bitmap.GetRow(y, x);
        const MBitmap::Palette& palette = bitmap.GetPalette();
        std::transform(bitmap.GetIndexRow(y, x), bitmap.GetIndexRow(y, x) + count, lookedUp.begin(),
                       [&](std::uint8_t index) { return palette[index]; });
        return lookedUp.data();
    }

private:
    const MBitmap& bitmap;
    std::vector<MColor> lookedUp; ///< empty if not paletted
};
