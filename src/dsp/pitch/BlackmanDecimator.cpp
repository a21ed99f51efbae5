#include "dsp/pitch/BlackmanDecimator.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Filters.h"

namespace
{

constexpr double Cutoff = 0.4; ///< as a share of the lower rate
constexpr int HalfLength = 8;  ///< samples at the lower rate

std::vector<float> MakeTaps(int factor)
{
    if (factor == 1)
        return {1.0f};
    const int half = HalfLength * factor;
    std::vector<double> exact;
    double sum = 0.0;
    for (int i = -half; i <= half; ++i)
    {
        using std::numbers::pi;
        const double x = 2.0 * Cutoff * i / factor;
        const double sinc = i == 0 ? 1.0 : std::sin(pi * x) / (pi * x);
        const double turn = pi * i / half;
        const double window = 0.42 + 0.5 * std::cos(turn) + 0.08 * std::cos(2.0 * turn);
        exact.push_back(sinc * window);
        sum += exact.back();
    }
    std::vector<float> taps(exact.size());
    std::ranges::transform(exact, taps.begin(),
                           [sum](double tap) { return static_cast<float>(tap / sum); });
    return taps;
}

} // namespace

BlackmanDecimator::BlackmanDecimator(int newFactor)
    : factor(newFactor),
      taps(MakeTaps(newFactor)),
      samples(taps.size() * 2 + MaxChunk)
{
    Reset();
}

int BlackmanDecimator::Process(float* dst, const float* src, int n) noexcept
{
    if (end + n > static_cast<int>(samples.size()))
    {
        kernels::Copy(samples.data(), samples.data() + start, end - start);
        end -= start;
        start = 0;
    }
    float* fresh = samples.data() + end;
    kernels::Copy(fresh, src, n);
    kernels::ZeroNonFinite(fresh, n);
    end += n;

    const int spare = end - start - GetTapCount();
    const int outputs = spare < 0 ? 0 : spare / factor + 1;
    kernels::FIR(dst, samples.data() + start, taps.data(), GetTapCount(), outputs, factor);
    start += outputs * factor;
    return outputs;
}

int BlackmanDecimator::GetInputsFor(int outputs) const noexcept
{
    return start + GetTapCount() - end + (outputs - 1) * factor;
}

void BlackmanDecimator::Reset() noexcept
{
    // All samples under the taps but the newest, so that the first one makes an output.
    start = 0;
    end = GetTapCount() - 1;
    std::ranges::fill(samples, 0.0f);
}
