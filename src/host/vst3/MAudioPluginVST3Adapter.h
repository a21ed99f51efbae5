#pragma once

#include <atomic>
#include <memory>

#include "foundation/modules/MModule.h"
#include "foundation/threads/MLock.h"
#include "host/HostTransport.h"
#include "host/MAudioPlugin.h"
#include "host/MAudioPluginAdapter.h"
#include "host/MIDIQueue.h"
#include "host/vst3/Vst3Buses.h"
#include "host/vst3/Vst3Channels.h"
#include "host/vst3/Vst3Component.h"
#include "host/vst3/Vst3Controller.h"
#include "host/vst3/Vst3Events.h"
#include "host/vst3/Vst3Parameters.h"
#include "host/vst3/Vst3Reference.h"

/// A plugin as a VST3 host sees it: one object that is processor and controller at once, with one
/// count of references, which ends it.
///
/// The host calls process on its audio thread and all else on the thread that made the object, some
/// of it on others. Nothing is called at the host under a lock, or from process but the objects
/// that come with it. No operation throws; what fails answers kResultFalse and leaves all as it
/// was.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): release ends it, and no one else
class MAudioPluginVST3Adapter final : public Vst3::IComponent,
                                      public Vst3::IAudioProcessor,
                                      public Vst3::IEditController,
                                      public Vst3::IEditController2,
                                      public Vst3::IUnitInfo,
                                      public Vst3::IConnectionPoint,
                                      public Vst3::IMidiMapping,
                                      public MAudioPluginAdapter
{
public:
    /// With one reference, which the caller owns. @p ownedPlugin is not null.
    explicit MAudioPluginVST3Adapter(std::unique_ptr<MAudioPlugin> ownedPlugin);

    // Identity. The component stands for the whole object.
    Vst3::Result queryInterface(const std::uint8_t* id, void** object) override;
    std::uint32_t addRef() override;
    std::uint32_t release() override;

    // Both halves.
    /// Refused until the next terminate once it is done, as hosts that see two halves call it
    /// twice.
    Vst3::Result initialize(Vst3::FUnknown* context) override;
    Vst3::Result terminate() override;
    /// The whole state, the same for both halves.
    Vst3::Result setState(Vst3::IBStream* state) override;
    Vst3::Result getState(Vst3::IBStream* state) override;

    // Component.
    Vst3::Result getControllerClassId(std::uint8_t* classId) override;
    Vst3::Result setIoMode(std::int32_t mode) override;
    std::int32_t getBusCount(std::int32_t media, std::int32_t direction) override;
    Vst3::Result getBusInfo(std::int32_t media, std::int32_t direction, std::int32_t index,
                            Vst3::BusInfo& bus) override;
    Vst3::Result getRoutingInfo(Vst3::RoutingInfo& input, Vst3::RoutingInfo& output) override;
    Vst3::Result activateBus(std::int32_t media, std::int32_t direction, std::int32_t index,
                             Vst3::Bool state) override;
    Vst3::Result setActive(Vst3::Bool state) override;

    // Processor.
    Vst3::Result setBusArrangements(Vst3::SpeakerArrangement* inputs, std::int32_t inputCount,
                                    Vst3::SpeakerArrangement* outputs,
                                    std::int32_t outputCount) override;
    Vst3::Result getBusArrangement(std::int32_t direction, std::int32_t index,
                                   Vst3::SpeakerArrangement& arrangement) override;
    Vst3::Result canProcessSampleSize(std::int32_t symbolicSampleSize) override;
    std::uint32_t getLatencySamples() override;
    /// Also while active, as some hosts do.
    Vst3::Result setupProcessing(Vst3::ProcessSetup& setup) override;
    Vst3::Result setProcessing(Vst3::Bool state) override;
    /// Does nothing without samples: hosts tell the controller each change as well.
    Vst3::Result process(Vst3::ProcessData& data) override;
    std::uint32_t getTailSamples() override;

    // Controller.
    /// The component has it already.
    Vst3::Result setComponentState(Vst3::IBStream* state) override;
    std::int32_t getParameterCount() override;
    Vst3::Result getParameterInfo(std::int32_t index, Vst3::ParameterInfo& info) override;
    Vst3::Result getParamStringByValue(Vst3::ParamID id, double value, char16_t* text) override;
    Vst3::Result getParamValueByString(Vst3::ParamID id, char16_t* text, double& value) override;
    double normalizedParamToPlain(Vst3::ParamID id, double value) override;
    double plainParamToNormalized(Vst3::ParamID id, double plainValue) override;
    double getParamNormalized(Vst3::ParamID id) override;
    Vst3::Result setParamNormalized(Vst3::ParamID id, double value) override;
    Vst3::Result setComponentHandler(Vst3::IComponentHandler* handler) override;
    Vst3::IPlugView* createView(const char* name) override;
    Vst3::Result setKnobMode(std::int32_t mode) override;
    Vst3::Result openHelp(Vst3::Bool onlyCheck) override;
    Vst3::Result openAboutBox(Vst3::Bool onlyCheck) override;

    // Units: the root alone.
    std::int32_t getUnitCount() override;
    Vst3::Result getUnitInfo(std::int32_t index, Vst3::UnitInfo& info) override;
    std::int32_t getProgramListCount() override;
    Vst3::Result getProgramListInfo(std::int32_t index, Vst3::ProgramListInfo& info) override;
    Vst3::Result getProgramName(std::int32_t list, std::int32_t program, char16_t* name) override;
    Vst3::Result getProgramInfo(std::int32_t list, std::int32_t program, const char* attribute,
                                char16_t* value) override;
    Vst3::Result hasProgramPitchNames(std::int32_t list, std::int32_t program) override;
    Vst3::Result getProgramPitchName(std::int32_t list, std::int32_t program, std::int16_t pitch,
                                     char16_t* name) override;
    std::int32_t getSelectedUnit() override;
    Vst3::Result selectUnit(std::int32_t unit) override;
    Vst3::Result getUnitByBus(std::int32_t media, std::int32_t direction, std::int32_t bus,
                              std::int32_t channel, std::int32_t& unit) override;
    Vst3::Result setUnitProgramData(std::int32_t listOrUnit, std::int32_t program,
                                    Vst3::IBStream* data) override;

    // Connection. Both halves are this object, so there is nothing to say, and no one to hold.
    Vst3::Result connect(Vst3::IConnectionPoint* other) override;
    Vst3::Result disconnect(Vst3::IConnectionPoint* other) override;
    Vst3::Result notify(Vst3::IMessage* message) override;

    /// None: hosts keep controllers from plugins without a mapping.
    Vst3::Result getMidiControllerAssignment(std::int32_t bus, std::int16_t channel,
                                             std::int16_t controller, Vst3::ParamID& id) override;

    // What the plugin asks for.
    void SendAutomation(int index, double value01) override;
    void SendBypassAutomation(bool isBypassed) override;
    void GenerateMIDIEvent(int offset, const std::uint8_t* bytes) override;
    bool ChangeEditorSize(int width, int height) override;
    void LatencyChanged() override;
    bool IgnoresHostParameters() const noexcept override { return ignoreHostParameters.load(); }

private:
    class PreparationScope;

    ~MAudioPluginVST3Adapter() = default;

    /// Puts in force what the host wants; it asks for the latency by itself afterwards.
    void Prepare();
    void RefreshTimes();
    Vst3::Reference<Vst3::IComponentHandler> GetHandler();
    void Restart(std::int32_t flags);
    /// A whole gesture of the user's.
    void SendEdit(Vst3::ParamID id, double value);

    void TakeParameterChanges(Vst3::IParameterChanges* changes, Vst3::IParameterChanges* made);
    /// Reports in @p made, which may be null, what the plugin rounded.
    void ApplyPoint(Vst3::ParamID id, double value, Vst3::IParameterChanges* made);
    void TakeTime(const Vst3::ProcessContext* context);
    void SendOutputEvents(Vst3::IEventList* list, int samples);

    const MModule::User user; ///< ends behind the plugin
    const std::unique_ptr<MAudioPlugin> plugin;
    std::atomic<std::uint32_t> references = 1;
    std::atomic<bool> isInitialized = false;
    std::atomic<bool> isActive = false;
    bool hasToldValues = false; ///< of a new instance, to the host
    Vst3::Reference<Vst3::FUnknown> hostContext;
    MLock handlerLock; ///< of handler; nothing is called under it
    Vst3::Reference<Vst3::IComponentHandler> handler;

    Vst3::Buses buses{*plugin};
    Vst3::Parameters parameters{*plugin};
    std::atomic<bool> ignoreHostParameters = false; ///< what is set is our own edit coming back
    // As last told to the host, samples.
    std::atomic<std::int32_t> latency = 0;
    std::atomic<std::int32_t> tail = 0;
    std::atomic<int> preparations = 0; ///< under way, on behalf of the host

    // Of the audio thread.
    HostTransport transport;
    Vst3::Channels channels;
    Vst3::InputEvents inputEvents;
    std::unique_ptr<MIDIQueue> outputEvents; ///< none if the plugin sends nothing
};
