#include "dsp/kernels/Reference.h"

#include "dsp/kernels/Cycles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace kernels::reference
{
namespace
{

template <class... Pointers>
bool AnyNull(Pointers... pointers) noexcept
{
    return (... || (pointers == nullptr));
}

/// The gain of a ramp, sample after sample.
class Gain
{
public:
    Gain(float start, float gainStep, int n) noexcept : step(gainStep), inRounds(n - n % 4)
    {
        for (std::size_t lane = 0; lane < 4; ++lane)
            lanes[lane] = start + static_cast<float>(lane) * step;
    }

    float Next() noexcept
    {
        float& lane = lanes[position < inRounds ? static_cast<std::size_t>(position % 4) : 0];
        const float present = lane;
        lane += position < inRounds ? 4.0f * step : step;
        ++position;
        return present;
    }

private:
    std::array<float, 4> lanes{};
    float step;
    int inRounds; ///< samples that belong to whole rounds of four
    int position = 0;
};

float Get(const float* table, double phase) noexcept
{
    const double x = phase * CycleLength;
    const auto whole = static_cast<std::int64_t>(x);
    const auto f = static_cast<float>(x - static_cast<double>(whole));
    const float* pair = table + (whole & (CycleLength - 1));
    return pair[0] * (1.0f - f) + pair[1] * f;
}

/// Each byte of two pixels = (that of @p a * (255 - weight) + that of @p b * weight) >> 8.
std::uint32_t MixedPixel(std::uint32_t a, std::uint32_t b, std::uint32_t weight) noexcept
{
    std::uint32_t mixed = 0;
    for (unsigned shift = 0; shift < 32; shift += 8)
    {
        const std::uint32_t from = (a >> shift) & 255U;
        const std::uint32_t to = (b >> shift) & 255U;
        mixed |= ((from * (255U - weight) + to * weight) >> 8U) << shift;
    }
    return mixed;
}

/// The colours of the mix with the alpha of @p d.
std::uint32_t BlendedPixel(std::uint32_t d, std::uint32_t s, std::uint32_t alpha) noexcept
{
    return (MixedPixel(d, s, alpha) & 0x00FFFFFFU) | (d & 0xFF000000U);
}

double ValueAt(const double* c, int order, double x) noexcept
{
    double value = c[order];
    for (int power = order - 1; power >= 0; --power)
        value = value * x + c[power];
    return value;
}

} // namespace

void Zero(float* dst, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = 0.0f;
}

void Fill(float* dst, float v, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = v;
}

void FillDouble(double* dst, double v, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = v;
}

void FillPixels(std::uint32_t* dst, std::uint32_t v, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = v;
}

void Copy(float* dst, const float* src, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    if (std::less<>()(src, dst))
        for (int i = n - 1; i >= 0; --i)
            dst[i] = src[i];
    else
        for (int i = 0; i < n; ++i)
            dst[i] = src[i];
}

void Scale(float* dst, const float* src, float k, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = src[i] * k;
}

void Add(float* dst, const float* src, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] += src[i];
}

void ScaleAdd(float* dst, const float* src, float k, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] += src[i] * k;
}

void Mix(float* dst, const float* a, float ka, const float* b, float kb, int n) noexcept
{
    if (AnyNull(dst, a, b))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] * ka + b[i] * kb;
}

void AddConstant(float* dst, float k, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] += k;
}

void Clamp(float* dst, float limit, int n) noexcept
{
    if (AnyNull(dst) || !(limit >= 0.0f))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] =
            std::isnan(dst[i]) ? 0.0f : std::copysign(std::min(std::abs(dst[i]), limit), dst[i]);
}

void ZeroNonFinite(float* dst, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        if (!std::isfinite(dst[i]))
            dst[i] = 0.0f;
}

void MidSide(float* l, float* r, int n) noexcept
{
    if (AnyNull(l, r))
        return;
    for (int i = 0; i < n; ++i)
    {
        const float left = l[i];
        l[i] = (left + r[i]) * 0.5f;
        r[i] = (left - r[i]) * 0.5f;
    }
}

void SumDifference(float* m, float* s, int n) noexcept
{
    if (AnyNull(m, s))
        return;
    for (int i = 0; i < n; ++i)
    {
        const float mid = m[i];
        m[i] = mid + s[i];
        s[i] = mid - s[i];
    }
}

void BlendPixels(std::uint32_t* dst, std::uint32_t v, int alpha, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = BlendedPixel(dst[i], v, static_cast<std::uint32_t>(alpha) & 255U);
}

void BlitPixels(std::uint32_t* dst, const std::uint32_t* src, int tint, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    for (int i = 0; i < n; ++i)
    {
        const std::uint32_t alpha =
            ((src[i] >> 24U) + 1U) * (static_cast<std::uint32_t>(tint) & 255U);
        dst[i] = BlendedPixel(dst[i], src[i], alpha >> 8U);
    }
}

void MixPixels(std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int weight,
               int n) noexcept
{
    if (AnyNull(dst, a, b))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = MixedPixel(a[i], b[i], static_cast<std::uint32_t>(weight) & 255U);
}

void MixNeighbours(std::uint32_t* dst, const std::uint32_t* src, const std::int32_t* places,
                   const std::uint32_t* weights, int n) noexcept
{
    if (AnyNull(dst, src, places, weights))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = MixedPixel(src[places[i]], src[places[i] + 1], weights[i]);
}

float PeakAbs(const float* src, int n) noexcept
{
    if (AnyNull(src))
        return 0.0f;
    float peak = 0.0f;
    for (int i = 0; i < n; ++i)
        if (!std::isnan(src[i]))
            peak = std::max(peak, std::abs(src[i]));
    return peak;
}

double SumSquares(const float* src, int n) noexcept
{
    if (AnyNull(src))
        return 0.0;
    double sum = 0.0;
    for (int i = 0; i < n; ++i)
        sum += static_cast<double>(src[i]) * static_cast<double>(src[i]);
    return sum;
}

void RampScale(float* dst, float start, float step, int n) noexcept
{
    if (AnyNull(dst))
        return;
    Gain gain(start, step, n);
    for (int i = 0; i < n; ++i)
        dst[i] *= gain.Next();
}

void RampScaleAdd(float* dst, const float* src, float start, float step, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    Gain gain(start, step, n);
    for (int i = 0; i < n; ++i)
        dst[i] += src[i] * gain.Next();
}

void RampMix(float* dst, const float* src, float dstStart, float dstStep, float srcStart,
             float srcStep, int n) noexcept
{
    if (AnyNull(dst, src))
        return;
    Gain dstGain(dstStart, dstStep, n);
    Gain srcGain(srcStart, srcStep, n);
    for (int i = 0; i < n; ++i)
        dst[i] = dst[i] * dstGain.Next() + src[i] * srcGain.Next();
}

double ReadCycle(float* dst, const float* table, double phase, double step, int n) noexcept
{
    if (AnyNull(dst, table))
        return phase;
    for (int i = 0; i < n; ++i)
    {
        dst[i] = Get(table, phase);
        phase += step;
    }
    return phase;
}

void Lookup(float* dst, const float* source, const float* position, int n, int mask) noexcept
{
    if (AnyNull(dst, source, position) || mask < 0 || mask > MaxLookupMask)
        return;
    for (int i = 0; i < n; ++i)
    {
        const float p = std::isnan(position[i])
                            ? 0.0f
                            : std::clamp(position[i], 0.0f, static_cast<float>(mask + 1));
        const int a = static_cast<int>(p);
        const int b = (a + 1) & mask;
        const float f = p - static_cast<float>(a);
        dst[i] = source[a] * (1.0f - f) + source[b] * f;
    }
}

void Lookup(float* dst, const float* source, const double* position, int n, int mask) noexcept
{
    if (AnyNull(dst, source, position) || mask < 0 || mask > MaxLookupMask)
        return;
    for (int i = 0; i < n; ++i)
    {
        const double p = std::isnan(position[i]) ? 0.0 : std::clamp(position[i], 0.0, mask + 1.0);
        const int whole = static_cast<int>(p);
        const auto f = static_cast<float>(p - whole);
        dst[i] = source[whole] * (1.0f - f) + source[(whole + 1) & mask] * f;
    }
}

void AddStrided(float* dst, const float* source, int first, int stride, float gain, int n,
                int mask) noexcept
{
    if (AnyNull(dst, source) || mask < 0)
        return;
    for (std::int64_t i = 0; i < n; ++i)
        dst[i] += source[(first + i * stride) & mask] * gain;
}

void PowerRamp(double* dst, double step, double exponent, int first, int n) noexcept
{
    if (AnyNull(dst) || first < 0 || !(step > 0.0) || !(exponent > 0.0))
        return;
    for (int i = 0; i < n; ++i)
    {
        const double index = static_cast<double>(first) + i;
        dst[i] = index > 0.0 ? std::pow(index * step, exponent) : 0.0;
    }
}

void Polynomial(float* dst, const double* c, int order, double x, double dx, int n) noexcept
{
    if (AnyNull(dst, c) || order < 0)
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = static_cast<float>(ValueAt(c, order, x + i * dx));
}

void Polynomial(double* dst, const double* c, int order, double x, double dx, int n) noexcept
{
    if (AnyNull(dst, c) || order < 0)
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = ValueAt(c, order, x + i * dx);
}

void FIR(float* dst, const float* src, const float* taps, int tapCount, int n, int stride) noexcept
{
    if (AnyNull(dst, src, taps) || tapCount < 1 || stride < 1)
        return;
    for (int i = 0; i < n; ++i)
    {
        const float* from = src + static_cast<std::ptrdiff_t>(i) * stride;
        float sum = 0.0f;
        for (int j = 0; j < tapCount; ++j)
            sum += from[j] * taps[j];
        dst[i] = sum;
    }
}

void MultiplySpectra(Complex* dst, const Complex* a, const Complex* b, int n) noexcept
{
    if (AnyNull(dst, a, b))
        return;
    for (int i = 0; i < n; ++i)
    {
        const float re = a[i].real() * b[i].real() - a[i].imag() * b[i].imag();
        const float im = a[i].real() * b[i].imag() + a[i].imag() * b[i].real();
        dst[i] = Complex(re, im);
    }
}

void PowerSpectrum(Complex* dst, int n) noexcept
{
    if (AnyNull(dst))
        return;
    for (int i = 0; i < n; ++i)
        dst[i] = Complex(dst[i].real() * dst[i].real() + dst[i].imag() * dst[i].imag(), 0.0f);
}

namespace
{

bool IsValid(const PolyphaseFilter& filter)
{
    return filter.taps != nullptr && filter.tapCount >= 1 &&
           filter.tapCount <= PolyphaseFilter::MaxTapCount && filter.phases >= 1 &&
           filter.phases <= PolyphaseFilter::MaxPhases;
}

/// @p sum and the products of phase @p p with samples that stand @p step apart.
float AddPhase(float sum, const float* samples, std::ptrdiff_t step, const PolyphaseFilter& filter,
               std::ptrdiff_t p)
{
    if (p == 0 && filter.isPassing)
        return samples[(filter.tapCount / 2 - 1) * step];
    for (int first = 0; first < PolyphaseFilter::RunDistance; ++first)
        for (int j = first; j < filter.tapCount; j += PolyphaseFilter::RunDistance)
            sum += samples[j * step] * filter.taps[p * filter.tapCount + j];
    return sum;
}

} // namespace

void StretchFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n) noexcept
{
    if (AnyNull(dst, src) || !IsValid(filter))
        return;
    for (int i = 0; i < n; ++i)
        for (int p = 0; p < filter.phases; ++p)
            dst[std::ptrdiff_t{i} * filter.phases + p] = AddPhase(0.0f, src + i, 1, filter, p);
}

void SqueezeFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n) noexcept
{
    if (AnyNull(dst, src) || !IsValid(filter))
        return;
    for (int i = 0; i < n; ++i)
    {
        const float* frame = src + std::ptrdiff_t{i} * filter.phases;
        float sum = 0.0f;
        for (int p = 0; p < filter.phases; ++p)
            sum = AddPhase(sum, frame + filter.phases - 1 - p, filter.phases, filter, p);
        dst[i] = sum;
    }
}

} // namespace kernels::reference
