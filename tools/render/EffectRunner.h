#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "effect/MAudioEffectPluginHost.h"
#include "shell/midi/MMIDIProcessor.h"

struct MPluginInfo;
struct MPluginParameterRecord;

/// The oscillator behind its entry point, driven as a plugin shell drives it: records to set,
/// commands to call, MIDI bytes through a processor to which the effect listens.
class EffectRunner
{
public:
    /// @throws MException if the effect cannot be created.
    EffectRunner();
    ~EffectRunner();
    EffectRunner(const EffectRunner&) = delete;
    EffectRunner& operator=(const EffectRunner&) = delete;

    const MPluginInfo& GetInfo() const noexcept { return *host->GetPluginInfo(); }
    /// Null for an unknown @p name. The effect owns the record; after a change of its value follows
    /// NotifyChange.
    MPluginParameterRecord* FindParameter(const MString& name) const noexcept;
    void NotifyChange(const MPluginParameterRecord& record);

    /// Begins a sound of @p channels (1 to 8) at @p rate Hz with the present parameter values.
    void Start(int channels, int rate);
    /// Lets a channel message of three bytes take effect before the next block.
    void Send(std::span<const std::uint8_t, 3> message);
    /// Makes one block. @p inputs and @p outputs point to @p samples samples per channel; a null
    /// input is silence. No block may be input and output at once.
    void Process(const float* const* inputs, float* const* outputs, int samples);

private:
    void Call(MPluginCommand command, std::intptr_t a0 = 0, std::intptr_t a1 = 0,
              std::intptr_t a2 = 0, std::intptr_t a3 = 0);

    std::unique_ptr<MAudioEffectPluginHost> host;
    MMIDIProcessor midiProcessor;
};
