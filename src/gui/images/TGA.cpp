#include "gui/images/TGA.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/streams/MStream.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MBitmap.h"

namespace
{

constexpr int PlainIndexBits = 8;
constexpr std::size_t MaxBytesPerPixel = 4;

struct Header
{
    static constexpr std::size_t Bytes = 18;
    static constexpr int RunLengthBit = 8;    ///< of the type
    static constexpr int TopOriginBit = 0x20; ///< of the descriptor

    int identifierBytes;
    bool hasMap;
    bool isRunLength;
    int mapStart; ///< the palette entry that the map begins with
    int mapCount;
    int mapBits; ///< of an entry
    int width;
    int height;
    int bits; ///< of a pixel
    bool isTopDown;
};

Header ReadHeader(MStream& stream)
{
    std::array<std::byte, Header::Bytes> bytes{};
    if (stream.Read(bytes) != bytes.size())
        throw MException("No TGA header present.", MException::BadData);
    const auto byte = [&](std::size_t at) { return std::to_integer<int>(bytes[at]); };
    const auto word = [&](std::size_t at) { return byte(at) | byte(at + 1) << 8; };
    // Sizes are signed, so that nothing wider than 32,767 is an image.
    const auto side = [&](std::size_t at) { return static_cast<std::int16_t>(word(at)); };
    return {.identifierBytes = byte(0),
            .hasMap = byte(1) != 0,
            .isRunLength = (byte(2) & Header::RunLengthBit) != 0,
            .mapStart = word(3),
            .mapCount = word(5),
            .mapBits = byte(7),
            .width = side(12),
            .height = side(14),
            .bits = byte(16),
            .isTopDown = (byte(17) & Header::TopOriginBit) != 0};
}

void CheckMap(const Header& header)
{
    const bool fits = header.mapStart + header.mapCount <= MBitmap::PaletteSize &&
                      (header.mapBits == 24 || header.mapBits == 32);
    if (header.hasMap && !fits)
        throw MException("Invalid file contents. Invalid TGA header.", MException::BadData);
}

bool IsKnownDepth(const Header& header) noexcept
{
    if (header.hasMap)
        return header.bits == PlainIndexBits;
    return header.bits == 8 || header.bits == 16 || header.bits == 24 || header.bits == 32;
}

/// The colour that a pixel or an entry of the map of @p stored's size stands for.
MColor Decode(std::span<const std::byte> stored) noexcept
{
    const auto byte = [&](std::size_t at) { return std::to_integer<int>(stored[at]); };
    switch (stored.size())
    {
    case 1:
        return {byte(0), byte(0), byte(0)};
    case 2:
    {
        const int word = byte(0) | byte(1) << 8;
        return {(word >> 10 & 31) << 3, (word >> 5 & 31) << 3, (word & 31) << 3};
    }
    case 3:
        return {byte(2), byte(1), byte(0)};
    default:
        return {byte(2), byte(1), byte(0), byte(3)};
    }
}

void ReadMap(MStream& stream, const Header& header, MBitmap& bitmap)
{
    std::array<std::byte, MaxBytesPerPixel> buffer{};
    const auto entry = std::span(buffer).first(static_cast<std::size_t>(header.mapBits / 8));
    bitmap.GetPalette().fill(MColor(0, 0, 0));
    for (int i = 0; i < header.mapCount; ++i)
    {
        ReadExactly(stream, entry);
        const int place = header.mapStart + i;
        bitmap.GetPalette()[static_cast<std::size_t>(place)] = Decode(entry);
    }
}

/// The pixels of a file one after the other, whether packed or not.
class PixelReader
{
public:
    PixelReader(MStream& pixelStream, const Header& header)
        : stream(pixelStream),
          isRunLength(header.isRunLength),
          pixel(std::span(buffer).first(static_cast<std::size_t>(header.bits / 8)))
    {
    }
    PixelReader(const PixelReader&) = delete;
    PixelReader& operator=(const PixelReader&) = delete;

    /// Valid until the next call.
    std::span<const std::byte> Next()
    {
        if (isRunLength && remaining == 0)
            ReadPacketHeader();
        if (!isRepeating || mustReadRepeated)
            ReadExactly(stream, pixel);
        mustReadRepeated = false;
        --remaining;
        return pixel;
    }

private:
    static constexpr int RepeatBit = 0x80;

    void ReadPacketHeader()
    {
        std::array<std::byte, 1> packet{};
        ReadExactly(stream, packet);
        const int value = std::to_integer<int>(packet[0]);
        isRepeating = (value & RepeatBit) != 0;
        mustReadRepeated = isRepeating;
        remaining = (value & (RepeatBit - 1)) + 1;
    }

    MStream& stream;
    bool isRunLength;
    bool isRepeating = false;
    bool mustReadRepeated = false;
    int remaining = 0; ///< pixels of the packet; of no use without packets
    std::array<std::byte, MaxBytesPerPixel> buffer{};
    std::span<std::byte> pixel;
};

/// A packet may run on over the end of a row, and what it has beyond the last row is left out.
void ReadPixels(MStream& stream, const Header& header, MBitmap& bitmap)
{
    PixelReader reader(stream, header);
    for (int row = 0; row < header.height; ++row)
    {
        const int y = header.isTopDown ? row : header.height - 1 - row;
        for (int x = 0; x < header.width; ++x)
            if (bitmap.IsPaletted())
                *bitmap.GetIndexRow(y, x) = std::to_integer<std::uint8_t>(reader.Next()[0]);
            else
                *bitmap.GetRow(y, x) = Decode(reader.Next());
    }
}

} // namespace

void images::LoadTGA(MStream& stream, MBitmap& bitmap)
{
    const Header header = ReadHeader(stream);
    std::array<std::byte, 255> identifier{};
    ReadExactly(stream,
                std::span(identifier).first(static_cast<std::size_t>(header.identifierBytes)));
    CheckMap(header);
    const bool isEmpty = header.width < 1 || header.height < 1;
    if (!isEmpty && !IsKnownDepth(header))
        return;

    MBitmap loaded;
    if (!isEmpty)
    {
        loaded.Create(header.width, header.height, header.hasMap);
        if (header.hasMap)
            ReadMap(stream, header, loaded);
        ReadPixels(stream, header, loaded);
    }
    bitmap.Swap(loaded);
}
