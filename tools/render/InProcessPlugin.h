#pragma once

#include <memory>
#include <span>

#include "shell/MQuillfernAudioEffectPlugin.h"
#include "tools/hosting/HostClock.h"
#include "tools/hosting/HostedPlugin.h"

struct MPluginInfo;
struct MPluginParameterRecord;

/// Tonvale as part of this program, without a host standard between, and all that is inside.
class InProcessPlugin final : public HostedPlugin
{
public:
    /// @throws MException if the plugin cannot be created.
    InProcessPlugin();
    ~InProcessPlugin() override;

    /// The shell, which has the settings of the plugin as a whole.
    MQuillfernAudioEffectPlugin& GetShell() noexcept { return *shell; }
    /// Of the effect inside.
    const MPluginInfo& GetInfo() const noexcept;
    /// Null for an unknown @p name. The effect owns the record.
    const MPluginParameterRecord* FindParameter(const MString& name) const noexcept;
    /// The shape as it is played: MSignalGenerator::TableLength samples.
    std::span<const float> GetCycle() const;

    std::string GetName() const override;
    std::string GetMaker() const override;
    std::string GetVersion() const override;
    std::string GetFormat() const override { return {}; }

    int GetParameterCount() const override { return plugin->GetParameterCount(); }
    std::string GetParameterName(int index) const override;
    /// What Set01 takes back to the same value.
    double Get01(int index) const override { return plugin->GetRestorableParameter(index); }
    void Set01(int index, double value01) override { plugin->SetParameter(index, value01, false); }
    std::string GetText(int index) const override;
    std::string GetTextAt(int index, double value01) override;
    std::optional<double> Parse(int index, const std::string& text) override;
    int CountSteps(int index) const override;

    bool SetBypassed(bool on) override;

    std::vector<std::byte> SaveState() override;
    void LoadState(std::span<const std::byte> state) override;

    void Start(int channels, int rate, int maxBlock) override;
    int GetLatency() const override { return plugin->GetEffectiveLatency(); }
    void SetTempo(double quartersAMinute) override { clock.tempo = quartersAMinute; }
    void Send(std::span<const std::uint8_t, 3> message, int offset) override;
    void Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                 int samples) override;

private:
    /// Where the next block begins.
    void TellTime();

    std::unique_ptr<MAudioPlugin> plugin;
    MQuillfernAudioEffectPlugin* shell; ///< the same
    HostClock clock;
    std::vector<float> silence; ///< maxBlock samples
};
