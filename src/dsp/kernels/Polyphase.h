#pragma once

/// Going to a multiple of a rate and back; see Arithmetic.h for what all kernels share.
namespace kernels
{

/// A filter at the rate phases * r, dealt out to its phases: of the phase p the taps
/// taps[p * tapCount] to taps[p * tapCount + tapCount - 1] count, each for one sample at rate r.
struct PolyphaseFilter
{
    static constexpr int MaxTapCount = 64; ///< of one phase
    static constexpr int MaxPhases = 16;
    static constexpr int RunDistance = 16; ///< between taps that are added one after the other

    const float* taps = nullptr;
    int tapCount = 0; ///< 1 to MaxTapCount; other counts make the kernels do nothing
    int phases = 0;   ///< 1 to MaxPhases, likewise
    /// Phase 0 hands the sample tapCount / 2 - 1 on as it is, whatever its taps.
    bool isPassing = false;
};

/// The phases-fold rate: dst[i * phases + p] is the sum over j of src[i + j] * taps of phase p [j].
/// @p src has @p n + tapCount - 1 samples, @p dst n * phases; they must not overlap.
/// Products are added in f32, those of the taps 0, 16, 32, 48 first, then 1, 17, 33, 49 and so on.
void StretchFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n) noexcept;

/// Back to one phases-th of the rate: dst[i] is the sum over p and j of
/// src[(i + j) * phases + phases - 1 - p] * taps of phase p [j], phase by phase, each added up as
/// in StretchFIR. @p src has (n + tapCount - 1) * phases samples.
void SqueezeFIR(float* dst, const float* src, const PolyphaseFilter& filter, int n) noexcept;

} // namespace kernels
