#pragma once

#include <atomic>
#include <type_traits>

/// A number that one thread may write while others read, each access whole and none ordering any
/// other: for values that count from the next look on. A copy of an object that holds one is no
/// such access. Trivially copyable, so it may stand in a union.
template <typename Number>
class MRelaxed
{
    static_assert(std::is_arithmetic_v<Number> && std::atomic_ref<Number>::is_always_lock_free);

public:
    MRelaxed() noexcept = default;
    constexpr MRelaxed(Number value) noexcept : number(value) {}

    operator Number() const noexcept
    {
        return std::atomic_ref<Number>(number).load(std::memory_order_relaxed);
    }
    MRelaxed& operator=(Number value) noexcept
    {
        std::atomic_ref<Number>(number).store(value, std::memory_order_relaxed);
        return *this;
    }

private:
    mutable Number number; ///< mutable for atomic_ref alone, which wants no const in C++20
};
