#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"
#include "tools/render/PluginParameter.h"

class MXMLItem;
struct MPluginInfo;
struct MPluginParameterRecord;

/// The whole plugin, driven as a host drives it that plays from the start without a stop, all on
/// one thread.
class PluginRunner
{
public:
    /// Pointers to the blocks of one bus, as MAudioPlugin takes them; null where there is none.
    template <typename Sample>
    using Pointers = std::array<Sample*, MAudioPlugin::MaxChannels>;

    /// @throws MException if the plugin cannot be created.
    PluginRunner();

    /// The shell, which has the settings of the plugin as a whole.
    MAudioEffectPluginToAudioPluginAdapter& GetPlugin() noexcept { return *shell; }
    /// Of the effect inside.
    const MPluginInfo& GetInfo() const noexcept;
    /// Null for an unknown @p name. The effect owns the record.
    const MPluginParameterRecord* FindParameter(const MString& name) const noexcept;
    /// What can be set, as long as this lives.
    std::vector<PluginParameter> GetParameters() const;

    /// Takes over @p state, of which anything may be missing or out of range.
    void LoadState(MXMLItem& state);
    /// Replaces what is in @p state by the present settings.
    void StoreState(MXMLItem& state);
    /// The shape as it is played: MSignalGenerator::TableLength samples.
    std::span<const float> GetCycle() const;

    /// Begins a sound of @p channels (1 to 8) at @p rate Hz (MAudioPlugin::MinRate to MaxRate)
    /// with the present parameter values. Blocks have up to @p maxBlock samples.
    /// @throws MException if the plugin refuses that.
    void Start(int channels, int rate, int maxBlock);
    /// Quarters a minute, above 0: from the next Start on the host's transport runs, from 0 there.
    /// Without, it stands and tells no tempo.
    void SetTempo(double quartersAMinute) noexcept { tempo = quartersAMinute; }
    /// Lets a channel message of three bytes take effect before the next block.
    void Send(std::span<const std::uint8_t, 3> message);
    /// Makes one block of @p samples. A null input takes its left neighbour, the first one silence.
    /// No block may be input and output at once.
    void Process(const Pointers<const float>& inputs, const Pointers<float>& outputs, int samples);

private:
    /// Where the next block begins.
    void TellTime();

    std::unique_ptr<MAudioPlugin> plugin;
    MAudioEffectPluginToAudioPluginAdapter* shell = nullptr; ///< the same
    std::optional<double> tempo;                             ///< quarters a minute
    std::int64_t position = 0; ///< samples since Start, at the host's rate
};
