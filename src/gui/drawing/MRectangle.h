#pragma once

#include <algorithm>
#include <cstdint>

/// Pixels from left to right and from top to bottom, both ends included. Empty if an end lies
/// before its beginning.
struct MRectangle
{
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = -1;
    std::int32_t bottom = -1;

    constexpr bool IsEmpty() const noexcept { return right < left || bottom < top; }
    constexpr bool Contains(std::int64_t x, std::int64_t y) const noexcept
    {
        return x >= left && x <= right && y >= top && y <= bottom;
    }
    /// Of a rectangle inside a bitmap, where neither overflows.
    constexpr int GetWidth() const noexcept { return right - left + 1; }
    constexpr int GetHeight() const noexcept { return bottom - top + 1; }

    /// What lies in both; empty if one of them is.
    constexpr MRectangle Intersect(const MRectangle& other) const noexcept
    {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }

    constexpr bool operator==(const MRectangle&) const noexcept = default;
};
