#include "dsp/kernels/Pixels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Pixels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "dsp/kernels/DefineKernel.h"
#include "dsp/kernels/Reference.h"

HWY_BEFORE_NAMESPACE();
namespace kernels
{
namespace HWY_NAMESPACE
{
namespace
{

#if HWY_TARGET == HWY_SCALAR

// No vectors here: all is left to the plain loops.

void BlendPixels(std::uint32_t* dst, std::uint32_t v, int alpha, int n)
{
    reference::BlendPixels(dst, v, alpha, n);
}

void BlitPixels(std::uint32_t* dst, const std::uint32_t* src, int tint, int n)
{
    reference::BlitPixels(dst, src, tint, n);
}

void MixPixels(std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int weight,
               int n)
{
    reference::MixPixels(dst, a, b, weight, n);
}

void MixNeighbours(std::uint32_t* dst, const std::uint32_t* src, const std::int32_t* places,
                   const std::uint32_t* weights, int n)
{
    reference::MixNeighbours(dst, src, places, weights, n);
}

#else

namespace hn = hwy::HWY_NAMESPACE;

constexpr std::uint32_t EvenBytes = 0x00FF00FF; ///< blue and red
constexpr std::uint32_t AlphaWeight = 256U << 16U;

/// step(lanes, i) for all pixels from 0 to n - 1: the widest vectors, short ones, single pixels.
/// Those of long rows begin at lines of the cache in @p dst, across which stores are slow.
template <class Step>
void ForPixels(const std::uint32_t* dst, int n, Step step)
{
    const hn::ScalableTag<std::uint32_t> lanes;
    const hn::CappedTag<std::uint32_t, 4> few;
    const hn::CappedTag<std::uint32_t, 1> one;
    const int width = static_cast<int>(hn::Lanes(lanes));
    const int fewWidth = static_cast<int>(hn::Lanes(few));
    int i = 0;
    if (n >= 8 * width)
    {
        const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(dst) / sizeof(*dst);
        const int ahead = static_cast<int>((0U - place) % static_cast<std::uintptr_t>(width));
        for (; ahead - i >= fewWidth; i += fewWidth)
            step(few, i);
        for (; i < ahead; ++i)
            step(one, i);
    }
    for (; n - i >= width; i += width)
        step(lanes, i);
    for (; n - i >= fewWidth; i += fewWidth)
        step(few, i);
    for (; i < n; ++i)
        step(one, i);
}

/// The bytes of pixels in 16 bits each, in which a byte times a byte fits: blue and red in the one
/// vector, green and alpha in the other.
template <class D>
struct BytesT
{
    using Wide = hn::Repartition<std::uint16_t, D>;

    BytesT(D lanes, hn::VFromD<D> pixels)
        : even(hn::BitCast(Wide(), hn::And(pixels, hn::Set(lanes, EvenBytes)))),
          odd(hn::ShiftRight<8>(hn::BitCast(Wide(), pixels)))
    {
    }

    hn::VFromD<Wide> even;
    hn::VFromD<Wide> odd;
};

/// The way back from sums of products, of which the upper bytes count.
template <class D, class V>
hn::VFromD<D> Joined(D lanes, V even, V odd)
{
    const auto low = hn::BitCast(lanes, hn::ShiftRight<8>(even));
    return hn::Or(low, hn::AndNot(hn::Set(lanes, EvenBytes), hn::BitCast(lanes, odd)));
}

/// (a * (255 - weight) + b * weight) >> 8 for all bytes; @p weight in the lower byte of each 16
/// bits.
template <class D, class V>
hn::VFromD<D> Mixed(D lanes, const BytesT<D>& a, const BytesT<D>& b, V weight)
{
    const typename BytesT<D>::Wide wide;
    const auto rest = hn::Sub(hn::Set(wide, 255), weight);
    return Joined(lanes, hn::Add(hn::Mul(a.even, rest), hn::Mul(b.even, weight)),
                  hn::Add(hn::Mul(a.odd, rest), hn::Mul(b.odd, weight)));
}

void BlendPixels(std::uint32_t* dst, std::uint32_t v, int alpha, int n)
{
    if (dst == nullptr)
        return;

    const auto a = static_cast<std::uint32_t>(alpha) & 255U;
    if (a == 255U)
    {
        // Nothing of the old colours is left, and of the new ones all but a step.
        const std::uint32_t colours =
            (((v & EvenBytes) * a >> 8U) & EvenBytes) | (((v >> 8U) & 255U) * a & 0xFF00U);
        return ForPixels(dst, n,
                         [=](auto lanes, int i) HWY_ATTR
                         {
                             const auto kept =
                                 hn::And(hn::LoadU(lanes, dst + i), hn::Set(lanes, 0xFF000000U));
                             hn::StoreU(hn::Or(kept, hn::Set(lanes, colours)), lanes, dst + i);
                         });
    }
    const std::uint32_t rest = 255U - a;
    const std::uint32_t evenAdded = (v & EvenBytes) * a;
    const std::uint32_t oddAdded = ((v >> 8U) & 255U) * a; // alpha keeps its 256 256ths
    ForPixels(dst, n,
              [=](auto lanes, int i) HWY_ATTR
              {
                  using D = decltype(lanes);
                  const typename BytesT<D>::Wide wide;
                  const BytesT<D> d(lanes, hn::LoadU(lanes, dst + i));
                  const auto weights = hn::BitCast(wide, hn::Set(lanes, AlphaWeight | rest));
                  const auto even =
                      hn::Add(hn::Mul(d.even, hn::Set(wide, static_cast<std::uint16_t>(rest))),
                              hn::BitCast(wide, hn::Set(lanes, evenAdded)));
                  const auto odd =
                      hn::Add(hn::Mul(d.odd, weights), hn::BitCast(wide, hn::Set(lanes, oddAdded)));
                  hn::StoreU(Joined(lanes, even, odd), lanes, dst + i);
              });
}

void BlitPixels(std::uint32_t* dst, const std::uint32_t* src, int tint, int n)
{
    if (dst == nullptr || src == nullptr)
        return;

    const auto scale = static_cast<std::uint16_t>(tint & 255);
    ForPixels(dst, n,
              [=](auto lanes, int i) HWY_ATTR
              {
                  using D = decltype(lanes);
                  const typename BytesT<D>::Wide wide;
                  const auto source = hn::LoadU(lanes, src + i);
                  const BytesT<D> s(lanes, source);
                  const BytesT<D> d(lanes, hn::LoadU(lanes, dst + i));

                  // Above the alpha of a pixel, its 32 bits are 0.
                  const auto grown = hn::Add(hn::ShiftRight<24>(source), hn::Set(lanes, 1));
                  const auto scaled = hn::Mul(hn::BitCast(wide, grown), hn::Set(wide, scale));
                  const auto alpha = hn::BitCast(lanes, hn::ShiftRight<8>(scaled));
                  const auto both = hn::BitCast(wide, hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
                  const auto weights =
                      hn::BitCast(wide, hn::Sub(hn::Set(lanes, AlphaWeight | 255U), alpha));

                  const auto even = hn::Add(hn::Mul(s.even, both),
                                            hn::Mul(d.even, hn::Sub(hn::Set(wide, 255), both)));
                  const auto odd =
                      hn::Add(hn::Mul(s.odd, hn::BitCast(wide, alpha)), hn::Mul(d.odd, weights));
                  hn::StoreU(Joined(lanes, even, odd), lanes, dst + i);
              });
}

void MixPixels(std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int weight,
               int n)
{
    if (dst == nullptr || a == nullptr || b == nullptr)
        return;

    const auto share = static_cast<std::uint16_t>(weight & 255);
    ForPixels(dst, n,
              [=](auto lanes, int i) HWY_ATTR
              {
                  using D = decltype(lanes);
                  const BytesT<D> x(lanes, hn::LoadU(lanes, a + i));
                  const BytesT<D> y(lanes, hn::LoadU(lanes, b + i));
                  const typename BytesT<D>::Wide wide;
                  hn::StoreU(Mixed(lanes, x, y, hn::Set(wide, share)), lanes, dst + i);
              });
}

/// Pixels and their right neighbours side by side. One load of 64 bits for each pair beats the
/// processor's gather instructions.
template <class D>
hn::VFromD<D> LoadPairs(D lanes, const std::uint32_t* src, const std::int32_t* places)
{
    constexpr std::size_t pairs = hn::MaxLanes(lanes) / 2;
    if constexpr (pairs == 1)
        return hn::LoadU(lanes, src + places[0]);
    else
    {
        const hn::Half<D> half;
        return hn::Combine(lanes, LoadPairs(half, src, places + pairs / 2),
                           LoadPairs(half, src, places));
    }
}

/// As many pixels as there are lanes, and their right neighbours.
template <class D>
struct NeighboursT
{
    NeighboursT(D lanes, const std::uint32_t* src, const std::int32_t* places)
    {
        constexpr std::size_t width = hn::MaxLanes(lanes);
        if constexpr (width == 1)
        {
            left = hn::LoadU(lanes, src + places[0]);
            right = hn::LoadU(lanes, src + places[0] + 1);
        }
        else
        {
            const auto low = LoadPairs(lanes, src, places);
            const auto high = LoadPairs(lanes, src, places + width / 2);
            left = hn::ConcatEven(lanes, high, low);
            right = hn::ConcatOdd(lanes, high, low);
        }
    }

    hn::VFromD<D> left;
    hn::VFromD<D> right;
};

void MixNeighbours(std::uint32_t* dst, const std::uint32_t* src, const std::int32_t* places,
                   const std::uint32_t* weights, int n)
{
    if (dst == nullptr || src == nullptr || places == nullptr || weights == nullptr)
        return;

    ForPixels(dst, n,
              [=](auto lanes, int i) HWY_ATTR
              {
                  using D = decltype(lanes);
                  const typename BytesT<D>::Wide wide;
                  const NeighboursT<D> pixels(lanes, src, places + i);
                  const auto weight = hn::LoadU(lanes, weights + i);
                  const auto both = hn::Or(weight, hn::ShiftLeft<16>(weight));
                  const BytesT<D> left(lanes, pixels.left);
                  const BytesT<D> right(lanes, pixels.right);
                  hn::StoreU(Mixed(lanes, left, right, hn::BitCast(wide, both)), lanes, dst + i);
              });
}

#endif

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(void, BlendPixels, (std::uint32_t * dst, std::uint32_t v, int alpha, int n),
              (dst, v, alpha, n))
DEFINE_KERNEL(void, BlitPixels, (std::uint32_t * dst, const std::uint32_t* src, int tint, int n),
              (dst, src, tint, n))
DEFINE_KERNEL(void, MixPixels,
              (std::uint32_t * dst, const std::uint32_t* a, const std::uint32_t* b, int weight,
               int n),
              (dst, a, b, weight, n))
DEFINE_KERNEL(void, MixNeighbours,
              (std::uint32_t * dst, const std::uint32_t* src, const std::int32_t* places,
               const std::uint32_t* weights, int n),
              (dst, src, places, weights, n))

} // namespace kernels
#endif
