#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>

#include "dsp/kernels/RealFFT.h"
#include "dsp/pitch/BlackmanDecimator.h"

/// What pitch detection by autocorrelation stands on: the newest samples at an analysis rate of
/// about 24 kHz, and the normalised square difference of McLeod and Wyvill ("A smarter way to find
/// pitch", 2005), which is 1 at lags after which the samples repeat and below 0 where they oppose.
/// The rate of the input is divided by the smallest whole number that brings it to 24,576 Hz or
/// below, so high rates cost little more than low ones.
/// Only SetSampleRate allocates. No locks: the owner sees that one thread at a time is in here.
template <int Length> ///< of the transform, samples
class MPitchFFTBase
{
public:
    static constexpr int WindowLength = Length / 2; ///< analysis samples that are looked at
    static constexpr int HopLength = Length / 8;    ///< analysis samples from look to look
    static constexpr double MaxAnalysisRate = 24576.0;
    static constexpr double MinSampleRate = 8000.0;
    static constexpr double MaxSampleRate = 6144000.0;

    /// Makes room and forgets all samples; @p rate, in Hz, is clamped to MinSampleRate to
    /// MaxSampleRate. On the host's thread.
    void SetSampleRate(double rate);

    /// Forgets all samples: silence precedes the next one.
    void Reset() noexcept;

    double GetAnalysisRate() const noexcept { return analysisRate; } ///< 0 before SetSampleRate
    /// From one look to the next; 0 before SetSampleRate.
    double GetHopSeconds() const noexcept
    {
        return analysisRate > 0.0 ? HopLength / analysisRate : 0.0;
    }

protected:
    /// Of the normalised square difference.
    struct Maximum
    {
        double lag = 0.0; ///< analysis samples
        double height = 0.0;
    };

    /// Takes of @p count samples as many as complete the hop, or all.
    /// @return how many; all without any use before SetSampleRate
    int Feed(const float* samples, int count) noexcept;

    /// True once for each full hop; the newest samples then form the window, without their mean.
    bool BeginWindow() noexcept;

    double GetMeanSquare() const noexcept { return energy / WindowLength; } ///< of the window

    /// Works out the normalised square difference of the window and its key maxima: past the first
    /// fall through zero, the highest of each stretch above zero.
    void Correlate() noexcept;

    /// By rising lag, which is whole. Heights are those of parabolas, which fall short by up to
    /// 12 / lag^2.
    std::span<const Maximum> GetKeyMaxima() const noexcept
    {
        return {work->keyMaxima.data(), keyCount};
    }

    /// The maximum itself, between the samples, within 0.7 of @p lag.
    Maximum Refine(double lag) const noexcept;

private:
    static constexpr int LanczosReach = 8;                              ///< lags to each side
    static constexpr int MaxLag = static_cast<int>(0.6 * WindowLength); ///< some 20 Hz
    static constexpr int LagCount = MaxLag + LanczosReach + 1; ///< those that are worked out
    static constexpr std::size_t MaxKeyCount = Length / 4;
    static_assert(MaxKeyCount > MaxLag / 2, "there is a lag below zero between any two");

    /// What SetSampleRate allocates; all but the decimator is the same for all rates.
    struct Work
    {
        explicit Work(int factor) : decimator(factor) {}

        BlackmanDecimator decimator;
        kernels::RealFFT fft{Length};
        std::array<float, WindowLength> ring{};
        std::array<float, WindowLength> window{};
        std::array<float, Length> time{}; ///< padded window, then its autocorrelation
        std::array<kernels::Complex, Length / 2 + 1> spectrum{};
        std::array<double, LagCount> nsdf{};
        std::array<Maximum, MaxKeyCount> keyMaxima{};
    };

    void Normalise() noexcept;
    void FindKeyMaxima() noexcept;
    Maximum MaximumAt(std::size_t lag) const noexcept;
    double ReadNSDF(double lag) const noexcept;

    std::unique_ptr<Work> work; ///< null before SetSampleRate
    double analysisRate = 0.0;  ///< Hz
    int ringPosition = 0;       ///< of the oldest sample
    int hopPosition = 0;        ///< samples of the present hop that have come
    double energy = 0.0;        ///< sum of squares of the window
    std::size_t keyCount = 0;
};

extern template class MPitchFFTBase<4096>;
