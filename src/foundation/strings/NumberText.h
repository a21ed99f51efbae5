#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/strings/MString.h"

/// Numbers as text, below MString: what it does with its own characters, others do with a part of
/// a text or a buffer, without a text in between.
namespace numbertext
{

/// 64 bits in radix 2.
constexpr std::size_t MostDigits = 64;
/// 309 digits, the sign, the point and up to 99 decimals.
constexpr std::size_t LongestDouble = 410;

/// Writes the upper-case digits of @p magnitude, at least one, to the end of @p buffer.
std::string_view WriteDigits(std::span<char, MostDigits> buffer, std::uint64_t magnitude,
                             int radix) noexcept;
/// Writes @p value with @p decimals (0 to 99), correctly rounded; returns their end.
char* WriteDouble(std::span<char, LongestDouble> buffer, double value, int decimals) noexcept;

/// See MString::ReadDouble; @p text is ASCII.
bool ReadDouble(std::string_view text, double& value) noexcept;

/// A character of either form of a text.
constexpr char16_t Wide(signed char character) noexcept
{
    return MString::Widen(character);
}
constexpr char16_t Wide(char16_t character) noexcept
{
    return character;
}

template <typename Character>
bool ReadDouble(std::span<const Character> text, double& value)
{
    const auto narrow = [](Character character)
    { return Wide(character) < 0x80 ? static_cast<char>(character) : '?'; };
    // Display texts fit the array; numbers of thousands of digits do not.
    std::array<char, 128> shortText;
    if (text.size() <= shortText.size())
    {
        std::ranges::transform(text, shortText.begin(), narrow);
        return ReadDouble({shortText.data(), text.size()}, value);
    }
    std::vector<char> longText(text.size());
    std::ranges::transform(text, longText.begin(), narrow);
    return ReadDouble({longText.data(), longText.size()}, value);
}

struct Integer
{
    std::int64_t value; ///< wrapped to 64 bits
    int used;           ///< characters, with the "-"
    bool isNegative;    ///< a "-" stands in front, whatever the value
    bool hasDigits;
};

/// Reads an optional "-" and digits.
template <typename Character>
Integer ReadInteger(std::span<const Character> text, int radix) noexcept
{
    const bool isNegative = !text.empty() && text.front() == '-';
    const std::size_t first = isNegative ? 1 : 0;
    std::size_t position = first;
    std::uint64_t magnitude = 0;
    for (; position < text.size(); ++position)
    {
        const unsigned character = Wide(text[position]);
        const unsigned lower = character | 0x20;
        const unsigned digit = character - '0' < 10 ? character - '0'
                               : lower - 'a' < 6    ? lower - 'a' + 10
                                                    : 16;
        if (digit >= static_cast<unsigned>(radix))
            break;
        magnitude = magnitude * static_cast<unsigned>(radix) + digit;
    }
    return {static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude),
            static_cast<int>(position), isNegative, position > first};
}

} // namespace numbertext
