#pragma once

#include <memory>
#include <vector>

#include "dsp/KaiserLowPass.h"
#include "shell/DelayQueue.h"

/// One channel of one bus on its way to a multiple of the host's rate and back.
///
/// High quality: linear-phase low-passes, 6 dB down at 0.5 of the host's rate; flat within 0.1 dB
/// up to 0.45, images and aliases at least 96 dB down from 0.55 on. Factors that are no primes take
/// two steps, the first by the smallest prime, so that the steep filter is a short one.
/// Standard quality: a cubic through four samples up, two host samples late; every factor-th sample
/// back. What is missing to GetLatency is a plain delay behind the way down, so that what the
/// effect itself makes comes nearly as late as its input.
///
/// Configure allocates; all else runs on the audio thread under the processing lock, and allocates
/// only for blocks longer than ever announced.
class MUpsampler
{
public:
    static constexpr int MaxFactor = 16;
    /// Samples up to this peak (-277 dB) pass for silence. It lies above the constant that keeps
    /// denormals away, so that a silent host costs no filtering.
    static constexpr float SilencePeak = 0x1p-46f;

    /// What way up and way down delay together, in samples at the host's rate: 6144 / @p factor in
    /// high quality, else 1536 / @p factor; 0 for a factor of 1.
    static int GetLatency(int factor, bool isHighQuality) noexcept;

    /// Makes filters and buffers, all silent, for blocks of up to @p maxSamples host samples.
    /// @p hostRate in Hz, @p newFactor 2 to MaxFactor. Filters of one design are shared between
    /// all objects. Nothing is done if all is as before; longer blocks alone keep the past.
    void Configure(int hostRate, int newFactor, bool isHighQuality, int maxSamples);

    /// Stretches @p n samples to n * factor ones, which stay here until the next call. A null
    /// @p input is silence.
    float* Upsample(const float* input, int n);
    /// n * factor samples to be filled between Upsample and Downsample.
    float* GetOutput() noexcept { return output.data(); }
    /// Squeezes what GetOutput holds into the @p n samples of @p destination, or adds it to them.
    void Downsample(float* destination, int n, bool isAdding);
    /// Forgets the past.
    void Reset() noexcept;

private:
    /// One step between two rates.
    struct Stage
    {
        std::shared_ptr<const KaiserLowPass> lowPass; ///< none for the cubic
        kernels::PolyphaseFilter filter;
        std::vector<float> lower;  ///< on the way up: LowerPast samples, then those of a piece
        std::vector<float> higher; ///< on the way down: HigherPast samples, then those of a piece

        int LowerPast() const noexcept { return filter.tapCount - 1; }
        int HigherPast() const noexcept { return filter.tapCount * filter.phases - 1; }
    };

    void MakeLowPasses();
    void MakeCubic();
    void Reserve(int samples);
    void Stretch(float* destination, const float* input, int n) noexcept;
    void Squeeze(float* destination, const float* source, int n) noexcept;
    bool IsAtRest(const float* input, int n) noexcept;

    int rate = 0; ///< Hz
    int factor = 1;
    bool isHigh = false;
    int pieceLength = 1;   ///< host samples that go through all steps at once, to stay in the cache
    int memoryLength = 0;  ///< host samples until an input is forgotten on the way up
    int silentSamples = 0; ///< that came in last, up to memoryLength
    std::vector<Stage> stages; ///< upwards
    DelayQueue plainDelay;
    std::vector<float> upsampled;
    std::vector<float> output;
};
