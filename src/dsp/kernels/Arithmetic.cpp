#include "dsp/kernels/Arithmetic.h"

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

void Fill(float* dst, float v, int n)
{
    Map(dst, n, [v](auto lanes) HWY_ATTR { return hn::Set(lanes, v); });
}

void FillDouble(double* dst, double v, int n)
{
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

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(void, Fill, (float* dst, float v, int n), (dst, v, n))
DEFINE_KERNEL(void, FillDouble, (double* dst, double v, int n), (dst, v, n))
DEFINE_KERNEL(void, Scale, (float* dst, const float* src, float k, int n), (dst, src, k, n))
DEFINE_KERNEL(void, Add, (float* dst, const float* src, int n), (dst, src, n))
DEFINE_KERNEL(void, ScaleAdd, (float* dst, const float* src, float k, int n), (dst, src, k, n))
DEFINE_KERNEL(void, Mix, (float* dst, const float* a, float ka, const float* b, float kb, int n),
              (dst, a, ka, b, kb, n))

} // namespace kernels
#endif
