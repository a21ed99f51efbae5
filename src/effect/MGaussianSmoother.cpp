#include "effect/MGaussianSmoother.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernels/Filters.h"

void MGaussianSmoother::SetHalfWidth(double request) noexcept
{
    const double reach = request > 0.0 ? std::min<double>(request, MaxHalfWidth) : 0.0;
    const int width = static_cast<int>(std::ceil(reach));
    if (width == halfWidth)
        return;

    std::array<double, MaxHalfWidth + 1> side{1.0}; ///< from the centre on
    double sum = 1.0;
    for (std::size_t k = 1; k <= static_cast<std::size_t>(width); ++k)
    {
        const double x = static_cast<double>(k) * 2.0 / reach;
        side[k] = std::exp(-x * x);
        sum += 2.0 * side[k];
    }

    halfWidth = width;
    gainsAreOld = true;
    const auto centre = static_cast<std::size_t>(width);
    for (std::size_t k = 0; k <= centre; ++k)
        kernel[centre - k] = kernel[centre + k] = static_cast<float>(side[k] / sum);
}

void MGaussianSmoother::Process(std::span<float, CycleLength> cycle) noexcept
{
    if (halfWidth >= FFTHalfWidth)
        ProcessFFT(cycle);
    else if (halfWidth > 0)
        ProcessDirect(cycle);
}

void MGaussianSmoother::ProcessDirect(std::span<float, CycleLength> cycle) noexcept
{
    static_assert(sizeof(work) >= (CycleLength + 2 * (FFTHalfWidth - 1)) * sizeof(float));
    auto* padded = reinterpret_cast<float*>(work.data());
    const auto reach = static_cast<std::size_t>(halfWidth);
    float* body = std::ranges::copy(cycle.last(reach), padded).out;
    float* tail = std::ranges::copy(cycle, body).out;
    std::ranges::copy(cycle.first(reach), tail);

    kernels::FIR(cycle.data(), padded, kernel.data(), 2 * halfWidth + 1, CycleLength, 1);
}

void MGaussianSmoother::ProcessFFT(std::span<float, CycleLength> cycle) noexcept
{
    if (gainsAreOld)
        MakeGains();
    fft.Forward(cycle.data(), work.data());
    for (std::size_t bin = 0; bin < BinCount; ++bin)
        work[bin] *= gains[bin];
    fft.Inverse(work.data(), cycle.data());
}

void MGaussianSmoother::MakeGains() noexcept
{
    std::array<float, CycleLength>
        time{}; ///< the kernel, its centre at 0 and its left half wrapped
    const auto centre = static_cast<std::size_t>(halfWidth);
    time[0] = kernel[centre];
    for (std::size_t k = 1; k <= centre; ++k)
        time[k] = time[CycleLength - k] = kernel[centre + k];

    fft.Forward(time.data(), work.data());
    for (std::size_t bin = 0; bin < BinCount; ++bin)
        gains[bin] = work[bin].real();
    gainsAreOld = false;
}
