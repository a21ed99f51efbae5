#include "dsp/kernels/Shapes.h"

#include <cmath>
#include <cstddef>

namespace kernels
{

void Lookup(float* dst, const float* source, const double* position, int n, int mask) noexcept
{
    for (int i = 0; i < n; ++i)
    {
        const double p = position[i] > 0.0 ? std::fmin(position[i], mask + 1.0) : 0.0;
        const int whole = static_cast<int>(p);
        const auto fraction = static_cast<float>(p - whole);
        dst[i] = source[whole] * (1.0f - fraction) + source[(whole + 1) & mask] * fraction;
    }
}

void AddStrided(float* dst, const float* source, int first, int stride, float gain, int n,
                int mask) noexcept
{
    for (int i = 0; i < n; ++i)
        dst[i] +=
            source[static_cast<std::size_t>(first + i * stride) & static_cast<std::size_t>(mask)] *
            gain;
}

void PowerRamp(double* dst, double step, double exponent, int first, int n) noexcept
{
    for (int i = 0; i < n; ++i)
        dst[i] = std::pow((first + i) * step, exponent);
}

} // namespace kernels
