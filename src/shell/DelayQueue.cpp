#include "shell/DelayQueue.h"

#include <algorithm>
#include <array>

#include "dsp/kernels/Arithmetic.h"

namespace
{

/// A missing @p input is silence, and a missing @p output takes nothing.
void Copy(float* output, const float* input, int n) noexcept
{
    if (output == nullptr)
        return;
    if (input == nullptr)
        kernels::Zero(output, n);
    else
        kernels::Copy(output, input, n);
}

float* Advance(float* block, int n) noexcept
{
    return block == nullptr ? nullptr : block + n;
}

const float* Advance(const float* block, int n) noexcept
{
    return block == nullptr ? nullptr : block + n;
}

} // namespace

void DelayQueue::SetLength(int samples)
{
    const auto length = static_cast<std::size_t>(std::max(samples, 0));
    if (length == ring.size())
        return;
    std::vector<float> next(length);
    std::rotate(ring.begin(), ring.begin() + static_cast<std::ptrdiff_t>(oldest), ring.end());
    const std::size_t kept = std::min(length, ring.size());
    std::copy(ring.end() - static_cast<std::ptrdiff_t>(kept), ring.end(),
              next.end() - static_cast<std::ptrdiff_t>(kept));
    ring.swap(next);
    oldest = 0;
}

void DelayQueue::Process(float* output, const float* input, int n) noexcept
{
    if (ring.empty())
    {
        Copy(output, input, n);
        return;
    }

    std::array<float, 256> incoming; // what is read may be about to be overwritten
    while (n > 0)
    {
        const auto count = static_cast<int>(
            std::min({static_cast<std::size_t>(n), ring.size() - oldest, incoming.size()}));
        Copy(incoming.data(), input, count);
        Copy(output, ring.data() + oldest, count);
        Copy(ring.data() + oldest, incoming.data(), count);

        oldest += static_cast<std::size_t>(count);
        if (oldest == ring.size())
            oldest = 0;
        input = Advance(input, count);
        output = Advance(output, count);
        n -= count;
    }
}

void DelayQueue::Clear() noexcept
{
    std::ranges::fill(ring, 0.0f);
}
