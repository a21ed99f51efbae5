#pragma once

#include <cstddef>
#include <vector>

/// A channel that goes round the effect, held back so that it stays aligned with what passes it.
/// Audio thread, under the processing lock; SetLength allocates and belongs to the preparation.
class DelayQueue
{
public:
    /// Samples between in and out; below 0 is 0. A longer queue gets silence in front, a shorter
    /// one drops its oldest samples.
    void SetLength(int samples);
    int GetLength() const noexcept { return static_cast<int>(ring.size()); }

    /// Puts @p n samples in and takes as many out; @p output may be @p input. A null input is
    /// silence, a null output drops them. Does not allocate, whatever the length of the block.
    void Process(float* output, const float* input, int n) noexcept;
    /// Only silence is left.
    void Clear() noexcept;

private:
    std::vector<float> ring;
    std::size_t oldest = 0; ///< the next one out, and the place of the next one in
};
