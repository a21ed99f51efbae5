#include "dsp/KaiserLowPass.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <mutex>
#include <numbers>
#include <tuple>

namespace
{

constexpr double LeastAttenuation = 98.0; ///< dB
/// Kaiser's rules: a filter with a delay of d samples at the lower rate and a transition of w as a
/// share of it comes to RuleOffset + RuleSlope * d * w dB.
constexpr double RuleOffset = 7.95;
constexpr double RuleSlope = 2.0 * 14.36;
constexpr double Reserve = 0.5; ///< samples; the rules are too hopeful for short filters

/// The modified Bessel function of the first kind and order 0, from its power series.
double BesselI0(double x)
{
    double sum = 1.0;
    double term = 1.0;
    for (int k = 1; term > sum * 1e-17; ++k)
    {
        term *= x * x / (4.0 * k * k);
        sum += term;
    }
    return sum;
}

/// @p x from -1 to 1.
double KaiserWindow(double x, double beta)
{
    return BesselI0(beta * std::sqrt(std::max(0.0, 1.0 - x * x))) / BesselI0(beta);
}

double Sinc(double x)
{
    return x == 0.0 ? 1.0 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

int DelayFor(double transition, int delayStep)
{
    auto delay = static_cast<int>(
        std::ceil((LeastAttenuation - RuleOffset) / (RuleSlope * transition) + Reserve));
    while (2 * delay % delayStep != 0)
        ++delay;
    return delay;
}

/// The shape of the window with which a filter makes the most of its length.
double BetaFor(double transition, int delay)
{
    return 0.1102 * (RuleOffset + RuleSlope * (delay - Reserve) * transition - 8.7);
}

} // namespace

std::shared_ptr<const KaiserLowPass> KaiserLowPass::Get(int newFactor, double transition,
                                                        int delayStep)
{
    // There are some 16 designs in all, so nobody needs to give one back.
    static std::mutex mutex;
    static std::map<std::tuple<int, double, int>, std::shared_ptr<const KaiserLowPass>> filters;
    const std::lock_guard lock(mutex);
    std::shared_ptr<const KaiserLowPass>& filter = filters[{newFactor, transition, delayStep}];
    if (filter == nullptr)
        filter = std::make_shared<const KaiserLowPass>(newFactor, transition, delayStep);
    return filter;
}

KaiserLowPass::KaiserLowPass(int newFactor, double transition, int delayStep)
    : factor(newFactor),
      delay(DelayFor(transition, delayStep)),
      taps(static_cast<std::size_t>(2 * delay * factor))
{
    const double beta = BetaFor(transition, delay);
    std::vector<double> exact(static_cast<std::size_t>(2 * delay));
    for (int phase = 0; phase < factor; ++phase)
    {
        double sum = 0.0;
        for (int j = 0; j < 2 * delay; ++j)
        {
            // From the middle, in samples at the lower rate; the newest sample comes last.
            const double t = delay - 1 - j + static_cast<double>(phase) / factor;
            const double tap = Sinc(t) * KaiserWindow(t / delay, beta);
            exact[static_cast<std::size_t>(j)] = tap;
            sum += tap;
        }
        // Constant signals thus pass without any image.
        std::ranges::transform(exact, taps.begin() + std::ssize(exact) * phase,
                               [sum](double tap) { return static_cast<float>(tap / sum); });
    }
}

kernels::PolyphaseFilter KaiserLowPass::GetPhases() const noexcept
{
    return {.taps = taps.data(), .tapCount = 2 * delay, .phases = factor, .isPassing = true};
}
