#pragma once

#include <functional>
#include <initializer_list>

#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"
#include "shell/PresetSlots.h"

class MPluginConfiguration;

/// The shell of this maker's plugins: adds the higher rate and the preset slots, which the user
/// sets, to the state.
class MQuillfernAudioEffectPlugin final : public MAudioEffectPluginToAudioPluginAdapter
{
public:
    using MAudioEffectPluginToAudioPluginAdapter::MAudioEffectPluginToAudioPluginAdapter;
    /// The product, as @p configuration wants new instances. @throws MException as Initialize does
    static std::unique_ptr<MQuillfernAudioEffectPlugin> Create(MPluginConfiguration& configuration);

    /// All slots begin with the state that the new plugin has.
    void Initialize(const MString& productName, const MString& makerName, MPluginCall entryPoint,
                    int editorWidth, int editorHeight) override;

    /// Under the settings lock.
    const PresetSlots& GetPresetSlots() const noexcept { return slots; }
    /// Puts the state into its slot and takes that of slot @p index, 0 to PresetSlots::Count - 1;
    /// none other and the current one change nothing. GUI thread; blocks are silent meanwhile.
    /// @throws MException if that fails, with all as it was
    void SelectPresetSlot(int index);
    /// Copies the contents of slot @p from to slot @p to; either may be the current one. GUI
    /// thread.
    /// @throws MException if that fails, with all as it was
    void CopyPresetSlot(int from, int to);

    // For the morph, which walks in the current slot. GUI thread.

    /// What the current slot would keep. @throws MException if that fails
    PresetSlots::State KeepCurrentSlot();
    /// @throws MException if that fails, with all as it was
    void TakeCurrentSlot(const PresetSlots::State& state);
    /// The present state goes on as slot @p index, and the slot that it had takes @p left.
    void ContinueInSlot(int index, const PresetSlots::State& left);

protected:
    void StoreState(const MStorageDescriptor& storage) override;
    void StoreSlots(MXMLItem& item) const override;
    void TakeState(const MStorageDescriptor& storage) override;

private:
    /// What a slot keeps of the present state. Under the settings lock.
    PresetSlots::State KeepSlot();
    /// Under the settings lock.
    void TakeSlot(const PresetSlots::State& slot);
    /// Calls @p change under the settings lock if all @p indices are of slots, and tells the host.
    void ChangeSlots(const char* routine, std::initializer_list<int> indices,
                     const std::function<void()>& change);

    PresetSlots slots;
};
