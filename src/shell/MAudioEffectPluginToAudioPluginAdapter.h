#pragma once

#include <functional>
#include <memory>

#include "effect/MAudioEffectPluginHost.h"
#include "effect/parameters/MParameterList.h"
#include "shell/ActivePresetChoice.h"
#include "shell/MAudioPluginPipeline.h"
#include "shell/MIDIControllers.h"
#include "shell/modulators/Modulators.h"
#include "shell/multiparameters/MultiParameters.h"

class MAudioEffectPlugin;
class PluginPresets;

/// What an effect is handed with each block, and may ask for; it sees no more than the name.
struct MProcessingContext
{
    const MAudioPluginTime& time;
};

/// The shell: makes a complete audio plugin of an effect, which knows nothing of it. It creates the
/// effect behind its entry point, shares its processing lock with it, wires its parameters and its
/// MIDI listener, and keeps the state of both.
class MAudioEffectPluginToAudioPluginAdapter : public MAudioPluginPipeline
{
public:
    static constexpr int DefaultMaxLFOBlockSize = 256; ///< samples
    static constexpr int MaxMaxLFOBlockSize = 65536;

    /// @p channelsOfBus, 1 to ChannelsPerBus, are there for good.
    explicit MAudioEffectPluginToAudioPluginAdapter(int channelsOfBus = 2);
    ~MAudioEffectPluginToAudioPluginAdapter() override;

    /// Makes the plugin whole; InitProcessing has yet to follow. Once.
    /// @throws MException "Error creating plugin.", after which only destruction is left
    virtual void Initialize(const MString& productName, const MString& makerName,
                            MPluginCall entryPoint, int editorWidth, int editorHeight);

    /// The locks are as short as can be: texts are made outside of the processing lock, and a tree
    /// is checked and the old state copied before blocks fall silent for a load.
    /// @throws MException for a state that is refused, or what else fails; a load then leaves the
    /// state from before
    void Store(const MStorageDescriptor& storage) override;
    /// The part of the effect and the standard settings; under the settings lock, and for a load
    /// under the processing lock too.
    void StoreSettings(const MStorageDescriptor& storage) override;

    void UpdateEffect() override;
    void ProcessUpdate() override;
    int GetLatency() override;
    int GetTail() override;

    // MIDI: the listeners first, then the shell's own assignments and modulators. Takes the
    // processing lock, as events come before their block does; who must not wait keeps them while
    // IsSuspended.
    void ProcessNote(int offset, double quarters, int channel, int note, double velocity,
                     bool on) override;
    void ProcessPressure(int offset, double quarters, int channel, int note, double value) override;
    void ProcessPitchWheel(int offset, double quarters, int channel, double value) override;
    bool ProcessMIDIController(int offset, double quarters, int channel, int number,
                               double value) override;

    void OnCustomParameterChanged(MAutomationAdapter& adapter) override;

    /// Bound of a sub-block while anything moves a parameter; limited to 1 to MaxMaxLFOBlockSize.
    void SetMaxLFOBlockSize(int samples) noexcept;
    int GetMaxLFOBlockSize() const noexcept { return maxLFOBlockSize.load(); }

    /// Place in the host's list of programs, as stored; whoever uses it limits it.
    int GetCurrentPresetIndex() const noexcept { return currentPresetIndex; }
    void SetCurrentPresetIndex(int index) noexcept { currentPresetIndex = index; }
    /// Reads their files when it is called for the first time. GUI thread.
    PluginPresets& GetPresets();

    /// Under the processing lock, but for what takes none.
    MIDIControllers& GetControllers() noexcept { return controllers; }
    Modulators& GetModulators() noexcept { return modulators; }
    MultiParameters& GetMultiParameters() noexcept { return multiParameters; }
    ActivePresetChoice& GetActivePresets() noexcept { return activePresets; }
    MProcessingContext& GetContext() noexcept { return context; }
    /// Drops the temporary adapters. Not on the audio thread.
    void RefreshParameterList();
    MAudioEffectPlugin* GetEffect() const noexcept;

protected:
    void Process(float* const* inputs, float* const* outputs, int samples) override;
    void ProcessPre(const float* const* inputs, int samples) override;
    void ProcessPost(float* const* outputs, int samples) override;
    void OnNoteBegin() override;
    void InitEffect() override;
    void InitDone() override;

    /// All of the working state, in its order. Under the locks of StoreSettings.
    virtual void StoreState(const MStorageDescriptor& storage);
    /// Adds what only TakeState loads, behind the working state. Under the settings lock.
    virtual void StoreSlots(MXMLItem& /*item*/) const {}
    /// What the shell keeps itself, the same for every effect.
    virtual void StoreStandardSettings(const MStorageDescriptor& storage);
    /// Puts the state of @p storage in force, or leaves all as it was and throws. Under the
    /// settings lock; suspends processing and takes its lock once all that can be made before is
    /// made.
    virtual void TakeState(const MStorageDescriptor& storage);
    /// Calls @p take, which takes a state, under the settings lock, and then brings up to date what
    /// follows from it. Not on the audio thread.
    void ReplaceState(const std::function<void()>& take);

private:
    void CreateEffect(MPluginCall entryPoint, const MString& productName);
    void WireEffect();
    void PrepareForProcessing(const float* const* inputs, int samples);
    /// Ends the notes from before a load and the like. Under the processing lock.
    void FlushNotes();
    void LoadChannelMode(MXMLItem& item);
    /// Surround needs more than two channels.
    void LimitChannelMode();
    /// What brings the working state back as it is now. Under the settings lock.
    std::function<void()> KeepState();
    /// Puts in force what @p load takes over. Under the locks of a load. Leaves half of the state
    /// if it throws.
    void ApplyState(const std::function<void()>& load);
    void StoreLFO(const MStorageDescriptor& storage);
    void StoreMultiParameters(const MStorageDescriptor& storage);
    void StoreActivePresets(const MStorageDescriptor& storage);
    void StoreControllers(const MStorageDescriptor& storage);

    const int busChannels;
    std::unique_ptr<MAudioEffectPluginHost> host;
    MParameterList parameters;
    MIDIControllers controllers;
    Modulators modulators;
    MultiParameters multiParameters;
    ActivePresetChoice activePresets;
    MProcessingContext context{time};
    std::atomic<std::int32_t> maxLFOBlockSize = DefaultMaxLFOBlockSize;
    MRelaxed<std::int32_t> currentPresetIndex = 0;
    std::unique_ptr<PluginPresets> presets; ///< null until it is asked for
    std::int32_t effectMaxBlock = 0;        ///< samples, as of InitProcessing
};
