#pragma once

#include <cstdint>

struct MPluginParameterRecord;

/// The gain that a float parameter applies to the channels of one block: constant, or a straight
/// line from where the last block ended to the present value, so a change never clicks.
/// On the audio thread, one object a block.
class MRampedGain
{
public:
    /// Takes the ramp of a block of @p blockSamples (1 or more) out of @p record, whose next ramp
    /// begins where this one ends. The effective value maps to the gain by the record's value text
    /// (linear or squared gain) or else by its law, times @p scale.
    MRampedGain(MPluginParameterRecord& record, double scale, std::int32_t blockSamples) noexcept;

    /// Multiplies @p block by the gain.
    void Apply(float* block) const noexcept;
    /// Adds @p source times the gain to @p block. Silence adds nothing, whatever the source holds.
    void Add(float* block, const float* source) const noexcept;
    /// @p blockGain.Apply(block) and then @p sourceGain.Add(block, source), both of one block
    /// length; two ramps run in one pass, since each waits for its own additions most of the time.
    static void Mix(float* block, const MRampedGain& blockGain, const float* source,
                    const MRampedGain& sourceGain) noexcept;

private:
    std::int32_t samples;
    bool isRamp;
    float start;
    float step = 0.0f; ///< gain a sample
};
