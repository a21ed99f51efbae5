// Reads strangers' TGA files: what is refused leaves the bitmap as it was, and what is read lies
// within it.

#include <cstdlib>
#include <span>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MBitmap.h"
#include "gui/images/TGA.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t WidthHighAt = 13;
    constexpr std::size_t HeightHighAt = 15;
    if (size > HeightHighAt && data[WidthHighAt] > 3 && data[HeightHighAt] > 3)
        return 0; // only takes time
    MBitmap bitmap(3, 2);
    bool isRefused = false;
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(data, size)));
    try
    {
        images::LoadTGA(stream, bitmap);
    }
    catch (const MException&)
    {
        isRefused = true;
    }
    if (isRefused && (bitmap.GetWidth() != 3 || bitmap.GetHeight() != 2))
        std::abort();
    std::uint32_t sum = 0;
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            sum += bitmap.GetColor(x, y).GetValue();
    return sum == 1 ? 1 : 0; // which libFuzzer takes for "not worth keeping"
}
