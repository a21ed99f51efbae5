#include "dsp/kernels/Shapes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numbers>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Shapes.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "dsp/kernels/Cycles.h"
#include "dsp/kernels/DefineKernel.h"

HWY_BEFORE_NAMESPACE();
namespace kernels
{
namespace HWY_NAMESPACE
{
namespace
{
namespace hn = hwy::HWY_NAMESPACE;

constexpr int ChunkLength = 256; ///< outputs that pass through the stack at once

/// Calls @p at(lanes, i) for whole vectors first, then for one sample after the other.
template <typename T, class At>
void ForAll(int n, At at)
{
    const hn::ScalableTag<T> lanes;
    const int width = static_cast<int>(hn::Lanes(lanes));
    int i = 0;
    for (; n - i >= width; i += width)
        at(lanes, i);
    for (; i < n; ++i)
        at(hn::CappedTag<T, 1>(), i);
}

/// Neighbours in the source.
struct Pair
{
    float left;
    float right;
};

/// Where to read, and between which samples: the samples are fetched one by one, as processors do
/// not gather any faster, and all else is reckoned in vectors.
struct Places
{
    void Find(const double* position, int n, double end);
    void Fetch(const float* source, int n, int mask);
    void Blend(float* dst, int n) const;

    HWY_ALIGN std::int32_t whole[ChunkLength];
    HWY_ALIGN float fraction[ChunkLength];
    HWY_ALIGN Pair pairs[ChunkLength];
};

void Places::Find(const double* position, int n, double end)
{
    ForAll<double>(n,
                   [=, this](auto lanes, int i) HWY_ATTR
                   {
                       const hn::Rebind<std::int32_t, decltype(lanes)> integers;
                       const hn::Rebind<float, decltype(lanes)> floats;
                       const auto wanted = hn::LoadU(lanes, position + i);
                       const auto p = hn::IfThenElseZero(hn::Gt(wanted, hn::Zero(lanes)),
                                                         hn::Min(wanted, hn::Set(lanes, end)));
                       const auto index = hn::DemoteTo(integers, p);
                       const auto f = hn::Sub(p, hn::PromoteTo(lanes, index));
                       hn::StoreU(index, integers, whole + i);
                       hn::StoreU(hn::DemoteTo(floats, f), floats, fraction + i);
                   });
}

void Places::Fetch(const float* source, int n, int mask)
{
    for (int i = 0; i < n; ++i)
    {
        const int at = whole[i];
        if (at < mask)
            std::memcpy(&pairs[i], source + at, sizeof(Pair));
        else
            pairs[i] = {source[at], source[(at + 1) & mask]};
    }
}

void Places::Blend(float* dst, int n) const
{
    ForAll<float>(n,
                  [=, this](auto lanes, int i) HWY_ATTR
                  {
                      hn::VFromD<decltype(lanes)> left;
                      hn::VFromD<decltype(lanes)> right;
                      hn::LoadInterleaved2(lanes, &pairs[i].left, left, right);
                      const auto f = hn::LoadU(lanes, fraction + i);
                      const auto g = hn::Sub(hn::Set(lanes, 1.0f), f);
                      const auto sum = hn::Add(hn::Mul(left, g), hn::Mul(right, f));
                      hn::StoreU(sum, lanes, dst + i);
                  });
}

void LookupDouble(float* dst, const float* source, const double* position, int n, int mask)
{
    if (dst == nullptr || source == nullptr || position == nullptr || mask < 0 ||
        mask > MaxLookupMask)
        return;

    Places places;
    for (int i = 0; i < n; i += std::min(n - i, ChunkLength))
    {
        const int count = std::min(n - i, ChunkLength);
        places.Find(position + i, count, mask + 1.0);
        places.Fetch(source, count, mask);
        places.Blend(dst + i, count);
    }
}

/// dst = dst + src * gain
void AddScaled(float* dst, const float* src, float gain, int n)
{
    ForAll<float>(n,
                  [=](auto lanes, int i) HWY_ATTR
                  {
                      const auto added = hn::Mul(hn::LoadU(lanes, src + i), hn::Set(lanes, gain));
                      hn::StoreU(hn::Add(hn::LoadU(lanes, dst + i), added), lanes, dst + i);
                  });
}

void AddStrided(float* dst, const float* source, int first, int stride, float gain, int n, int mask)
{
    if (dst == nullptr || source == nullptr || mask < 0 || n <= 0)
        return;

    const auto bits = static_cast<unsigned>(mask);
    const auto growth = static_cast<unsigned>(stride);
    auto place = static_cast<unsigned>(first);
    // An even stride comes by the same samples again and again.
    const unsigned repeat = (bits + 1) >> std::countr_zero(growth | (bits + 1));
    const auto period = static_cast<int>(std::min(repeat, static_cast<unsigned>(n)));

    HWY_ALIGN float samples[ChunkLength];
    for (int i = 0; i < period; i += std::min(period - i, ChunkLength))
    {
        const int count = std::min(period - i, ChunkLength);
        for (int k = 0; k < count; ++k, place += growth)
            samples[k] = source[place & bits];
        for (int to = i; to < n; to += std::min(n - to, period))
            AddScaled(dst + to, samples, gain, std::min(count, n - to));
    }
}

/// c[0] + c[1] * x + c[2] * x^2 and so on, one multiply and one add for each.
template <class D, std::size_t Count>
hn::VFromD<D> Polynomial(D lanes, const double (&c)[Count], hn::VFromD<D> x)
{
    auto sum = hn::Set(lanes, c[Count - 1]);
    for (std::size_t i = Count - 1; i-- > 0;)
        sum = hn::Add(hn::Mul(sum, x), hn::Set(lanes, c[i]));
    return sum;
}

/// Of numbers that are neither 0 nor denormal nor infinite.
template <class D>
hn::VFromD<D> Log2(D lanes, hn::VFromD<D> x)
{
    // x = m * 2^k with m between the root of 1/2 and that of 2, by moving the bits of that root to
    // where the exponent steps.
    constexpr std::uint64_t One = 0x3FF0000000000000;
    constexpr std::uint64_t RootOfHalf = 0x3FE6A09E667F3BCD;
    constexpr std::uint64_t Fraction = 0x000FFFFFFFFFFFFF;
    const hn::RebindToUnsigned<D> integers;
    const auto moved = hn::Add(hn::BitCast(integers, x), hn::Set(integers, One - RootOfHalf));
    const auto m = hn::BitCast(
        lanes, hn::Add(hn::And(moved, hn::Set(integers, Fraction)), hn::Set(integers, RootOfHalf)));
    // An integer below the point of 2^52 is a number of its own.
    const auto k =
        hn::Sub(hn::BitCast(lanes, hn::Or(hn::ShiftRight<52>(moved),
                                          hn::BitCast(integers, hn::Set(lanes, 0x1p52)))),
                hn::Set(lanes, 0x1p52 + 1023));

    // log m = 2 * artanh s = 2 * (s + s^3 / 3 + s^5 / 5 + ...), where s is at most 0.172.
    constexpr double C = 2.0 * std::numbers::log2e;
    constexpr double Series[] = {C,      C / 3,  C / 5,  C / 7,  C / 9, C / 11,
                                 C / 13, C / 15, C / 17, C / 19, C / 21};
    const auto s = hn::Div(hn::Sub(m, hn::Set(lanes, 1.0)), hn::Add(m, hn::Set(lanes, 1.0)));
    return hn::Add(k, hn::Mul(s, Polynomial(lanes, Series, hn::Mul(s, s))));
}

/// 0 below the normal numbers, infinite beyond them.
template <class D>
hn::VFromD<D> Exp2(D lanes, hn::VFromD<D> x)
{
    // The sum has no bits behind the point, so it rounds x to an integer, which then stands in the
    // lowest bits.
    const auto shifted = hn::Add(x, hn::Set(lanes, 0x3p51));
    const auto rest = hn::Sub(x, hn::Sub(shifted, hn::Set(lanes, 0x3p51)));

    // The powers of ln 2 over the factorials; the rest is at most a half.
    constexpr double L = std::numbers::ln2;
    constexpr double C3 = L * L * L / 6;
    constexpr double C6 = C3 * C3 / 20;
    constexpr double C9 = C6 * C3 / 84;
    constexpr double Series[] = {
        1.0,          L,          L * L / 2,       C3, C3 * L / 4,  C3 * L * L / 20,
        C6,           C6 * L / 7, C6 * L * L / 56, C9, C9 * L / 10, C9 * L * L / 110,
        C9 * C3 / 220};
    const auto power = Polynomial(lanes, Series, rest);

    const hn::RebindToUnsigned<D> integers;
    const auto scaled =
        hn::BitCast(lanes, hn::Add(hn::BitCast(integers, power),
                                   hn::ShiftLeft<52>(hn::BitCast(integers, shifted))));
    const auto large =
        hn::IfThenElse(hn::Ge(x, hn::Set(lanes, 1024.0)),
                       hn::Set(lanes, std::numeric_limits<double>::infinity()), scaled);
    return hn::IfThenZeroElse(hn::Lt(x, hn::Set(lanes, -1022.0)), large);
}

void PowerRamp(double* dst, double step, double exponent, int first, int n)
{
    if (dst == nullptr || n <= 0 || first < 0 || !(step > 0.0) || !(exponent > 0.0))
        return;

    const double start = first;
    if (step < std::numeric_limits<double>::min() || std::isinf((start + n) * step))
    {
        // What Log2 does not take, nobody asks for; it just has to be sound.
        for (int i = 0; i < n; ++i)
            dst[i] = std::pow((start + i) * step, exponent);
    }
    else
    {
        // An infinite exponent times the logarithm of 1 would be no number.
        const double finite = std::min(exponent, std::numeric_limits<double>::max());
        ForAll<double>(n,
                       [=](auto lanes, int i) HWY_ATTR
                       {
                           const auto x = hn::Mul(hn::Iota(lanes, start + i), hn::Set(lanes, step));
                           const auto power = hn::Mul(Log2(lanes, x), hn::Set(lanes, finite));
                           hn::StoreU(Exp2(lanes, power), lanes, dst + i);
                       });
    }
    if (first == 0)
        dst[0] = 0.0;
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

HWY_EXPORT(LookupDouble);

void Lookup(float* dst, const float* source, const double* position, int n, int mask) noexcept
{
    TRACE_NULL_POINTERS(Lookup, (dst, source, position));
    ChooseVersion(HWY_DISPATCH_TABLE(LookupDouble))(dst, source, position, n, mask);
}

DEFINE_KERNEL(void, AddStrided,
              (float* dst, const float* source, int first, int stride, float gain, int n, int mask),
              (dst, source, first, stride, gain, n, mask))
DEFINE_KERNEL(void, PowerRamp, (double* dst, double step, double exponent, int first, int n),
              (dst, step, exponent, first, n))

} // namespace kernels
#endif
