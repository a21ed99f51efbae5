#pragma once

#include <cstdint>

/// The random generator of the process: one 32-bit state r, r := r * 214013 + 2531011, of which a
/// draw gives bits 16 to 30. Seeded from the clock at start. Lock-free, any thread; threads that
/// draw at the same time share one sequence.
class MRandom
{
public:
    static constexpr std::int32_t MaxDraw = 0x7FFF;

    /// 0 to MaxDraw.
    static std::int32_t Draw() noexcept;
    /// 0.0 to 1.0, both inclusive.
    static double DrawUniform() noexcept;
    static bool DrawBool() noexcept;

    /// Makes the sequence repeatable, for tests.
    static void SetState(std::uint32_t newState) noexcept;

    /// One step of the generator, for sequences with a state of their own.
    static constexpr std::uint32_t Step(std::uint32_t state) noexcept
    {
        return state * 214013u + 2531011u;
    }
    static constexpr std::int32_t DrawFrom(std::uint32_t state) noexcept
    {
        return static_cast<std::int32_t>(state >> 16 & 0x7FFFu);
    }
};
