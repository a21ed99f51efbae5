#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <zlib.h>

/// PNG files put together by hand, so that they may also be wrong.
namespace pngparts
{

using Bytes = std::vector<std::uint8_t>;

inline void Append(Bytes& bytes, const Bytes& more)
{
    for (const std::uint8_t byte : more)
        bytes.push_back(byte);
}

inline Bytes Number(std::uint32_t number)
{
    Bytes bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    return bytes;
}

inline Bytes Chunk(const std::string& name, const Bytes& data)
{
    Bytes chunk = Number(static_cast<std::uint32_t>(data.size()));
    for (const char character : name)
        chunk.push_back(static_cast<std::uint8_t>(character));
    Append(chunk, data);
    Append(chunk, Number(static_cast<std::uint32_t>(
                      crc32(0, chunk.data() + 4, static_cast<uInt>(chunk.size() - 4)))));
    return chunk;
}

inline Bytes Header(std::uint32_t width, std::uint32_t height, std::uint8_t depth,
                    std::uint8_t colourType, std::uint8_t interlace = 0)
{
    Bytes data = Number(width);
    Append(data, Number(height));
    Append(data, {depth, colourType, 0, 0, interlace});
    return data;
}

/// A whole file; each of the rows has a filter byte in front, and @p extra comes before them.
inline Bytes File(const Bytes& header, const Bytes& rows, const Bytes& extra = {})
{
    const auto rowBytes = static_cast<uLong>(rows.size());
    uLongf size = compressBound(rowBytes);
    Bytes packed(size);
    compress(packed.data(), &size, rows.data(), rowBytes);
    packed.resize(size);
    Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    for (const Bytes& part :
         {Chunk("IHDR", header), extra, Chunk("IDAT", packed), Chunk("IEND", {})})
        Append(file, part);
    return file;
}

} // namespace pngparts
