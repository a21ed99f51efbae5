#include "dsp/kernels/Ramps.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Ramps.cpp"
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

// Wider vectors would not help: the sums of one round have to wait for those of the round before.
constexpr int RoundLength = 4; ///< samples
using RoundTag = hn::CappedTag<float, RoundLength>;
using OneTag = hn::CappedTag<float, 1>;

constexpr int PartLength = static_cast<int>(hn::MaxLanes(RoundTag())); ///< samples
constexpr int PartCount = RoundLength / PartLength;                    ///< 1, or 4 without vectors

/// The running sums of one gain, ahead of the samples by nothing.
class GainSums
{
public:
    GainSums(float start, float gainStep)
        : growth(hn::Set(RoundTag(), static_cast<float>(RoundLength) * gainStep)),
          step(gainStep)
    {
        for (int part = 0; part < PartCount; ++part)
        {
            const auto index = hn::Iota(RoundTag(), static_cast<float>(part * PartLength));
            sums[part] =
                hn::Add(hn::Set(RoundTag(), start), hn::Mul(index, hn::Set(RoundTag(), step)));
        }
    }

    /// The gains of a part of the round; the part then stands in the next round.
    hn::VFromD<RoundTag> Next(int part)
    {
        const auto present = sums[part];
        sums[part] = hn::Add(present, growth);
        return present;
    }

    /// The gain of a single sample after the last round.
    hn::VFromD<OneTag> NextSingle()
    {
        const float present = hn::GetLane(sums[0]);
        sums[0] = hn::Set(RoundTag(), present + step);
        return hn::Set(OneTag(), present);
    }

private:
    hn::VFromD<RoundTag> sums[PartCount];
    hn::VFromD<RoundTag> growth; ///< of each sum in a round
    float step;
};

/// dst = op(dst, src, gains...)
template <class Op, class... Gains>
void AlongRamps(float* dst, const float* src, int n, Op op, Gains... gains)
{
    if (dst == nullptr || src == nullptr)
        return;

    const RoundTag lanes;
    int i = 0;
    for (; n - i >= RoundLength; i += RoundLength)
        for (int part = 0; part < PartCount; ++part)
        {
            const int at = i + part * PartLength;
            hn::StoreU(
                op(hn::LoadU(lanes, dst + at), hn::LoadU(lanes, src + at), gains.Next(part)...),
                lanes, dst + at);
        }

    const OneTag one;
    for (; i < n; ++i)
        hn::StoreU(op(hn::LoadU(one, dst + i), hn::LoadU(one, src + i), gains.NextSingle()...), one,
                   dst + i);
}

void RampScale(float* dst, float start, float step, int n)
{
    AlongRamps(
        dst, dst, n, [](auto d, auto, auto gain) HWY_ATTR { return hn::Mul(d, gain); },
        GainSums(start, step));
}

void RampScaleAdd(float* dst, const float* src, float start, float step, int n)
{
    AlongRamps(
        dst, src, n,
        [](auto d, auto s, auto gain) HWY_ATTR { return hn::Add(d, hn::Mul(s, gain)); },
        GainSums(start, step));
}

void RampMix(float* dst, const float* src, float dstStart, float dstStep, float srcStart,
             float srcStep, int n)
{
    AlongRamps(
        dst, src, n,
        [](auto d, auto s, auto dstGain, auto srcGain) HWY_ATTR
        { return hn::Add(hn::Mul(d, dstGain), hn::Mul(s, srcGain)); },
        GainSums(dstStart, dstStep), GainSums(srcStart, srcStep));
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(void, RampScale, (float* dst, float start, float step, int n), (dst, start, step, n))
DEFINE_KERNEL(void, RampScaleAdd, (float* dst, const float* src, float start, float step, int n),
              (dst, src, start, step, n))
DEFINE_KERNEL(void, RampMix,
              (float* dst, const float* src, float dstStart, float dstStep, float srcStart,
               float srcStep, int n),
              (dst, src, dstStart, dstStep, srcStart, srcStep, n))

} // namespace kernels
#endif
