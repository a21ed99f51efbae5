#pragma once

#include <cstdint>

/// The form of a UTF-8 sequence: what the codec and the file names have in common.
namespace utf8
{

constexpr char16_t ByteOrderMark = 0xFEFF;

/// Values that are written as the one byte that their low eight bits hold: a private way to carry
/// bytes that are no text.
constexpr char32_t FirstEscape = 0x10FE01;
constexpr char32_t LastEscape = 0x10FEFF;

constexpr bool IsContinuation(unsigned byte) noexcept
{
    return (byte & 0xC0) == 0x80;
}

/// The number of continuation bytes that a lead byte asks for; -1 if it is none.
constexpr int FollowingBytes(unsigned lead) noexcept
{
    return lead < 0x80   ? 0
           : lead < 0xC0 ? -1
           : lead < 0xE0 ? 1
           : lead < 0xF0 ? 2
           : lead < 0xF8 ? 3
                         : -1;
}

/// The bits of the value that the lead byte itself holds.
constexpr std::uint32_t LeadBits(unsigned lead, int following) noexcept
{
    return following == 0 ? lead : lead & (0x3Fu >> following);
}

/// Whether @p value is a character and has no shorter sequence.
constexpr bool IsStandard(char32_t value, int following) noexcept
{
    const char32_t least = following == 1 ? 0x80 : following == 2 ? 0x800 : 0x10000;
    return following == 0 || (value >= least && value <= 0x10FFFF && (value & ~0x7FFu) != 0xD800);
}

constexpr bool IsHighSurrogate(char32_t unit) noexcept
{
    return (unit & ~0x3FFu) == 0xD800;
}

constexpr bool IsLowSurrogate(char32_t unit) noexcept
{
    return (unit & ~0x3FFu) == 0xDC00;
}

constexpr char32_t Join(char32_t high, char32_t low) noexcept
{
    return ((high - 0xD7C0) << 10) + (low & 0x3FF);
}

constexpr char16_t HighSurrogate(char32_t value) noexcept
{
    return static_cast<char16_t>(0xD7C0 + (value >> 10));
}

constexpr char16_t LowSurrogate(char32_t value) noexcept
{
    return static_cast<char16_t>(0xDC00 | (value & 0x3FF));
}

} // namespace utf8
