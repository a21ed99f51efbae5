#pragma once

#include <array>
#include <cstddef>

/// The names "stem0", "stem1" and so on from @p first up, as literals that texts can point at; the
/// numbers have one or two digits.
template <std::size_t Count, std::size_t StemSize>
consteval auto MakeNumberedNames(const char (&stem)[StemSize], std::size_t first = 0)
{
    static_assert(Count <= 90);
    std::array<std::array<char, StemSize + 2>, Count> names{};
    for (std::size_t i = 0; i < Count; ++i)
    {
        std::size_t length = 0;
        for (; length + 1 < StemSize; ++length)
            names[i][length] = stem[length];
        const std::size_t number = first + i;
        if (number >= 10)
            names[i][length++] = static_cast<char>('0' + number / 10);
        names[i][length] = static_cast<char>('0' + number % 10);
    }
    return names;
}
