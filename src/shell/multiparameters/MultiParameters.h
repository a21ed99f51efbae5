#pragma once

#include <array>
#include <cstddef>

#include "shell/multiparameters/MMultiParameter.h"

/// The four multiparameters of a plugin. See MMultiParameter for locks.
class MultiParameters
{
public:
    static constexpr std::size_t Count = 4;

    explicit MultiParameters(MAudioPlugin& drivenPlugin);

    void InitProcessing(double sampleRate) noexcept;
    /// Before the pieces of a block. Returns whether a glide is under way. Under the processing
    /// lock, as Process.
    bool Prepare();
    void Process(int samples);

    /// Under "MultiParameters" of @p settings.
    void Store(MXMLItem& settings) const;
    /// What is missing takes its default. Under the processing lock.
    /// @throws MException (256) as MMultiParameter::Load does, with half of the state
    void Load(MXMLItem& settings);

    MMultiParameter& operator[](std::size_t index) noexcept { return slots[index]; }
    auto begin() noexcept { return slots.begin(); }
    auto end() noexcept { return slots.end(); }

private:
    std::array<MMultiParameter, Count> slots;
};
