#pragma once

#include <span>
#include <string>
#include <vector>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MBitmap.h"

/// One pixel that no test file holds, to see whether a loader touched it.
inline const MColor Untouched(1, 2, 3, 4);

/// Row after row.
inline std::vector<MColor> ColoursOf(const MBitmap& bitmap)
{
    std::vector<MColor> colours;
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            colours.push_back(bitmap.GetColor(x, y));
    return colours;
}

struct LoadResult
{
    MBitmap bitmap{1, 1};
    std::string failure; ///< text and code; empty if there was none
    std::int64_t position = 0;

    bool IsUntouched() const
    {
        return !bitmap.IsPaletted() && Colours() == std::vector<MColor>{Untouched};
    }
    std::vector<MColor> Colours() const { return ColoursOf(bitmap); }
};

template <typename Loader>
void Load(Loader loader, std::span<const std::uint8_t> bytes, LoadResult& result)
{
    *result.bitmap.GetRow(0) = Untouched;
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(bytes));
    try
    {
        loader(stream, result.bitmap);
    }
    catch (const MException& failure)
    {
        result.failure = failure.text.ToUTF8() + " " + std::to_string(failure.code);
    }
    result.position = stream.GetPosition();
}
