#include "foundation/streams/MHexaStream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "foundation/threads/MException.h"

namespace
{

constexpr std::size_t PieceBytes = 64;
constexpr std::string_view Digits = "0123456789ABCDEF";

/// Beside 0 to 15, what a character can mean.
constexpr std::int16_t Other = -1;
constexpr std::int16_t WhiteSpace = -2;

constexpr auto Meanings = []
{
    std::array<std::int16_t, 256> table{};
    table.fill(Other);
    for (std::size_t blank = 0; blank <= ' '; ++blank)
        table[blank] = WhiteSpace;
    for (std::int16_t value = 0; value < 16; ++value)
    {
        const unsigned char digit =
            static_cast<unsigned char>(Digits[static_cast<unsigned>(value)]);
        table[digit] = value;
        if (value >= 10)
            table[digit + std::size_t{'a' - 'A'}] = value;
    }
    return table;
}();

int MeaningOf(std::byte character) noexcept
{
    return Meanings[std::to_integer<std::size_t>(character)];
}

constexpr std::byte Join(int high, int low) noexcept
{
    return static_cast<std::byte>(high << 4 | low);
}

/// Reads as many pairs as @p text begins with; returns their number.
std::size_t ReadPairs(std::span<const std::byte> text, std::byte* bytes) noexcept
{
    std::size_t count = 0;
    for (; 2 * count + 1 < text.size(); ++count)
    {
        const int high = MeaningOf(text[2 * count]);
        const int low = MeaningOf(text[2 * count + 1]);
        if ((high | low) < 0)
            break;
        bytes[count] = Join(high, low);
    }
    return count;
}

/// Writes the two digits of each byte from @p text on.
template <typename Character>
void WriteDigits(std::span<const std::byte> bytes, Character* text) noexcept
{
    for (const std::byte byte : bytes)
    {
        *text++ = static_cast<Character>(Digits[std::to_integer<unsigned>(byte) >> 4U]);
        *text++ = static_cast<Character>(Digits[std::to_integer<unsigned>(byte) & 15U]);
    }
}

[[noreturn]] void ThrowBadText()
{
    throw MException("Could not read required data from stream.", MException::BadData);
}

} // namespace

void MHexaStream::Write(std::span<const std::byte> bytes)
{
    std::array<char, 2 * PieceBytes> text;
    while (!bytes.empty())
    {
        const auto piece = bytes.first(std::min(bytes.size(), PieceBytes));
        WriteDigits(piece, text.data());
        target.Write(std::as_bytes(std::span(text).first(2 * piece.size())));
        bytes = bytes.subspan(piece.size());
    }
}

std::size_t MHexaStream::Read(std::span<std::byte> buffer)
{
    std::array<std::byte, 1024> text;
    std::size_t count = 0;
    int high = Other; // the first digit of the next byte, once it has been read
    while (count < buffer.size())
    {
        const std::size_t needed = 2 * (buffer.size() - count) - (high >= 0 ? 1 : 0);
        const std::size_t wanted = std::min(needed, text.size());
        const std::size_t got = target.Read({text.data(), wanted});
        for (auto rest = std::span<const std::byte>(text).first(got); !rest.empty();)
        {
            const std::size_t pairs = high >= 0 ? 0 : ReadPairs(rest, buffer.data() + count);
            count += pairs;
            rest = rest.subspan(2 * pairs);
            if (rest.empty())
                break;
            // What interrupts the pairs: white space, the end of the piece or a fault.
            const int meaning = MeaningOf(rest.front());
            rest = rest.subspan(1);
            if (meaning == Other)
                ThrowBadText();
            if (meaning == WhiteSpace)
                continue;
            if (high >= 0)
                buffer[count++] = Join(high, meaning);
            high = high >= 0 ? Other : meaning;
        }
        if (got < wanted)
        {
            if (high >= 0)
                ThrowBadText();
            break;
        }
    }
    return count;
}

MString MHexaStream::ToText(MStream& source)
{
    MString text;
    std::array<std::byte, 1024> bytes;
    std::array<char16_t, 2 * bytes.size()> digits;
    while (const std::size_t count = source.Read(bytes))
    {
        WriteDigits<char16_t>({bytes.data(), count}, digits.data());
        text.AppendChars({digits.data(), 2 * count});
    }
    return text;
}
