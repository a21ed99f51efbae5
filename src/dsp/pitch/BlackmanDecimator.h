#pragma once

#include <vector>

/// Brings one channel to one factor-th of its rate, behind a sinc under a Blackman window with
/// 16 * factor + 1 taps. In shares of the lower rate it is 6 dB down at 0.4, and from 0.6 on, what
/// folds to below 0.4, at least 70 dB. That is enough for analysis; a passband for listening ends
/// at about 0.25. Factor 1 passes everything.
/// Only the construction allocates. One thread at a time.
class BlackmanDecimator
{
public:
    static constexpr int MaxChunk = 1024; ///< samples of one call

    /// @p newFactor is at least 1; memory is proportional to it, 160 bytes each.
    explicit BlackmanDecimator(int newFactor);

    /// Takes @p n samples, at most MaxChunk; those that are no finite numbers count as 0.
    /// @p dst gets a sample as soon as @p newFactor more have come, the first one at once.
    /// @return how many it got; how the samples are cut into calls makes no difference
    int Process(float* dst, const float* src, int n) noexcept;

    /// How many samples more make @p outputs.
    int GetInputsFor(int outputs) const noexcept;

    void Reset() noexcept;

private:
    int GetTapCount() const noexcept { return static_cast<int>(taps.size()); }

    int factor;
    std::vector<float> taps;
    std::vector<float> samples; ///< moved to its front when its end is reached
    int start = 0;              ///< of the samples under the taps of the next output
    int end = 0;                ///< behind the newest sample
};
