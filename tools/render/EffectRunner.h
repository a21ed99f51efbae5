#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "effect/MAudioEffectPluginHost.h"
#include "effect/parameters/MParameterList.h"
#include "effect/parameters/MParameterOwner.h"
#include "foundation/threads/MLock.h"
#include "shell/midi/MMIDIProcessor.h"
#include "tools/render/AdapterValue.h"

struct MPluginInfo;
struct MPluginParameterRecord;
class MXMLItem;

/// The oscillator behind its entry point, driven as a plugin shell drives it: parameter objects to
/// set, commands to call, MIDI bytes through a processor to which the effect listens.
class EffectRunner final : private MParameterOwner
{
public:
    /// @throws MException if the effect cannot be created.
    EffectRunner();
    virtual ~EffectRunner();
    EffectRunner(const EffectRunner&) = delete;
    EffectRunner& operator=(const EffectRunner&) = delete;

    const MPluginInfo& GetInfo() const noexcept { return *host->GetPluginInfo(); }
    /// Null for an unknown @p name. The effect owns the record.
    const MPluginParameterRecord* FindParameter(const MString& name) const noexcept;
    /// What can be set, as long as this lives.
    std::vector<AdapterValue> GetParameters() const;

    /// Takes over @p state, of which anything may be missing or out of range.
    /// @throws MException if the effect refuses it.
    void LoadState(MXMLItem& state);
    /// Adds the present settings to @p state.
    void StoreState(MXMLItem& state);
    /// The shape as it is played: MSignalGenerator::TableLength samples.
    std::span<const float> GetCycle() const;

    /// Begins a sound of @p channels (1 to 8) at @p rate Hz with the present parameter values.
    void Start(int channels, int rate);
    /// Lets a channel message of three bytes take effect before the next block.
    void Send(std::span<const std::uint8_t, 3> message);
    /// Makes one block. @p inputs and @p outputs point to @p samples samples per channel; a null
    /// input is silence. No block may be input and output at once.
    void Process(const float* const* inputs, float* const* outputs, int samples);

private:
    MLock& GetProcessingLock() noexcept override { return processingLock; }
    // There is no editor, and nothing to set beside the effect.
    void NeedUpdateEditor(MAutomationAdapter& /*adapter*/) override {}
    void OnCustomParameterChanged(MAutomationAdapter& /*adapter*/) override {}

    std::intptr_t Call(MPluginCommand command, std::intptr_t a0 = 0, std::intptr_t a1 = 0,
                       std::intptr_t a2 = 0, std::intptr_t a3 = 0);

    MLock processingLock; ///< the effect's, too
    std::unique_ptr<MAudioEffectPluginHost> host;
    MParameterList parameters;
    MMIDIProcessor midiProcessor;
};
