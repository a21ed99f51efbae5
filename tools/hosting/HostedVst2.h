#pragma once

#include <memory>
#include <vector>

#include "host/vst2/Vst2Interface.h"
#include "host/vst2/Vst2Records.h"
#include "tools/hosting/HostClock.h"
#include "tools/hosting/HostedPlugin.h"

class PluginModule;

/// A VST2 effect and its host, of version 2.4, that offers it time and MIDI and takes neither MIDI
/// nor automation from it.
class HostedVst2 final : public HostedPlugin
{
public:
    /// @throws MException if @p pluginModule, a VST2 library, makes no proper effect
    explicit HostedVst2(std::shared_ptr<PluginModule> pluginModule);
    ~HostedVst2() override;

    /// For whoever wants to call it by himself.
    Vst2::AEffect* GetEffect() const noexcept { return effect; }
    std::intptr_t Dispatch(Vst2::EffectOpcode opcode, std::int32_t index = 0,
                           std::intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f) const;

    std::string GetName() const override;
    std::string GetMaker() const override;
    std::string GetVersion() const override;
    std::string GetFormat() const override { return "VST2"; }

    int GetParameterCount() const override;
    std::string GetParameterName(int index) const override;
    double Get01(int index) const override;
    void Set01(int index, double value01) override;
    std::string GetText(int index) const override;
    bool CutsTexts() const override { return true; }
    /// Sets and resets the value: there is no other way to ask.
    std::string GetTextAt(int index, double value01) override;
    std::optional<double> Parse(int index, const std::string& text) override;
    int CountSteps(int /*index*/) const override { return 0; }

    bool SetBypassed(bool on) override;

    /// The chunk; of an effect without chunks its parameters as floats.
    std::vector<std::byte> SaveState() override;
    void LoadState(std::span<const std::byte> state) override;

    void Start(int channels, int rate, int maxBlock) override;
    int GetLatency() const override;
    void SetTempo(double quartersAMinute) override { clock.tempo = quartersAMinute; }
    void Send(std::span<const std::uint8_t, 3> message, int offset) override;
    void Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                 int samples) override;

private:
    static std::intptr_t OnCallback(Vst2::AEffect* effect, std::int32_t opcode, std::int32_t index,
                                    std::intptr_t value, void* ptr, float opt);
    /// What the host answers.
    std::intptr_t Answer(Vst2::HostOpcode opcode, void* ptr);

    Vst2::AEffect* MakeEffect();
    void Stop();
    void Arrange(int channels);
    void TellTime();
    void DeliverMessages();
    std::string Ask(Vst2::EffectOpcode opcode, int index = 0) const;

    std::shared_ptr<PluginModule> module;
    HostClock clock;
    Vst2::VstTimeInfo time;
    int maxSamples = 1024;
    int arrangedChannels = 0; ///< that the effect was last asked for
    bool isRunning = false;
    bool isProcessing = false;
    Vst2::AEffect* effect;                    ///< made behind what its entry may ask for
    std::vector<Vst2::VstMidiEvent> messages; ///< for the next block
    std::vector<std::byte> messageList;       ///< a VstEvents as long as it takes
    // For channels that nobody gives or takes.
    std::vector<float> silence;
    std::vector<float> discarded;
    std::vector<float*> inputPointers;
    std::vector<float*> outputPointers;
};
