#include "dsp/kernels/Polyphase.h"

#include <algorithm>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Polyphase.cpp"
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

using Lanes = hn::ScalableTag<float>;
using Vector = hn::VFromD<Lanes>;

constexpr std::ptrdiff_t Width{hn::MaxLanes(Lanes())};
constexpr std::ptrdiff_t RunDistance = PolyphaseFilter::RunDistance;
constexpr int BlockLength = 256; ///< samples at the lower rate that are worked out at once
constexpr std::ptrdiff_t RowLength = BlockLength + PolyphaseFilter::MaxTapCount;

/// Vectors of one phase that are summed at once: as many as the registers hold.
constexpr int VectorsFor(int phases)
{
    return (phases == 1 ? 4 : 2) * (HWY_MAX_BYTES >= 64 ? 2 : 1);
}

/// What the inner loops need of a filter, from one of its phases on.
struct Taps
{
    const float* first;
    std::ptrdiff_t count;
};

Taps TapsFrom(const PolyphaseFilter& filter, int phase)
{
    return {filter.taps + std::ptrdiff_t{phase} * filter.tapCount, filter.tapCount};
}

/// Adds the products with @p Runs taps from each of @p from to @p to on. A vector of samples is
/// loaded once for all phases, and for all runs that meet it again: loads across cache lines cost
/// more than the arithmetic.
template <int Runs, int Phases, int Vectors>
HWY_INLINE void AddRuns(Vector (&sums)[Phases][Vectors], const float* samples, Taps taps,
                        std::ptrdiff_t from, std::ptrdiff_t to)
{
    const Lanes lanes;
    constexpr std::ptrdiff_t Shift = RunDistance / Width;
    constexpr std::ptrdiff_t WindowLength = Vectors + (Runs - 1) * Shift;
    for (std::ptrdiff_t j = from; j < to; ++j)
    {
        Vector window[WindowLength];
        HWY_UNROLL(32)
        for (int w = 0; w < WindowLength; ++w)
            window[w] = hn::LoadU(lanes, samples + j + w * Width);
        HWY_UNROLL(4)
        for (int run = 0; run < Runs; ++run)
        {
            HWY_UNROLL(4)
            for (int p = 0; p < Phases; ++p)
            {
                const auto tap = hn::Set(lanes, taps.first[p * taps.count + j + run * RunDistance]);
                HWY_UNROLL(8)
                for (int v = 0; v < Vectors; ++v)
                    sums[p][v] = hn::Add(sums[p][v], hn::Mul(window[v + run * Shift], tap));
            }
        }
    }
}

/// Adds the products with all taps of @p Phases phases.
template <int Phases, int Vectors>
HWY_INLINE void AddAll(Vector (&sums)[Phases][Vectors], const float* samples, Taps taps)
{
    if constexpr (Vectors <= RunDistance / Width) // no vector is met again
    {
        for (std::ptrdiff_t first = 0; first < RunDistance; ++first)
            for (std::ptrdiff_t j = first; j < taps.count; j += RunDistance)
                AddRuns<1>(sums, samples, taps, j, j + 1);
        return;
    }
    const std::ptrdiff_t rest = taps.count % RunDistance; // these have a run more
    if (taps.count < RunDistance)
        AddRuns<1>(sums, samples, taps, 0, rest);
    else if (taps.count < 2 * RunDistance)
    {
        AddRuns<2>(sums, samples, taps, 0, rest);
        AddRuns<1>(sums, samples, taps, rest, RunDistance);
    }
    else if (taps.count < 3 * RunDistance)
    {
        AddRuns<3>(sums, samples, taps, 0, rest);
        AddRuns<2>(sums, samples, taps, rest, RunDistance);
    }
    else
    {
        const std::ptrdiff_t last = taps.count - 3 * RunDistance;
        AddRuns<4>(sums, samples, taps, 0, last);
        AddRuns<3>(sums, samples, taps, last, RunDistance);
    }
}

/// Makes rows of columns: dst[i * dstStep + k] = src[k * srcStep + i] for i and k below 4.
HWY_INLINE void Transpose(float* dst, std::ptrdiff_t dstStep, const float* src,
                          std::ptrdiff_t srcStep)
{
#if HWY_TARGET == HWY_SCALAR
    for (std::ptrdiff_t i = 0; i < 4; ++i)
        for (std::ptrdiff_t k = 0; k < 4; ++k)
            dst[i * dstStep + k] = src[k * srcStep + i];
#else
    const hn::FixedTag<float, 4> four;
    const hn::FixedTag<double, 2> pairs;
    const auto a = hn::LoadU(four, src);
    const auto b = hn::LoadU(four, src + srcStep);
    const auto c = hn::LoadU(four, src + srcStep * 2);
    const auto d = hn::LoadU(four, src + srcStep * 3);
    const auto ab = hn::BitCast(pairs, hn::InterleaveLower(four, a, b));
    const auto cd = hn::BitCast(pairs, hn::InterleaveLower(four, c, d));
    const auto abUpper = hn::BitCast(pairs, hn::InterleaveUpper(four, a, b));
    const auto cdUpper = hn::BitCast(pairs, hn::InterleaveUpper(four, c, d));
    const auto store = [&](std::ptrdiff_t i, auto row) HWY_ATTR
    { hn::StoreU(hn::BitCast(four, row), four, dst + i * dstStep); };
    store(0, hn::InterleaveLower(pairs, ab, cd));
    store(1, hn::InterleaveUpper(pairs, ab, cd));
    store(2, hn::InterleaveLower(pairs, abUpper, cdUpper));
    store(3, hn::InterleaveUpper(pairs, abUpper, cdUpper));
#endif
}

/// dst[i * phases + p] = rows[p * RowLength + i] for @p n places i.
void Interleave(float* dst, const float* rows, std::ptrdiff_t phases, int n)
{
    const Lanes lanes;
    std::ptrdiff_t done = 0;
    if (phases == 2)
        for (; done + Width <= n; done += Width)
            hn::StoreInterleaved2(hn::LoadU(lanes, rows + done),
                                  hn::LoadU(lanes, rows + RowLength + done), lanes, dst + done * 2);
    else if (phases == 3)
        for (; done + Width <= n; done += Width)
            hn::StoreInterleaved3(
                hn::LoadU(lanes, rows + done), hn::LoadU(lanes, rows + RowLength + done),
                hn::LoadU(lanes, rows + 2 * RowLength + done), lanes, dst + done * 3);
    else if (phases >= 4)
        for (; done + 4 <= n; done += 4)
            for (std::ptrdiff_t p = 0; p < phases; p += 4)
            {
                const std::ptrdiff_t first =
                    std::min(p, phases - 4); // some rows twice, if they are no fours
                Transpose(dst + done * phases + first, phases, rows + first * RowLength + done,
                          RowLength);
            }
    for (; done < n; ++done)
        for (std::ptrdiff_t p = 0; p < phases; ++p)
            dst[done * phases + p] = rows[p * RowLength + done];
}

/// rows[p * RowLength + i] = src[i * phases + p] for @p n places i.
void Deal(float* rows, const float* src, std::ptrdiff_t phases, int n)
{
    const Lanes lanes;
    std::ptrdiff_t done = 0;
    if (phases == 2)
        for (; done + Width <= n; done += Width)
        {
            Vector first;
            Vector second;
            hn::LoadInterleaved2(lanes, src + done * 2, first, second);
            hn::StoreU(first, lanes, rows + done);
            hn::StoreU(second, lanes, rows + RowLength + done);
        }
    else if (phases == 3)
        for (; done + Width <= n; done += Width)
        {
            Vector first;
            Vector second;
            Vector third;
            hn::LoadInterleaved3(lanes, src + done * 3, first, second, third);
            hn::StoreU(first, lanes, rows + done);
            hn::StoreU(second, lanes, rows + RowLength + done);
            hn::StoreU(third, lanes, rows + 2 * RowLength + done);
        }
    else if (phases >= 4)
        for (; done + 4 <= n; done += 4)
            for (std::ptrdiff_t p = 0; p < phases; p += 4)
            {
                const std::ptrdiff_t first = std::min(p, phases - 4);
                Transpose(rows + first * RowLength + done, RowLength, src + done * phases + first,
                          phases);
            }
    for (; done < n; ++done)
        for (std::ptrdiff_t p = 0; p < phases; ++p)
            rows[p * RowLength + done] = src[done * phases + p];
}

/// How many samples of a row are read for @p n outputs, as the last vector is a whole one.
std::ptrdiff_t ReadLength(std::ptrdiff_t n, int tapCount)
{
    return (n + Width - 1) / Width * Width + tapCount - 1;
}

/// The sums of @p Phases phases, each into its row.
template <int Phases, int Vectors>
HWY_INLINE void StretchVectors(float* rows, const float* samples, Taps taps)
{
    const Lanes lanes;
    Vector sums[Phases][Vectors];
    HWY_UNROLL(4)
    for (int p = 0; p < Phases; ++p)
    {
        HWY_UNROLL(8)
        for (int v = 0; v < Vectors; ++v)
            sums[p][v] = hn::Zero(lanes);
    }
    AddAll(sums, samples, taps);
    HWY_UNROLL(4)
    for (int p = 0; p < Phases; ++p)
    {
        HWY_UNROLL(8)
        for (int v = 0; v < Vectors; ++v)
            hn::StoreU(sums[p][v], lanes, rows + p * RowLength + v * Width);
    }
}

template <int Phases>
void StretchPhases(float* rows, const float* samples, Taps taps, int n)
{
    constexpr int Vectors = VectorsFor(Phases);
    std::ptrdiff_t at = 0;
    for (; at + (Vectors - 1) * Width < n; at += Vectors * Width)
        StretchVectors<Phases, Vectors>(rows + at, samples + at, taps);
    for (; at + (Vectors / 2 - 1) * Width < n; at += Vectors / 2 * Width)
        StretchVectors<Phases, Vectors / 2>(rows + at, samples + at, taps);
    for (; at < n; at += Width)
        StretchVectors<Phases, 1>(rows + at, samples + at, taps);
}

/// One row of samples to a row for each phase.
void Stretch(float* rows, const float* samples, const PolyphaseFilter& filter, int n)
{
    int p = 0;
    if (filter.isPassing)
        std::copy_n(samples + filter.tapCount / 2 - 1, n, rows + RowLength * p++);
    for (int count = 0; p < filter.phases; p += count)
    {
        count = std::min(filter.phases - p, 4);
        const Taps taps = TapsFrom(filter, p);
        float* phases = rows + p * RowLength;
        if (count == 4)
            StretchPhases<4>(phases, samples, taps, n);
        else if (count == 3)
            StretchPhases<3>(phases, samples, taps, n);
        else if (count == 2)
            StretchPhases<2>(phases, samples, taps, n);
        else
            StretchPhases<1>(phases, samples, taps, n);
    }
}

template <int Vectors>
HWY_INLINE void SqueezeVectors(float* dst, const float* rows, const PolyphaseFilter& filter)
{
    const Lanes lanes;
    Vector sums[1][Vectors];
    // The last sample of a frame belongs to phase 0.
    const float* row = rows + (filter.phases - 1) * RowLength;
    const float* passing = row + filter.tapCount / 2 - 1;
    HWY_UNROLL(8)
    for (int v = 0; v < Vectors; ++v)
        sums[0][v] = filter.isPassing ? hn::LoadU(lanes, passing + v * Width) : hn::Zero(lanes);
    for (int p = 0; p < filter.phases; ++p, row -= RowLength)
        if (p > 0 || !filter.isPassing)
            AddAll(sums, row, TapsFrom(filter, p));
    HWY_UNROLL(8)
    for (int v = 0; v < Vectors; ++v)
        hn::StoreU(sums[0][v], lanes, dst + v * Width);
}

/// A row of samples for each phase to one row.
void Squeeze(float* dst, const float* rows, const PolyphaseFilter& filter, int n)
{
    constexpr int Vectors = VectorsFor(1);
    std::ptrdiff_t at = 0;
    for (; at + (Vectors - 1) * Width < n; at += Vectors * Width)
        SqueezeVectors<Vectors>(dst + at, rows + at, filter);
    for (; at + (Vectors / 2 - 1) * Width < n; at += Vectors / 2 * Width)
        SqueezeVectors<Vectors / 2>(dst + at, rows + at, filter);
    for (; at < n; at += Width)
        SqueezeVectors<1>(dst + at, rows + at, filter);
}

bool IsValid(const PolyphaseFilter& filter)
{
    return filter.taps != nullptr && filter.tapCount >= 1 &&
           filter.tapCount <= PolyphaseFilter::MaxTapCount && filter.phases >= 1 &&
           filter.phases <= PolyphaseFilter::MaxPhases;
}

void StretchFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n)
{
    if (dst == nullptr || src == nullptr || !IsValid(filter))
        return;

    HWY_ALIGN float samples[RowLength];
    HWY_ALIGN float rows[PolyphaseFilter::MaxPhases * RowLength];
    for (int i = 0; i < n;)
    {
        const int count = std::min(n - i, BlockLength);
        const int needed = count + filter.tapCount - 1;
        float* end = std::copy_n(src + i, needed, samples);
        std::fill(end, samples + ReadLength(count, filter.tapCount), 0.0f);
        Stretch(rows, samples, filter, count);
        Interleave(dst + static_cast<std::ptrdiff_t>(i) * filter.phases, rows, filter.phases,
                   count);
        i += count;
    }
}

void SqueezeFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n)
{
    if (dst == nullptr || src == nullptr || !IsValid(filter))
        return;

    HWY_ALIGN float rows[PolyphaseFilter::MaxPhases * RowLength];
    HWY_ALIGN float sums[BlockLength];
    for (int i = 0; i < n;)
    {
        const int count = std::min(n - i, BlockLength);
        const int needed = count + filter.tapCount - 1;
        Deal(rows, src + static_cast<std::ptrdiff_t>(i) * filter.phases, filter.phases, needed);
        for (int p = 0; p < filter.phases; ++p)
            std::fill(rows + p * RowLength + needed,
                      rows + p * RowLength + ReadLength(count, filter.tapCount), 0.0f);
        Squeeze(sums, rows, filter, count);
        std::copy_n(sums, count, dst + i);
        i += count;
    }
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(void, StretchFIR,
              (float* dst, const float* src, const PolyphaseFilter& filter, int n),
              (dst, src, filter, n))
DEFINE_KERNEL(void, SqueezeFIR,
              (float* dst, const float* src, const PolyphaseFilter& filter, int n),
              (dst, src, filter, n))

} // namespace kernels
#endif
