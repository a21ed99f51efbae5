#include "shell/MQuillfernAudioEffectPlugin.h"

#include <algorithm>

#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "foundation/threads/MGuard.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr int EditorWidth = 450; ///< pixels
constexpr int EditorHeight = 100;

} // namespace

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

std::unique_ptr<MAudioPlugin> CreateAudioPlugin() noexcept
{
    return MGuarded(
        "MAudioEffectPluginToAudioPluginAdapter::Initialize", std::unique_ptr<MAudioPlugin>(),
        []
        {
            auto plugin = std::make_unique<MQuillfernAudioEffectPlugin>();
            plugin->Initialize("Tonvale", "Quillfern", &TonvaleAudioEffectPluginInterface,
                               EditorWidth, EditorHeight);
            return std::unique_ptr<MAudioPlugin>(std::move(plugin));
        });
}
