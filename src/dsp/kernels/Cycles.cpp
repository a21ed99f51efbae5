#include "dsp/kernels/Cycles.h"

#include <cmath>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Cycles.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "dsp/kernels/DefineKernel.h"

HWY_BEFORE_NAMESPACE();
namespace kernels
{
namespace HWY_NAMESPACE
{
namespace
{
namespace hn = hwy::HWY_NAMESPACE;

// A phase is an integer, 2^64 for one cycle: whole cycles drop out, and no phase leaves the table.
// The upper half of it, rounded, says where to read: 13 bits of index, 19 between two samples.
constexpr int PlaceBits = 19;
constexpr std::uint32_t PlaceMask = (1U << PlaceBits) - 1;
constexpr float PlaceUnit = 1.0f / (1U << PlaceBits);
constexpr std::uint64_t HalfPlace = 1ULL << 31; ///< so that cutting the lower half rounds
static_assert(CycleLength == 1 << (32 - PlaceBits));

/// The part of @p cycles behind the point.
std::uint64_t ToPhase(double cycles)
{
    const double part = cycles - std::floor(cycles);
    // Of a tiny negative number the part is 1; of an infinite one it is not a number.
    if (!(part < 1.0))
        return 0;
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(part * 0x1p63)) << 1;
}

/// Where the sample of @p phase and its successor stand.
const float* PairAt(const float* table, std::uint64_t phase)
{
    return table + (phase >> (32 + PlaceBits));
}

float ReadOne(const float* table, std::uint64_t phase)
{
    const auto place = static_cast<std::uint32_t>(phase >> 32) & PlaceMask;
    const float f = static_cast<float>(place) * PlaceUnit;
    const float* pair = PairAt(table, phase);
    return pair[0] * (1.0f - f) + pair[1] * f;
}

#if HWY_TARGET == HWY_SCALAR

/// No vectors here: all is left to the caller.
int ReadVectors(float*, const float*, std::uint64_t, std::uint64_t, int)
{
    return 0;
}

#else

/// The pairs at @p phase and its successors, side by side. One load of 64 bits for each beats the
/// processor's gather instructions, and finding it is cheaper in integer registers.
template <class D>
hn::VFromD<D> LoadPairs(D lanes, const float* table, std::uint64_t phase, std::uint64_t step)
{
    constexpr std::size_t pairs = hn::MaxLanes(lanes) / 2;
    if constexpr (pairs == 1)
        return hn::LoadU(lanes, PairAt(table, phase));
    else
    {
        const hn::Half<D> half;
        return hn::Combine(lanes, LoadPairs(half, table, phase + pairs / 2 * step, step),
                           LoadPairs(half, table, phase, step));
    }
}

/// Reads as many whole vectors as fit.
/// @return their samples
int ReadVectors(float* dst, const float* table, std::uint64_t phase, std::uint64_t step, int n)
{
    const hn::ScalableTag<float> lanes;
    const hn::RebindToUnsigned<decltype(lanes)> bits;
    const hn::RebindToSigned<decltype(lanes)> integers;
    const hn::Repartition<std::uint64_t, decltype(lanes)> phases;
    constexpr int width = static_cast<int>(hn::MaxLanes(lanes));

    HWY_ALIGN std::uint64_t first[width];
    for (int i = 0; i < width; ++i)
        first[i] = phase + static_cast<std::uint64_t>(i) * step;
    auto low = hn::Load(phases, first);
    auto high = hn::Load(phases, first + width / 2);
    const auto growth = hn::Set(phases, width * step);

    int i = 0;
    for (; n - i >= width; i += width)
    {
        const auto cut = hn::ConcatOdd(bits, hn::BitCast(bits, high), hn::BitCast(bits, low));
        const auto place = hn::BitCast(integers, hn::And(cut, hn::Set(bits, PlaceMask)));
        const auto f = hn::Mul(hn::ConvertTo(lanes, place), hn::Set(lanes, PlaceUnit));

        const auto lowPairs = LoadPairs(lanes, table, phase, step);
        const auto highPairs = LoadPairs(lanes, table, phase + width / 2 * step, step);
        const auto left = hn::ConcatEven(lanes, highPairs, lowPairs);
        const auto right = hn::ConcatOdd(lanes, highPairs, lowPairs);
        hn::StoreU(hn::Add(hn::Mul(left, hn::Sub(hn::Set(lanes, 1.0f), f)), hn::Mul(right, f)),
                   lanes, dst + i);

        low = hn::Add(low, growth);
        high = hn::Add(high, growth);
        phase += width * step;
    }
    return i;
}

#endif

double ReadCycle(float* dst, const float* table, double phase, double step, int n)
{
    if (dst == nullptr || table == nullptr || n <= 0)
        return phase;

    const std::uint64_t start = ToPhase(phase) + HalfPlace;
    const std::uint64_t growth = ToPhase(step);
    for (int i = ReadVectors(dst, table, start, growth, n); i < n; ++i)
        dst[i] = ReadOne(table, start + static_cast<std::uint64_t>(i) * growth);
    return phase + n * step;
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(double, ReadCycle, (float* dst, const float* table, double phase, double step, int n),
              (dst, table, phase, step, n))

} // namespace kernels
#endif
