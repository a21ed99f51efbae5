#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// PNG files put together by hand, so that they may also be wrong.
namespace pngparts
{

using Bytes = std::vector<std::uint8_t>;

inline void AppendNumber(Bytes& bytes, std::uint32_t number)
{
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

inline std::uint32_t Checksum(const std::uint8_t* bytes, std::size_t count)
{
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = 0; i < count; ++i)
    {
        sum ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1U ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~sum;
}

/// What begins every file.
inline Bytes Signature()
{
    return {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
}

inline void AppendChunk(Bytes& file, const std::string& name, const Bytes& data)
{
    AppendNumber(file, static_cast<std::uint32_t>(data.size()));
    const std::size_t start = file.size();
    file.insert(file.end(), name.begin(), name.end());
    file.insert(file.end(), data.begin(), data.end());
    AppendNumber(file, Checksum(file.data() + start, file.size() - start));
}

inline Bytes Header(std::uint32_t width, std::uint32_t height, std::uint8_t depth,
                    std::uint8_t colourType, std::uint8_t interlace = 0)
{
    Bytes data;
    AppendNumber(data, width);
    AppendNumber(data, height);
    data.insert(data.end(), {depth, colourType, 0, 0, interlace});
    return data;
}

/// @p rows, up to 65,535 bytes with a filter byte in front of each, deflated without packing.
inline Bytes Stored(const Bytes& rows)
{
    const auto low = static_cast<std::uint8_t>(rows.size());
    const auto high = static_cast<std::uint8_t>(rows.size() >> 8U);
    Bytes data = {0x78,
                  0x01,
                  0x01,
                  low,
                  high,
                  static_cast<std::uint8_t>(~low),
                  static_cast<std::uint8_t>(~high)};
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const std::uint8_t byte : rows)
    {
        data.push_back(byte);
        a = (a + byte) % 65521;
        b = (b + a) % 65521;
    }
    AppendNumber(data, b << 16U | a);
    return data;
}

/// A whole file; @p extra stands between header and pixels.
inline Bytes File(const Bytes& header, const Bytes& rows, const Bytes& extra = {})
{
    Bytes file = Signature();
    AppendChunk(file, "IHDR", header);
    file.insert(file.end(), extra.begin(), extra.end());
    AppendChunk(file, "IDAT", Stored(rows));
    AppendChunk(file, "IEND", {});
    return file;
}

inline Bytes Chunk(const std::string& name, const Bytes& data)
{
    Bytes chunk;
    AppendChunk(chunk, name, data);
    return chunk;
}

} // namespace pngparts
