#include "dsp/kernels/Filters.h"

#include <algorithm>
#include <cstddef>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Filters.cpp"
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

constexpr int BlockLength = 128; ///< outputs that are worked out at once
constexpr int MaxDealtStride = 16;
constexpr int MaxRowTaps = 128; ///< taps that go along one row at once
constexpr int RowLength = BlockLength + MaxRowTaps;

/// The source dealt out to @p count rows like cards, so that what neighbouring outputs multiply by
/// the same tap stands side by side. Tap 0 goes along the first row, tap 1 along the second, and
/// after the last row comes the first again, one sample on.
struct Rows
{
    const float* first;
    int count; ///< a single one is the source itself
};

/// Adds to @p Vectors vectors of @p sums, of which the first stands @p at outputs into the block.
template <int Vectors, class D>
void AddProducts(D lanes, float* sums, int at, Rows rows, const float* taps, int tapCount)
{
    const auto width = static_cast<std::ptrdiff_t>(hn::Lanes(lanes));
    hn::VFromD<D> sum[Vectors];
    for (int v = 0; v < Vectors; ++v)
        sum[v] = hn::LoadU(lanes, sums + at + v * width);

    std::ptrdiff_t place = at;
    int row = 0;
    for (int j = 0; j < tapCount; ++j)
    {
        const auto tap = hn::Set(lanes, taps[j]);
        const float* samples = rows.first + place;
        for (int v = 0; v < Vectors; ++v)
            sum[v] = hn::Add(sum[v], hn::Mul(hn::LoadU(lanes, samples + v * width), tap));
        place += RowLength;
        if (++row == rows.count)
        {
            place += 1 - static_cast<std::ptrdiff_t>(RowLength) * rows.count;
            row = 0;
        }
    }

    for (int v = 0; v < Vectors; ++v)
        hn::StoreU(sum[v], lanes, sums + at + v * width);
}

/// Adds to @p n sums from @p at on, with fewer vectors and then shorter ones towards the end.
template <int Vectors, class D>
void AddAllProducts(D lanes, float* sums, int at, int n, Rows rows, const float* taps, int tapCount)
{
    const int reach = Vectors * static_cast<int>(hn::Lanes(lanes));
    for (; n - at >= reach; at += reach)
        AddProducts<Vectors>(lanes, sums, at, rows, taps, tapCount);
    if (at == n)
        return;
    if constexpr (Vectors > 1)
        AddAllProducts<Vectors / 2>(lanes, sums, at, n, rows, taps, tapCount);
    else if constexpr (hn::MaxLanes(lanes) > 1)
        AddAllProducts<1>(hn::CappedTag<float, hn::MaxLanes(lanes) / 2>(), sums, at, n, rows, taps,
                          tapCount);
}

/// Deals the @p n samples of @p src out to @p count rows.
void Deal(float* rows, const float* src, int n, int count)
{
    for (int row = 0; row < count; ++row)
        for (int i = row, place = row * RowLength; i < n; i += count, ++place)
            rows[place] = src[i];
}

/// At most BlockLength outputs with a stride of 2 to MaxDealtStride.
void AddDealt(float* sums, const float* src, const float* taps, int tapCount, int n, int stride)
{
    const hn::ScalableTag<float> lanes;
    HWY_ALIGN float rows[MaxDealtStride * RowLength];
    const int maxTaps = MaxRowTaps * stride;
    for (int done = 0; done < tapCount; done += std::min(tapCount - done, maxTaps))
    {
        const int count = std::min(tapCount - done, maxTaps);
        Deal(rows, src + done, (n - 1) * stride + count, stride);
        AddAllProducts<8>(lanes, sums, 0, n, {rows, stride}, taps + done, count);
    }
}

/// With such distances between the samples of neighbouring outputs dealing does not pay.
void AddFarApart(float* sums, const float* src, const float* taps, int tapCount, int n, int stride)
{
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < tapCount; ++j)
            sums[i] += src[static_cast<std::ptrdiff_t>(i) * stride + j] * taps[j];
}

void FIR(float* dst, const float* src, const float* taps, int tapCount, int n, int stride)
{
    if (dst == nullptr || src == nullptr || taps == nullptr || tapCount < 1 || stride < 1)
        return;

    const hn::ScalableTag<float> lanes;
    for (int i = 0; i < n;)
    {
        const int count = std::min(n - i, BlockLength);
        const float* block = src + static_cast<std::ptrdiff_t>(i) * stride;
        HWY_ALIGN float sums[BlockLength] = {};
        if (stride == 1)
            AddAllProducts<8>(lanes, sums, 0, count, {block, 1}, taps, tapCount);
        else if (stride <= MaxDealtStride)
            AddDealt(sums, block, taps, tapCount, count, stride);
        else
            AddFarApart(sums, block, taps, tapCount, count, stride);
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

DEFINE_KERNEL(void, FIR,
              (float* dst, const float* src, const float* taps, int tapCount, int n, int stride),
              (dst, src, taps, tapCount, n, stride))

} // namespace kernels
#endif
