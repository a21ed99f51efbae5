#include "dsp/kernels/Cycles.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Cycles.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "dsp/kernels/Arithmetic.h"
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

float LookUpOne(const float* source, float position, int mask)
{
    const float p = position > 0.0f ? std::min(position, static_cast<float>(mask + 1)) : 0.0f;
    const int index = static_cast<int>(p);
    const float f = p - static_cast<float>(index);
    return source[index] * (1.0f - f) + source[(index + 1) & mask] * f;
}

#if HWY_TARGET == HWY_SCALAR

// No vectors here: all is left to the caller.

int ReadVectors(float*, const float*, std::uint64_t, std::uint64_t, int)
{
    return 0;
}

int LookUpVectors(float*, const float*, const float*, int, int)
{
    return 0;
}

#else

/// The two samples at each of @p pairAt(first) and its successors, side by side. One load of 64
/// bits for each beats the processor's gather instructions.
template <class D, class PairAt>
hn::VFromD<D> LoadPairs(D lanes, PairAt pairAt, int first)
{
    constexpr int pairs = static_cast<int>(hn::MaxLanes(lanes) / 2);
    if constexpr (pairs == 1)
        return hn::LoadU(lanes, pairAt(first));
    else
    {
        const hn::Half<D> half;
        return hn::Combine(lanes, LoadPairs(half, pairAt, first + pairs / 2),
                           LoadPairs(half, pairAt, first));
    }
}

/// The first and the second samples of as many pairs as there are lanes.
template <class D>
struct ColumnsT
{
    template <class PairAt>
    ColumnsT(D lanes, PairAt pairAt)
    {
        constexpr int pairs = static_cast<int>(hn::MaxLanes(lanes) / 2);
        const auto low = LoadPairs(lanes, pairAt, 0);
        const auto high = LoadPairs(lanes, pairAt, pairs);
        left = hn::ConcatEven(lanes, high, low);
        right = hn::ConcatOdd(lanes, high, low);
    }

    hn::VFromD<D> left;
    hn::VFromD<D> right;
};

/// left * (1 - f) + right * f
template <class D, class V>
V Blend(D lanes, V left, V right, V f)
{
    return hn::Add(hn::Mul(left, hn::Sub(hn::Set(lanes, 1.0f), f)), hn::Mul(right, f));
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

        // Where the pairs stand is cheaper to find in integer registers than in the vectors.
        const ColumnsT pairs(lanes, [=](int lane) HWY_ATTR
                             { return PairAt(table, phase + static_cast<unsigned>(lane) * step); });
        hn::StoreU(Blend(lanes, pairs.left, pairs.right, f), lanes, dst + i);

        low = hn::Add(low, growth);
        high = hn::Add(high, growth);
        phase += width * step;
    }
    return i;
}

/// Looks up as many whole vectors as fit.
/// @return their samples
int LookUpVectors(float* dst, const float* source, const float* position, int n, int mask)
{
    const hn::ScalableTag<float> lanes;
    const hn::RebindToSigned<decltype(lanes)> integers;
    constexpr int width = static_cast<int>(hn::MaxLanes(lanes));
    const auto end = hn::Set(lanes, static_cast<float>(mask + 1));
    const auto last = hn::Set(integers, mask);

    int i = 0;
    for (; n - i >= width; i += width)
    {
        const auto wanted = hn::LoadU(lanes, position + i);
        const auto p = hn::IfThenElseZero(hn::Gt(wanted, hn::Zero(lanes)), hn::Min(wanted, end));
        const auto index = hn::ConvertTo(integers, p);
        const auto f = hn::Sub(p, hn::ConvertTo(lanes, index));

        HWY_ALIGN std::int32_t at[width];
        hn::Store(hn::Min(index, last), integers, at);
        ColumnsT pairs(lanes, [source, &at](int lane) HWY_ATTR { return source + at[lane]; });

        // The last pair of the cycle ends in its first sample; the one behind is no pair at all.
        const auto isLast = hn::RebindMask(lanes, hn::Eq(index, last));
        const auto isBehind = hn::RebindMask(lanes, hn::Gt(index, last));
        pairs.left = hn::IfThenElse(isBehind, hn::Set(lanes, source[mask + 1]), pairs.left);
        pairs.right = hn::IfThenElse(isLast, hn::Set(lanes, source[0]), pairs.right);
        pairs.right = hn::IfThenElse(isBehind, hn::Set(lanes, source[1 & mask]), pairs.right);
        hn::StoreU(Blend(lanes, pairs.left, pairs.right, f), lanes, dst + i);
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

void Lookup(float* dst, const float* source, const float* position, int n, int mask)
{
    if (dst == nullptr || source == nullptr || position == nullptr || mask < 0 ||
        mask > MaxLookupMask)
        return;

    for (int i = LookUpVectors(dst, source, position, n, mask); i < n; ++i)
        dst[i] = LookUpOne(source, position[i], mask);
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
DEFINE_KERNEL(void, Lookup,
              (float* dst, const float* source, const float* position, int n, int mask),
              (dst, source, position, n, mask))

// No vectors here: every position waits for the one before.
void Resample(float* dst, int n, const float* src, int k) noexcept
{
    TRACE_NULL_POINTERS(Resample, (dst, src));
    if (dst == nullptr || src == nullptr || k <= 0)
        return;
    if (k == n)
        return Copy(dst, src, n);
    if (n <= 1 || k == 1)
        return Fill(dst, src[0], n);

    const double step = (k - 1.0) / (n - 1.0);
    double x = 0.0;
    dst[0] = src[0];
    for (int i = 1; i < n - 1; ++i)
    {
        x += step;
        const int index =
            std::min(static_cast<int>(x), k - 2); // the sum of many may come out above
        const auto f = static_cast<float>(x - index);
        dst[i] = src[index] * (1.0f - f) + src[index + 1] * f;
    }
    dst[n - 1] = src[k - 1];
}

} // namespace kernels
#endif
