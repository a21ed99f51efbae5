#include "tools/plot/LogScale.h"

#include <algorithm>
#include <cmath>

LogScale::LogScale(double lowest, double highest, int pixelCount)
    : lowHz(lowest),
      highHz(highest),
      pixels(pixelCount),
      octavesPerPixel(std::log2(highest / lowest) / (pixelCount - 1))
{
}

double LogScale::GetFrequency(double pixel) const noexcept
{
    return lowHz * std::exp2(pixel * octavesPerPixel);
}

double LogScale::GetPixel(double hz) const noexcept
{
    return std::log2(hz / lowHz) / octavesPerPixel;
}

void LogScale::Spread(std::span<const double> power, double nyquist, std::span<double> levels) const
{
    const double binsPerHz = static_cast<double>(power.size() - 1) / nyquist;
    const auto last = static_cast<double>(power.size() - 1);
    for (int pixel = 0; pixel < pixels; ++pixel)
    {
        const double from = std::clamp(GetFrequency(pixel - 0.5) * binsPerHz, 0.0, last);
        const double to = std::clamp(GetFrequency(pixel + 0.5) * binsPerHz, 0.0, last);
        const auto first = static_cast<std::size_t>(std::ceil(from));
        const auto end = static_cast<std::size_t>(std::floor(to)) + 1;
        double& level = levels[static_cast<std::size_t>(pixel)];
        if (first < end)
        {
            level = *std::max_element(power.begin() + static_cast<std::ptrdiff_t>(first),
                                      power.begin() + static_cast<std::ptrdiff_t>(end));
            continue;
        }
        const double place = (from + to) / 2.0;
        const auto below = static_cast<std::size_t>(place);
        const double share = place - static_cast<double>(below);
        constexpr double Least = 1e-30;
        level = std::pow(std::max(power[below], Least), 1.0 - share) *
                std::pow(std::max(power[below + 1], Least), share);
    }
}
