#pragma once

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

    /// Under the settings lock.
    const PresetSlots& GetPresetSlots() const noexcept { return slots; }

protected:
    void StoreState(const MStorageDescriptor& storage) override;
    void StoreSlots(MXMLItem& item) const override;
    void TakeState(const MStorageDescriptor& storage) override;

private:
    PresetSlots slots;
};
