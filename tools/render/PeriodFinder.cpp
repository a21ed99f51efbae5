#include "tools/render/PeriodFinder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <numeric>

namespace
{

constexpr std::size_t WindowLength = 8192; ///< samples
constexpr std::size_t MinCycles = 4;       ///< in a window
/// Lags between the samples, for cycles of only a few samples.
constexpr std::size_t Oversampling = 4;
/// The longest cycles fill the window after a number of these steps, which average samples.
constexpr std::size_t Decimation = 4;
constexpr double MinLikeness = 0.8;    ///< of a sound that has a pitch
constexpr double NearlyTheBest = 0.98; ///< likeness of the first cycle to that of the best lag
constexpr double MinPower = 1e-14;     ///< a sample; below it is silence

using Complex = std::complex<double>;

/// In place and without scaling; the size is a power of two.
void Transform(std::vector<Complex>& data, double sign)
{
    const std::size_t size = data.size();
    for (std::size_t i = 1, reversed = 0; i < size; ++i)
    {
        std::size_t bit = size >> 1;
        for (; (reversed & bit) != 0; bit >>= 1)
            reversed ^= bit;
        reversed ^= bit;
        if (i < reversed)
            std::swap(data[i], data[reversed]);
    }
    for (std::size_t half = 1; half < size; half *= 2)
    {
        const Complex turn = std::polar(1.0, sign * std::numbers::pi / static_cast<double>(half));
        Complex factor = 1.0;
        for (std::size_t k = 0; k < half; ++k, factor *= turn)
            for (std::size_t i = k; i < size; i += 2 * half)
            {
                const Complex odd = data[i + half] * factor;
                data[i + half] = data[i] - odd;
                data[i] += odd;
            }
    }
}

std::vector<double> WithoutMean(std::span<const float> sound)
{
    const double mean =
        std::accumulate(sound.begin(), sound.end(), 0.0) / static_cast<double>(sound.size());
    std::vector<double> result(sound.size());
    std::ranges::transform(sound, result.begin(), [mean](float x) { return x - mean; });
    return result;
}

void Decimate(std::vector<double>& sound)
{
    const std::size_t length = sound.size() / Decimation;
    for (std::size_t i = 0; i < length; ++i)
    {
        const auto first = sound.begin() + static_cast<std::ptrdiff_t>(i * Decimation);
        sound[i] = std::accumulate(first, first + Decimation, 0.0) / Decimation;
    }
    sound.resize(length);
}

struct Top
{
    double lag; ///< steps
    double likeness;
};

/// Where the parabola through three equidistant values is highest; the middle one, at @p lag, is
/// the highest of them.
Top TopOfParabola(double lag, double before, double middle, double behind)
{
    const double bend = before - 2.0 * middle + behind;
    const double place = bend < 0.0 ? 0.5 * (before - behind) / bend : 0.0;
    return {lag + place, middle - 0.25 * (before - behind) * place};
}

/// All tops of @p likeness, by lag. The fall from lag 0 on is none.
std::vector<Top> FindTops(std::span<const double> likeness)
{
    std::size_t i = 0;
    while (i < likeness.size() && likeness[i] >= 0.0)
        ++i;
    std::vector<Top> tops;
    for (++i; i + 1 < likeness.size(); ++i)
        if (likeness[i] > likeness[i - 1] && likeness[i] >= likeness[i + 1])
            tops.push_back(TopOfParabola(static_cast<double>(i), likeness[i - 1], likeness[i],
                                         likeness[i + 1]));
    return tops;
}

} // namespace

std::optional<double> PeriodFinder::Find(std::span<const float> sound)
{
    if (sound.size() < 2 * MinCycles)
        return std::nullopt;
    std::vector<double> rest = WithoutMean(sound);
    for (double scale = 1.0;; scale *= Decimation)
    {
        const std::span<const double> window(rest.data(), std::min(rest.size(), WindowLength));
        if (const auto period = FindIn(window))
            return *period * scale;
        if (rest.size() <= WindowLength)
            return std::nullopt;
        Decimate(rest);
    }
}

std::optional<double> PeriodFinder::FindIn(std::span<const double> window)
{
    CompareWithItself(window);
    const std::vector<Top> tops = FindTops(likeness);
    const auto best = std::ranges::max_element(tops, {}, &Top::likeness);
    if (best == tops.end() || best->likeness < MinLikeness)
        return std::nullopt;
    // Every multiple of the period is as good; its first one counts.
    const auto first = std::ranges::find_if(
        tops, [&](const Top& top) { return top.likeness >= NearlyTheBest * best->likeness; });
    return first->lag / Oversampling;
}

void PeriodFinder::CompareWithItself(std::span<const double> window)
{
    likeness.clear();
    std::vector<double> energy(window.size() + 1); // of the samples before each
    for (std::size_t i = 0; i < window.size(); ++i)
        energy[i + 1] = energy[i] + window[i] * window[i];
    if (!(energy.back() > MinPower * static_cast<double>(window.size())))
        return;

    // The autocorrelation is the transform of the power spectrum; zeros around it give lags
    // between the samples.
    const std::size_t size = std::bit_ceil(2 * window.size());
    std::vector<Complex> spectrum(size);
    std::ranges::copy(window, spectrum.begin());
    Transform(spectrum, -1.0);
    std::vector<Complex> correlation(size * Oversampling);
    for (std::size_t i = 0; i < size / 2; ++i)
        correlation[i] = std::norm(spectrum[i]);
    for (std::size_t i = 1; i < size / 2; ++i)
        correlation[correlation.size() - i] = correlation[i];
    Transform(correlation, 1.0);

    // Set against the energy of the two pieces that a lag compares.
    const std::size_t maxLag = window.size() / MinCycles;
    likeness.resize(maxLag * Oversampling);
    for (std::size_t i = 0; i < likeness.size(); ++i)
    {
        const std::size_t lag = i / Oversampling;
        const double pieces = energy[window.size() - lag] + energy.back() - energy[lag];
        likeness[i] =
            pieces > 0.0 ? 2.0 * correlation[i].real() / static_cast<double>(size) / pieces : 0.0;
    }
}
