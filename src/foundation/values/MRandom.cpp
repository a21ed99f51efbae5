#include "foundation/values/MRandom.h"

#include <atomic>
#include <chrono>

namespace
{

std::atomic<std::uint32_t> globalState =
    static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch().count());

std::uint32_t Advance() noexcept
{
    // Relaxed: the state guards nothing else.
    std::uint32_t state = globalState.load(std::memory_order_relaxed);
    while (
        !globalState.compare_exchange_weak(state, MRandom::Step(state), std::memory_order_relaxed))
    {
    }
    return MRandom::Step(state);
}

} // namespace

std::int32_t MRandom::Draw() noexcept
{
    return DrawFrom(Advance());
}

double MRandom::DrawUniform() noexcept
{
    return Draw() * 3.051850947599719e-05;
}

bool MRandom::DrawBool() noexcept
{
    return (Advance() >> 16 & 1u) != 0;
}

void MRandom::SetState(std::uint32_t newState) noexcept
{
    globalState.store(newState, std::memory_order_relaxed);
}
