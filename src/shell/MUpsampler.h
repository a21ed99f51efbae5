#pragma once

#include <vector>

/// One channel of one bus on its way to a multiple of the host's rate and back.
///
/// High quality: linear-phase low-passes; flat within 0.1 dB up to 0.45 of the host's rate, images
/// and aliases at least 96 dB down from 0.55 on. Standard quality: a cubic through four samples up,
/// every factor-th sample back. Both together, up and down, take exactly GetLatency host samples.
///
/// Configure allocates; all else runs on the audio thread under the processing lock, and allocates
/// only for blocks longer than ever announced.
class MUpsampler
{
public:
    static constexpr int MaxFactor = 16;

    /// What way up and way down delay together, in samples at the host's rate: 6144 / @p factor in
    /// high quality, else 1536 / @p factor; 0 for a factor of 1.
    static int GetLatency(int factor, bool isHighQuality) noexcept;

    /// Makes filters and buffers, all silent, for blocks of up to @p maxSamples host samples.
    /// @p hostRate in Hz, @p newFactor 2 to MaxFactor. Filters of one design are shared between
    /// all objects. Nothing is done if all is as before.
    void Configure(int hostRate, int newFactor, bool isHighQuality, int maxSamples);

    /// Stretches @p n samples to n * factor ones, which stay here until the next call. A null
    /// @p input is silence.
    float* Upsample(const float* input, int n);
    /// n * factor samples to be filled between Upsample and Downsample.
    float* GetOutput() noexcept;
    /// Squeezes what GetOutput holds into the @p n samples of @p output, or adds it to them.
    void Downsample(float* output, int n, bool isAdding);
    /// Forgets the past.
    void Reset() noexcept;
};
