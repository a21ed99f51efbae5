#pragma once

#include <array>
#include <deque>
#include <memory>
#include <vector>

#include "host/vst3/Vst3Component.h"
#include "host/vst3/Vst3Controller.h"
#include "tools/hosting/HostClock.h"
#include "tools/hosting/HostedPlugin.h"
#include "tools/hosting/Vst3HostObjects.h"
#include "tools/hosting/Vst3Pointer.h"

class PluginModule;

namespace Vst3
{
struct PClassInfo;
} // namespace Vst3

/// A VST3 plugin, whether its controller is an object of its own or not, and its host, which works
/// off line. Controllers of its own cannot exchange messages with their component.
class HostedVst3 final : public HostedPlugin
{
public:
    /// Makes the first audio class of @p pluginModule, a VST3 library.
    /// @throws MException if there is none, or it cannot be made
    explicit HostedVst3(std::shared_ptr<PluginModule> pluginModule);
    ~HostedVst3() override;

    // For whoever wants to call them by himself.
    Vst3::IComponent* GetComponent() const noexcept { return component.Get(); }
    Vst3::IAudioProcessor* GetProcessor() const noexcept { return processor.Get(); }
    /// Null if the plugin has none.
    Vst3::IEditController* GetController() const noexcept { return controller.Get(); }
    const Vst3ComponentHandler& GetHandler() const noexcept { return handler; }
    const Vst3::ParameterInfo& GetParameterInfo(int index) const;

    std::string GetName() const override { return name; }
    std::string GetMaker() const override { return maker; }
    std::string GetVersion() const override { return version; }
    std::string GetFormat() const override { return "VST3"; }

    /// Without those that are hidden.
    int GetParameterCount() const override { return static_cast<int>(parameters.size()); }
    std::string GetParameterName(int index) const override;
    double Get01(int index) const override;
    void Set01(int index, double value01) override;
    std::string GetText(int index) const override;
    std::string GetTextAt(int index, double value01) override;
    std::optional<double> Parse(int index, const std::string& text) override;
    int CountSteps(int index) const override { return GetParameterInfo(index).stepCount; }

    bool SetBypassed(bool on) override;

    /// What the component stores; a controller with a state of its own follows, and the size of the
    /// first is in front in four bytes.
    std::vector<std::byte> SaveState() override;
    void LoadState(std::span<const std::byte> state) override;

    void Start(int channels, int rate, int maxBlock) override;
    int GetLatency() const override;
    void SetTempo(double quartersAMinute) override { clock.tempo = quartersAMinute; }
    void Send(std::span<const std::uint8_t, 3> message, int offset) override;
    void Process(std::span<const float* const> inputs, std::span<float* const> outputs,
                 int samples) override;

private:
    /// The channels of all buses of one direction, as process takes them.
    struct Buses
    {
        std::vector<Vst3::AudioBusBuffers> buffers;
        std::vector<std::vector<float*>> channels;

        /// Has the first channels of the first bus be @p given, and all others @p other.
        void Point(std::span<const float* const> given, float* other);
    };

    void FindClass(Vst3::PClassInfo& info);
    void MakeController();
    void ListParameters();
    void ConnectHalves();
    bool HasOwnController() const noexcept { return static_cast<bool>(ownController); }

    void Stop();
    void Arrange(int channels);
    /// Returns whether the plugin takes @p channels as they are.
    bool AskForChannels(int channels);
    Vst3::SpeakerArrangement GetArrangement(std::int32_t direction, std::int32_t index);
    void ActivateBuses();
    Buses MakeBuses(std::int32_t direction);

    void SendController(std::int16_t channel, std::int16_t number, double value01,
                        std::span<const std::uint8_t, 3> message, int offset);
    void Set(Vst3::ParamID id, double value01);
    void TellTime();
    void RunProcess(int samples, Buses* inputs, Buses* outputs);
    std::string ReadText(int index, double value01) const;

    std::shared_ptr<PluginModule> module;
    Vst3HostApplication application;
    Vst3ComponentHandler handler;
    std::string name;
    std::string maker;
    std::string version;
    Vst3Pointer<Vst3::IComponent> component;
    Vst3Pointer<Vst3::IAudioProcessor> processor;
    Vst3Pointer<Vst3::IEditController> ownController; ///< null if the component is the controller
    Vst3Pointer<Vst3::IEditController> controller;
    Vst3Pointer<Vst3::IMidiMapping> mapping;
    Vst3Pointer<Vst3::IConnectionPoint> componentPoint; ///< with the next, of two halves
    Vst3Pointer<Vst3::IConnectionPoint> controllerPoint;
    std::vector<Vst3::ParameterInfo> parameters;
    std::optional<Vst3::ParamID> bypass;
    bool isActive = false;
    HostClock clock;
    Vst3::ProcessContext context{};

    // For the next block.
    Vst3ParameterChanges changes;
    Vst3EventList events;
    std::deque<std::array<std::uint8_t, 3>> eventBytes; ///< to which data events point

    Buses inputBuses;
    Buses outputBuses;
    std::vector<float> silence;
    std::vector<float> discarded;
};
