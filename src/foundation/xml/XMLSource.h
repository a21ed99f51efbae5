#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/strings/MEncoding.h"

class MStream;

/// The characters of an XML text, decoded piece by piece as the parser asks for them.
/// A view that it hands out is good until the next call that may read on.
class XMLSource
{
public:
    /// A byte-order mark of UTF-16 at the start overrules @p initialCodec. The stream is the
    /// caller's and has to outlive this.
    XMLSource(MStream& readStream, const MEncoding::Codec& initialCodec);

    /// The characters at hand, at least one unless the source has ended.
    std::u16string_view Peek()
    {
        if (position == end)
            Fill();
        return {characters.data() + position, end - position};
    }
    /// The next character; NoMore at the end.
    std::int32_t PeekCharacter()
    {
        const std::u16string_view next = Peek();
        return next.empty() ? NoMore : next.front();
    }
    /// @p count is at most the length of the last Peek.
    void Skip(std::size_t count) noexcept { position += count; }
    /// Skips white space and returns the character behind it, or NoMore.
    std::int32_t SkipBlanks()
    {
        while (position < end && characters[position] <= u' ')
            ++position;
        return position < end ? characters[position] : SkipBlanksSlowly();
    }

    /// All characters up to the place that @p findEnd tells, or to the end of the source. Stops
    /// soon behind @p limit characters. @p findEnd gets the characters at hand and returns the
    /// place in them, or their number if it lies farther on.
    template <typename FindEnd>
    std::u16string_view ReadUntil(FindEnd findEnd, std::size_t limit);

    /// Decodes what lies behind the present character by @p newCodec.
    void SwitchCodec(const MEncoding::Codec& newCodec);

    static constexpr std::int32_t NoMore = -1;

private:
    static constexpr std::size_t BufferBytes = 1024;

    std::int32_t SkipBlanksSlowly();
    /// Decodes the next bytes; leaves no characters at the end of the stream.
    void Fill();
    /// Decodes the bytes from firstByte on.
    void Decode();

    MStream& stream;
    const MEncoding::Codec* codec;
    MCodecState state;      ///< behind the characters at hand
    MCodecState firstState; ///< before them
    std::array<std::byte, BufferBytes> bytes;
    std::size_t byteCount = 0;
    std::size_t firstByte = 0; ///< of the characters at hand
    /// No codec makes more characters than it has bytes, but for a pair that straddles the border.
    std::array<char16_t, BufferBytes + 2> characters;
    std::size_t position = 0;
    std::size_t end = 0;
    std::u16string collected; ///< what ReadUntil found on both sides of a border
};

template <typename FindEnd>
std::u16string_view XMLSource::ReadUntil(FindEnd findEnd, std::size_t limit)
{
    const std::u16string_view first = Peek();
    std::size_t count = findEnd(first);
    Skip(count);
    if (count < first.size())
        return first.substr(0, count);

    collected.assign(first);
    while (collected.size() <= limit)
    {
        const std::u16string_view next = Peek();
        count = findEnd(next);
        collected.append(next.substr(0, count));
        Skip(count);
        if (count < next.size() || next.empty())
            break;
    }
    return collected;
}
