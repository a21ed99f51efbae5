// Reads strangers' PNG files. What could be read can be written, and reads as the same again.

#include <algorithm>
#include <cstdlib>
#include <span>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MBitmap.h"
#include "gui/images/PNG.h"

namespace
{

/// Whether the header claims so few pixels that they take no time.
bool IsSmall(std::span<const std::uint8_t> file)
{
    constexpr std::size_t SizeAt = 16; // of the width, then the height: 32 bits each
    if (file.size() < SizeAt + 8)
        return true;
    return std::all_of(file.begin() + SizeAt, file.begin() + SizeAt + 8,
                       [i = 0](std::uint8_t byte) mutable { return i++ % 4 >= 2 || byte == 0; }) &&
           file[SizeAt + 2] < 4 && file[SizeAt + 6] < 4;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span file(data, size);
    if (!IsSmall(file))
        return 0;
    MBitmap bitmap;
    try
    {
        MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(file));
        images::LoadPNG(stream, bitmap);
    }
    catch (const MException&) // refused, as it may be
    {
        if (!bitmap.IsEmpty())
            std::abort();
        return 0;
    }
    MMemoryStream written;
    images::SavePNG(bitmap, written);
    written.Seek(0, MStream::FromStart);
    MBitmap again;
    images::LoadPNG(written, again);
    if (again.IsPaletted() != bitmap.IsPaletted() || again.GetBounds() != bitmap.GetBounds())
        std::abort();
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            if (again.GetColor(x, y) != bitmap.GetColor(x, y))
                std::abort();
    return 0;
}
