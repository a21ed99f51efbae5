#pragma once

#include <cstdint>

/// a * b / c cut toward zero. For differences of 32-bit coordinates, whose product needs all 64
/// bits of a number without a sign; @p c is not 0 and the result fits.
constexpr std::int64_t Proportion(std::int64_t a, std::int64_t b, std::int64_t c) noexcept
{
    const auto magnitude = [](std::int64_t value)
    { return static_cast<std::uint64_t>(value < 0 ? -value : value); };
    const auto share = static_cast<std::int64_t>(magnitude(a) * magnitude(b) / magnitude(c));
    return ((a < 0) != (b < 0)) != (c < 0) ? -share : share;
}
