#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

/// To the nearest whole number, halves upwards.
inline double RoundHalfUp(double value) noexcept
{
    const double below = std::floor(value);
    return value - below >= 0.5 ? below + 1.0 : below;
}

/// Cut towards zero, and to the range of @p Whole; 0 for what is not a number.
template <std::integral Whole>
Whole Truncated(double value) noexcept
{
    using Range = std::numeric_limits<Whole>;
    // As a double the upper end of 64 bits lies beyond itself.
    if (value >= static_cast<double>(Range::max()))
        return Range::max();
    if (value <= static_cast<double>(Range::min()))
        return Range::min();
    return std::isnan(value) ? Whole{0} : static_cast<Whole>(value);
}

/// Cut to the range of @p To.
template <std::integral To>
To Saturated(std::int64_t value) noexcept
{
    using Range = std::numeric_limits<To>;
    if (std::in_range<To>(value))
        return static_cast<To>(value);
    return value < 0 ? Range::min() : Range::max();
}

/// The same; what is not a number stays so.
template <std::floating_point To>
To Saturated(double value) noexcept
{
    using Range = std::numeric_limits<To>;
    return static_cast<To>(std::clamp<double>(value, Range::lowest(), Range::max()));
}
