#pragma once

#include "foundation/strings/MString.h"

constexpr int BlanksPerTab = 4;

/// Half of a pair, which stands for no character by itself.
constexpr bool IsSurrogate(char32_t code) noexcept
{
    return code >= 0xD800 && code <= 0xDFFF;
}

/// Those that have neither glyph nor width.
constexpr bool IsControl(char32_t code) noexcept
{
    return code < U' ' || (code >= 0x7F && code <= 0x9F);
}

/// The character at @p position, which lies inside, and moves on behind it. A surrogate without its
/// partner comes as it is.
inline char32_t ReadCodePoint(const MString& text, int& position) noexcept
{
    const char32_t first = text.CharAt(position++);
    const char32_t second = text.CharAt(position); // 0 at the end
    const bool isPair = first >= 0xD800 && first < 0xDC00 && second >= 0xDC00 && second < 0xE000;
    if (!isPair)
        return first;
    ++position;
    return 0x10000 + ((first - 0xD800) << 10U) + (second - 0xDC00);
}
