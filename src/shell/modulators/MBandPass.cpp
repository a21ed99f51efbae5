#include "shell/modulators/MBandPass.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{

/// Both kinds differ in their zeros alone: a low-pass has @p sign 1.0, a high-pass -1.0.
MBiquad Make(double sign, double hz, double q, double rate) noexcept
{
    const double w0 = 2.0 * std::numbers::pi * std::clamp(hz / rate, 0.0, 0.49);
    const double cosine = std::cos(w0);
    const double alpha = std::sin(w0) / (2.0 * std::clamp(q, 0.05, 10.0));
    const double a0 = 1.0 + alpha;
    const double edge = (1.0 - sign * cosine) / (2.0 * a0);
    return {.b0 = edge,
            .b1 = 2.0 * sign * edge,
            .b2 = edge,
            .a1 = -2.0 * cosine / a0,
            .a2 = (1.0 - alpha) / a0};
}

} // namespace

MBiquad MBiquad::LowPass(double hz, double q, double rate) noexcept
{
    return Make(1.0, hz, q, rate);
}

MBiquad MBiquad::HighPass(double hz, double q, double rate) noexcept
{
    return Make(-1.0, hz, q, rate);
}

void MBandPass::Design(double lowHz, double highHz, double q, double rate) noexcept
{
    const std::array<double, 4> wanted{lowHz, highHz, q, rate};
    if (wanted == designed)
        return;
    designed = wanted;
    highPass = MBiquad::HighPass(lowHz, q, rate);
    lowPass = MBiquad::LowPass(highHz, q, rate);
}
