#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/streams/MStream.h"

/// The characters of @p text as one text of the C++ library, which is compared exactly.
inline std::u16string Units(const MString& text)
{
    std::u16string units;
    for (int i = 0; i < text.Length(); ++i)
        units += text.CharAt(i);
    return units;
}

inline std::span<const std::byte> Bytes(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

inline std::string Chars(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Reads what it begins with, writes behind it.
class BytesStream : public MStream
{
public:
    explicit BytesStream(std::string initialBytes = {}) : bytes(std::move(initialBytes)) {}

    std::size_t Read(std::span<std::byte> buffer) override
    {
        const std::span<const std::byte> piece =
            Bytes(bytes).subspan(position, std::min(buffer.size(), bytes.size() - position));
        std::ranges::copy(piece, buffer.begin());
        position += piece.size();
        return piece.size();
    }
    void Write(std::span<const std::byte> piece) override { bytes += Chars(piece); }

    std::string bytes;
    std::size_t position = 0;
};
