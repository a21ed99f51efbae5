#include "dsp/kernels/Arithmetic.h"

#include <cstddef>
#include <cstring>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Arithmetic.cpp"
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

/// dst = op(lanes, sources...): whole vectors first, then sample by sample.
template <typename T, class Op, class... Sources>
void Map(T* dst, int n, Op op, const Sources*... sources)
{
    if (dst == nullptr || (... || (sources == nullptr)))
        return;

    const hn::ScalableTag<T> lanes;
    const int width = static_cast<int>(hn::Lanes(lanes));
    int i = 0;
    for (; n - i >= width; i += width)
        hn::StoreU(op(lanes, hn::LoadU(lanes, sources + i)...), lanes, dst + i);

    const hn::CappedTag<T, 1> one;
    for (; i < n; ++i)
        hn::StoreU(op(one, hn::LoadU(one, sources + i)...), one, dst + i);
}

/// a, b = op(lanes, a, b), likewise.
template <class Op>
void MapPair(float* a, float* b, int n, Op op)
{
    if (a == nullptr || b == nullptr)
        return;

    const auto step = [=](auto lanes, int i) HWY_ATTR
    {
        auto x = hn::LoadU(lanes, a + i);
        auto y = hn::LoadU(lanes, b + i);
        op(lanes, x, y);
        hn::StoreU(x, lanes, a + i);
        hn::StoreU(y, lanes, b + i);
    };
    const hn::ScalableTag<float> lanes;
    const int width = static_cast<int>(hn::Lanes(lanes));
    int i = 0;
    for (; n - i >= width; i += width)
        step(lanes, i);
    for (; i < n; ++i)
        step(hn::CappedTag<float, 1>(), i);
}

void Fill(float* dst, float v, int n)
{
    Map(dst, n, [v](auto lanes) HWY_ATTR { return hn::Set(lanes, v); });
}

void FillDouble(double* dst, double v, int n)
{
    Map(dst, n, [v](auto lanes) HWY_ATTR { return hn::Set(lanes, v); });
}

void FillPixels(std::uint32_t* dst, std::uint32_t v, int n)
{
    // All but the first vector of a long row then begin at lines of the cache, across which stores
    // are slow.
    const hn::ScalableTag<std::uint32_t> pixels;
    const int width = static_cast<int>(hn::Lanes(pixels));
    if (dst != nullptr && n >= 8 * width)
    {
        hn::StoreU(hn::Set(pixels, v), pixels, dst);
        const std::uintptr_t place = reinterpret_cast<std::uintptr_t>(dst) / sizeof(v);
        const int done = width - static_cast<int>(place % static_cast<std::uintptr_t>(width));
        dst += done;
        n -= done;
    }
    Map(dst, n, [v](auto lanes) HWY_ATTR { return hn::Set(lanes, v); });
}

void Scale(float* dst, const float* src, float k, int n)
{
    Map(
        dst, n, [k](auto lanes, auto s) HWY_ATTR { return hn::Mul(s, hn::Set(lanes, k)); }, src);
}

void Add(float* dst, const float* src, int n)
{
    Map(
        dst, n, [](auto, auto d, auto s) HWY_ATTR { return hn::Add(d, s); }, dst, src);
}

void ScaleAdd(float* dst, const float* src, float k, int n)
{
    Map(
        dst, n,
        [k](auto lanes, auto d, auto s) HWY_ATTR
        { return hn::Add(d, hn::Mul(s, hn::Set(lanes, k))); },
        dst, src);
}

void Mix(float* dst, const float* a, float ka, const float* b, float kb, int n)
{
    Map(
        dst, n,
        [ka, kb](auto lanes, auto x, auto y) HWY_ATTR
        { return hn::Add(hn::Mul(x, hn::Set(lanes, ka)), hn::Mul(y, hn::Set(lanes, kb))); },
        a, b);
}

void AddConstant(float* dst, float k, int n)
{
    Map(
        dst, n, [k](auto lanes, auto d) HWY_ATTR { return hn::Add(d, hn::Set(lanes, k)); }, dst);
}

void Clamp(float* dst, float limit, int n)
{
    if (!(limit >= 0.0f))
        return;

    // The sign comes last, as of 0 and -0 processors take one or the other for the lesser.
    Map(
        dst, n,
        [limit](auto lanes, auto d) HWY_ATTR
        {
            const auto bounded = hn::Min(hn::Abs(d), hn::Set(lanes, limit));
            return hn::IfThenElseZero(hn::Eq(d, d), hn::CopySign(bounded, d));
        },
        dst);
}

void ZeroNonFinite(float* dst, int n)
{
    Map(
        dst, n,
        [](auto lanes, auto d) HWY_ATTR
        {
            const auto largest = hn::Set(lanes, std::numeric_limits<float>::max());
            return hn::IfThenElseZero(hn::Le(hn::Abs(d), largest), d);
        },
        dst);
}

void MidSide(float* l, float* r, int n)
{
    MapPair(l, r, n,
            [](auto lanes, auto& x, auto& y) HWY_ATTR
            {
                const auto half = hn::Set(lanes, 0.5f);
                const auto mid = hn::Mul(hn::Add(x, y), half);
                y = hn::Mul(hn::Sub(x, y), half);
                x = mid;
            });
}

void SumDifference(float* m, float* s, int n)
{
    MapPair(m, s, n,
            [](auto, auto& x, auto& y) HWY_ATTR
            {
                const auto sum = hn::Add(x, y);
                y = hn::Sub(x, y);
                x = sum;
            });
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(void, Fill, (float* dst, float v, int n), (dst, v, n))
DEFINE_KERNEL(void, FillDouble, (double* dst, double v, int n), (dst, v, n))
DEFINE_KERNEL(void, FillPixels, (std::uint32_t * dst, std::uint32_t v, int n), (dst, v, n))
DEFINE_KERNEL(void, Scale, (float* dst, const float* src, float k, int n), (dst, src, k, n))
DEFINE_KERNEL(void, Add, (float* dst, const float* src, int n), (dst, src, n))
DEFINE_KERNEL(void, ScaleAdd, (float* dst, const float* src, float k, int n), (dst, src, k, n))
DEFINE_KERNEL(void, Mix, (float* dst, const float* a, float ka, const float* b, float kb, int n),
              (dst, a, ka, b, kb, n))
DEFINE_KERNEL(void, AddConstant, (float* dst, float k, int n), (dst, k, n))
DEFINE_KERNEL(void, Clamp, (float* dst, float limit, int n), (dst, limit, n))
DEFINE_KERNEL(void, ZeroNonFinite, (float* dst, int n), (dst, n))
DEFINE_KERNEL(void, MidSide, (float* l, float* r, int n), (l, r, n))
DEFINE_KERNEL(void, SumDifference, (float* m, float* s, int n), (m, s, n))

// The C library chooses its version of these by the processor itself.

void Zero(float* dst, int n) noexcept
{
    TRACE_NULL_POINTERS(Zero, (dst));
    if (dst != nullptr && n > 0)
        std::memset(dst, 0, static_cast<std::size_t>(n) * sizeof(float));
}

void Copy(float* dst, const float* src, int n) noexcept
{
    TRACE_NULL_POINTERS(Copy, (dst, src));
    if (dst != nullptr && src != nullptr && n > 0)
        std::memmove(dst, src, static_cast<std::size_t>(n) * sizeof(float));
}

} // namespace kernels
#endif
