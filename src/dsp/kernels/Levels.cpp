#include "dsp/kernels/Levels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Levels.cpp"
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

/// Zero for what is not a number: Max would let it win or lose depending on the processor.
template <class V>
V Magnitude(V samples)
{
    return hn::IfThenElseZero(hn::Eq(samples, samples), hn::Abs(samples));
}

float PeakAbs(const float* src, int n)
{
    if (src == nullptr)
        return 0.0f;

    const hn::ScalableTag<float> lanes;
    const int width = static_cast<int>(hn::Lanes(lanes));
    auto peaks = hn::Zero(lanes);
    int i = 0;
    for (; n - i >= width; i += width)
        peaks = hn::Max(peaks, Magnitude(hn::LoadU(lanes, src + i)));

    const hn::CappedTag<float, 1> one;
    auto peak = hn::Set(one, hn::GetLane(hn::MaxOfLanes(lanes, peaks)));
    for (; i < n; ++i)
        peak = hn::Max(peak, Magnitude(hn::LoadU(one, src + i)));
    return hn::GetLane(peak);
}

double SumSquares(const float* src, int n)
{
    if (src == nullptr)
        return 0.0;

    const hn::ScalableTag<double> lanes;
    const hn::Rebind<float, decltype(lanes)> narrow;
    const int width = static_cast<int>(hn::Lanes(lanes));
    auto sums = hn::Zero(lanes);
    int i = 0;
    for (; n - i >= width; i += width)
    {
        const auto samples = hn::PromoteTo(lanes, hn::LoadU(narrow, src + i));
        sums = hn::Add(sums, hn::Mul(samples, samples));
    }

    double sum = hn::GetLane(hn::SumOfLanes(lanes, sums));
    for (; i < n; ++i)
        sum += static_cast<double>(src[i]) * static_cast<double>(src[i]);
    return sum;
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(float, PeakAbs, (const float* src, int n), (src, n))
DEFINE_KERNEL(double, SumSquares, (const float* src, int n), (src, n))

} // namespace kernels
#endif
