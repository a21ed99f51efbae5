#include "dsp/pitch/MPitchFFTBase.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <numeric>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Levels.h"

namespace
{

constexpr double LeastEnergy = 1e-20; ///< sums of squares below it count as silence
constexpr double RefineReach = 0.7;   ///< lags
constexpr int RefineSteps = 14;       ///< narrow the place down to 0.002 lags

/// The height of the parabola through three neighbours, of which @p middle is the highest.
double ParabolaHeight(double left, double middle, double right)
{
    const double bend = left - 2.0 * middle + right;
    const double slope = right - left;
    return bend < 0.0 ? middle - slope * slope / (8.0 * bend) : middle;
}

} // namespace

template <int Length>
void MPitchFFTBase<Length>::SetSampleRate(double rate)
{
    const double valid = rate >= MinSampleRate ? std::min(rate, MaxSampleRate) : MinSampleRate;
    const int factor = static_cast<int>(std::ceil(valid / MaxAnalysisRate));
    work = std::make_unique<Work>(factor);
    analysisRate = valid / factor;
    Reset();
}

template <int Length>
void MPitchFFTBase<Length>::Reset() noexcept
{
    ringPosition = 0;
    hopPosition = 0;
    if (work == nullptr)
        return;
    work->decimator.Reset();
    work->ring.fill(0.0f);
}

template <int Length>
int MPitchFFTBase<Length>::Feed(const float* samples, int count) noexcept
{
    if (work == nullptr)
        return count;
    int taken = 0;
    while (taken < count && hopPosition < HopLength)
    {
        // The ring is a whole number of hops long, so the end of a hop never lies beyond its end.
        const int chunk = std::min({count - taken, BlackmanDecimator::MaxChunk,
                                    work->decimator.GetInputsFor(HopLength - hopPosition)});
        const int fresh =
            work->decimator.Process(work->ring.data() + ringPosition, samples + taken, chunk);
        taken += chunk;
        hopPosition += fresh;
        ringPosition = (ringPosition + fresh) % WindowLength;
    }
    return taken;
}

template <int Length>
bool MPitchFFTBase<Length>::BeginWindow() noexcept
{
    if (hopPosition < HopLength)
        return false;

    hopPosition = 0;
    auto& window = work->window;
    const auto oldest = work->ring.begin() + ringPosition;
    std::rotate_copy(work->ring.begin(), oldest, work->ring.end(), window.begin());
    const double sum = std::accumulate(window.begin(), window.end(), 0.0);
    kernels::AddConstant(window.data(), static_cast<float>(-sum / WindowLength), WindowLength);
    energy = kernels::SumSquares(window.data(), WindowLength);
    return true;
}

template <int Length>
void MPitchFFTBase<Length>::Correlate() noexcept
{
    // The zeros behind the window keep its end from meeting its start.
    const auto padding = std::ranges::copy(work->window, work->time.begin()).out;
    std::fill(padding, work->time.end(), 0.0f);
    work->fft.Forward(work->time.data(), work->spectrum.data());
    kernels::PowerSpectrum(work->spectrum.data(), static_cast<int>(work->spectrum.size()));
    work->fft.Inverse(work->spectrum.data(), work->time.data());
    Normalise();
    FindKeyMaxima();
}

/// Divides by the energy of the two parts of the window that overlap at a lag, so that a tone has
/// the same height at all its periods.
template <int Length>
void MPitchFFTBase<Length>::Normalise() noexcept
{
    const auto& window = work->window;
    const auto square = [&](std::size_t i) { return double{window[i]} * double{window[i]}; };
    double both = 2.0 * energy;
    for (std::size_t lag = 0; lag < LagCount; ++lag)
    {
        work->nsdf[lag] = both < LeastEnergy ? 0.0 : 2.0 * double{work->time[lag]} / both;
        both -= square(lag) + square(WindowLength - 1 - lag);
    }
}

template <int Length>
void MPitchFFTBase<Length>::FindKeyMaxima() noexcept
{
    const auto& nsdf = work->nsdf;
    keyCount = 0;
    std::size_t lag = 1;
    while (lag <= MaxLag && nsdf[lag] > 0.0)
        ++lag;

    Maximum best;
    const auto endStretch = [&]
    {
        if (best.height > 0.0)
            work->keyMaxima[keyCount++] = best;
        best = {};
    };
    for (; lag <= MaxLag; ++lag)
        if (!(nsdf[lag] > 0.0))
            endStretch();
        else if (nsdf[lag] >= nsdf[lag - 1] && nsdf[lag] > nsdf[lag + 1])
            if (const Maximum here = MaximumAt(lag); here.height > best.height)
                best = here;
    endStretch();
}

template <int Length>
auto MPitchFFTBase<Length>::MaximumAt(std::size_t lag) const noexcept -> Maximum
{
    const auto& nsdf = work->nsdf;
    return {static_cast<double>(lag), ParabolaHeight(nsdf[lag - 1], nsdf[lag], nsdf[lag + 1])};
}

/// A golden-section search: at short lags a parabola is too flat for the peak, and the true period
/// would lose against its multiples.
template <int Length>
auto MPitchFFTBase<Length>::Refine(double lag) const noexcept -> Maximum
{
    constexpr double Share = std::numbers::phi - 1.0;
    double low = lag - RefineReach;
    double high = lag + RefineReach;
    const auto at = [this](double place) { return Maximum{place, ReadNSDF(place)}; };
    Maximum left = at(high - Share * (high - low));
    Maximum right = at(low + Share * (high - low));
    for (int step = 0; step < RefineSteps; ++step)
        if (left.height > right.height)
        {
            high = right.lag;
            right = left;
            left = at(high - Share * (high - low));
        }
        else
        {
            low = left.lag;
            left = right;
            right = at(low + Share * (high - low));
        }
    return left.height > right.height ? left : right;
}

/// Between the samples, by a Lanczos kernel: sin(pi x) sin(pi x / reach) / x^2, up to a factor.
template <int Length>
double MPitchFFTBase<Length>::ReadNSDF(double lag) const noexcept
{
    using std::numbers::pi;
    const double floor = std::floor(lag);
    const double rest = lag - floor;
    const int first = static_cast<int>(floor) - LanczosReach + 1;
    if (rest == 0.0)
        return work->nsdf[static_cast<std::size_t>(std::abs(static_cast<int>(floor)))];

    // From one place to the next, the first sine only changes its sign; the second turns by a
    // fixed angle.
    const double turnCos = std::cos(pi / LanczosReach);
    const double turnSin = std::sin(pi / LanczosReach);
    double sign = 1.0;
    double x = rest + LanczosReach - 1;
    double sine = std::sin(pi * x / LanczosReach);
    double cosine = std::cos(pi * x / LanczosReach);
    double sum = 0.0;
    double weights = 0.0;
    for (int i = 0; i < 2 * LanczosReach; ++i)
    {
        // Mirrored at lag 0, as every autocorrelation is.
        const double weight = sign * sine / (x * x);
        sum += weight * work->nsdf[static_cast<std::size_t>(std::abs(first + i))];
        weights += weight;
        const double turned = sine * turnCos - cosine * turnSin;
        cosine = cosine * turnCos + sine * turnSin;
        sine = turned;
        sign = -sign;
        x -= 1.0;
    }
    return sum / weights;
}

template class MPitchFFTBase<4096>;
