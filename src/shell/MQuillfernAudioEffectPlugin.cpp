#include "shell/MQuillfernAudioEffectPlugin.h"

#include <algorithm>
#include <utility>

#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "foundation/threads/MGuard.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "persistence/MPluginConfiguration.h"

namespace
{

constexpr int EditorWidth = 450; ///< pixels
constexpr int EditorHeight = 100;

} // namespace

std::unique_ptr<MQuillfernAudioEffectPlugin>
MQuillfernAudioEffectPlugin::Create(MPluginConfiguration& configuration)
{
    SetAntiDenormal(configuration.IsOn(MPluginConfiguration::AntiDenormal));
    const bool isSurround = configuration.IsOn(MPluginConfiguration::SurroundActivated);
    auto plugin = std::make_unique<MQuillfernAudioEffectPlugin>(isSurround ? ChannelsPerBus : 2);
    plugin->Initialize("Tonvale", "Quillfern", &TonvaleAudioEffectPluginInterface, EditorWidth,
                       EditorHeight);
    return plugin;
}

void MQuillfernAudioEffectPlugin::StoreState(const MStorageDescriptor& storage)
{
    MAudioEffectPluginToAudioPluginAdapter::StoreState(storage);
    MXMLItem& item = storage.item;
    if (storage.storing)
    {
        item.SetAttribute("upsampling", wantedUpsampling);
        item.SetAttribute("hqupsampling", highQualityUpsampling ? 1 : 0);
        return;
    }
    if (item.HasAttribute("upsampling"))
        wantedUpsampling = static_cast<int>(
            std::clamp<std::int64_t>(item.GetAttribute().ToInteger(), 1, MUpsampler::MaxFactor));
    if (item.HasAttribute("hqupsampling"))
        highQualityUpsampling = item.GetAttribute().ToInteger() != 0;
}

void MQuillfernAudioEffectPlugin::StoreSlots(MXMLItem& item) const
{
    slots.Store(item);
}

void MQuillfernAudioEffectPlugin::TakeState(const MStorageDescriptor& storage)
{
    // Copied while blocks still sound, and put in force once nothing can fail any more.
    PresetSlots loaded(storage.item);
    MAudioEffectPluginToAudioPluginAdapter::TakeState(storage);
    slots = std::move(loaded);
}

std::unique_ptr<MAudioPlugin> CreateAudioPlugin() noexcept
{
    return MGuarded("MAudioEffectPluginToAudioPluginAdapter::Initialize",
                    std::unique_ptr<MAudioPlugin>(),
                    []
                    {
                        return std::unique_ptr<MAudioPlugin>(
                            MQuillfernAudioEffectPlugin::Create(MPluginConfiguration::Get()));
                    });
}
