#include "tools/render/FrequencyMeter.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>

namespace
{

constexpr int MaxHarmonic = 8;
constexpr double FirstCycles = 2.0;    ///< of a window, by which offset falls on a zero
constexpr double Growth = 3.0;         ///< of windows and of the way between them
constexpr double WindowShare = 0.6;    ///< of the sound, in the end
constexpr int FinalPasses = 2;         ///< at that length
constexpr double MaxCorrection = 0.05; ///< of the coarse frequency; beyond, it was none

using Complex = std::complex<double>;

/// Amplitude and phase at @p frequency, in cycles a sample, through a Hann window of @p length
/// samples, which need not be whole. The phase counts from the start of @p sound on.
Complex Bin(std::span<const float> sound, double begin, double length, double frequency)
{
    constexpr double Turn = 2.0 * std::numbers::pi;
    const auto first = static_cast<std::size_t>(std::ceil(begin));
    const std::size_t last =
        std::min(sound.size(), static_cast<std::size_t>(std::ceil(begin + length)));
    const Complex step = std::polar(1.0, -Turn * frequency);
    const Complex windowStep = std::polar(1.0, Turn / length);
    Complex tone = std::polar(1.0, -Turn * std::fmod(frequency * static_cast<double>(first), 1.0));
    Complex window = std::polar(1.0, Turn * (static_cast<double>(first) - begin) / length);
    Complex sum = 0.0;
    for (std::size_t i = first; i < last; ++i, tone *= step, window *= windowStep)
        sum += (1.0 - window.real()) * static_cast<double>(sound[i]) * tone;
    return sum;
}

/// The one whose phase is safest to follow: a shape may lack its fundamental.
int StrongestHarmonic(std::span<const float> sound, double frequency)
{
    int strongest = 1;
    double best = 0.0;
    for (int harmonic = 1; harmonic <= MaxHarmonic && harmonic * frequency < 0.5; ++harmonic)
    {
        const double strength =
            std::abs(Bin(sound, 0.0, FirstCycles / frequency, harmonic * frequency));
        // A lower one is worth more than a little strength: its phase is harder to lose.
        if (strength > 1.5 * best)
        {
            best = strength;
            strongest = harmonic;
        }
    }
    return strongest;
}

/// One pass: @p frequency, corrected by how far the phase of @p harmonic moves from a window of
/// @p cycles cycles at the start of @p sound to one that begins @p distance samples later.
double Refine(std::span<const float> sound, double frequency, int harmonic, double cycles,
              double distance)
{
    const double length = cycles / frequency;
    const Complex early = Bin(sound, 0.0, length, harmonic * frequency);
    const Complex late = Bin(sound, distance, length, harmonic * frequency);
    const double turn = std::arg(late * std::conj(early)) / (2.0 * std::numbers::pi);
    return frequency + turn / (distance * harmonic);
}

} // namespace

std::optional<double> FrequencyMeter::Measure(std::span<const float> sound, double rate)
{
    const auto period = periodFinder.Find(sound);
    if (!period)
        return std::nullopt;
    const double coarse = 1.0 / *period;
    const auto size = static_cast<double>(sound.size());
    if (size * coarse * (1.0 + MaxCorrection) < MinCycles)
        return std::nullopt;

    const int harmonic = StrongestHarmonic(sound, coarse);
    double frequency = coarse;
    // Near half the rate, a short window cannot tell a tone from its mirror image.
    const double enough = std::ceil(FirstCycles * coarse / (1.0 - 2.0 * harmonic * coarse));
    for (double cycles = std::max(FirstCycles, enough); cycles / frequency < 0.5 * size;
         cycles *= Growth)
        frequency = Refine(sound, frequency, harmonic, std::floor(cycles), cycles / frequency);
    for (int pass = 0; pass < FinalPasses; ++pass)
    {
        const double cycles = std::max(FirstCycles, std::floor(WindowShare * size * frequency));
        frequency = Refine(sound, frequency, harmonic, cycles, size - cycles / frequency);
    }

    const bool isClear = std::abs(frequency - coarse) <= MaxCorrection * coarse;
    if (!isClear || size * frequency < MinCycles * (1.0 - 1e-6))
        return std::nullopt;
    return frequency * rate;
}
