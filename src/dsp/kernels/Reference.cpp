#include "dsp/kernels/Reference.h"

#include "dsp/kernels/Cycles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

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

} // namespace

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

} // namespace kernels::reference
