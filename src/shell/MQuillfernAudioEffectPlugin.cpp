#include "shell/MQuillfernAudioEffectPlugin.h"

#include <algorithm>
#include <utility>

#include "effect/TonvaleAudioEffectPluginInterface.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"
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

void MQuillfernAudioEffectPlugin::Initialize(const MString& productName, const MString& makerName,
                                             MPluginCall entryPoint, int editorWidth,
                                             int editorHeight)
{
    MAudioEffectPluginToAudioPluginAdapter::Initialize(productName, makerName, entryPoint,
                                                       editorWidth, editorHeight);
    const MLockGuard settings(GetSettingsLock());
    slots.FillEmpty(KeepSlot());
}

void MQuillfernAudioEffectPlugin::SelectPresetSlot(int index)
{
    ChangeSlots("MQuillfernAudioEffectPlugin::SelectPresetSlot", {index},
                [&]
                {
                    if (index == slots.GetCurrentSlot())
                        return;
                    PresetSlots changed = slots;
                    changed.Select(index, KeepSlot());
                    TakeSlot(slots.GetSlot(index));
                    slots = std::move(changed);
                });
}

void MQuillfernAudioEffectPlugin::CopyPresetSlot(int from, int to)
{
    ChangeSlots("MQuillfernAudioEffectPlugin::CopyPresetSlot", {from, to},
                [&]
                {
                    const int current = slots.GetCurrentSlot();
                    if (from == to)
                        return;
                    if (to == current)
                        TakeSlot(slots.GetSlot(from));
                    else
                        slots.SetSlot(to, from == current ? KeepSlot() : slots.GetSlot(from));
                });
}

void MQuillfernAudioEffectPlugin::ChangeSlots(const char* routine,
                                              std::initializer_list<int> indices,
                                              const std::function<void()>& change)
{
    for (const int index : indices)
        if (index < 0 || index >= PresetSlots::Count)
            return;
    MTraced(routine, [&] { ReplaceState(change); });
    for (const MAutomationAdapter* const adapter : GetAdapters())
        SendAllAutomation(*adapter);
}

PresetSlots::State MQuillfernAudioEffectPlugin::KeepCurrentSlot()
{
    return MTraced("MQuillfernAudioEffectPlugin::KeepCurrentSlot",
                   [&]
                   {
                       const MLockGuard settings(GetSettingsLock());
                       return KeepSlot();
                   });
}

void MQuillfernAudioEffectPlugin::TakeCurrentSlot(const PresetSlots::State& state)
{
    ChangeSlots("MQuillfernAudioEffectPlugin::TakeCurrentSlot", {}, [&] { TakeSlot(state); });
}

void MQuillfernAudioEffectPlugin::ContinueInSlot(int index, const PresetSlots::State& left)
{
    const MLockGuard settings(GetSettingsLock());
    slots.Continue(index, left);
}

PresetSlots::State MQuillfernAudioEffectPlugin::KeepSlot()
{
    const auto state = std::make_shared<MXMLItem>("settings");
    // The higher rate belongs to the instance, not to the slot.
    MAudioEffectPluginToAudioPluginAdapter::StoreState({.storing = true, .item = *state});
    return state;
}

void MQuillfernAudioEffectPlugin::TakeSlot(const PresetSlots::State& slot)
{
    if (slot == nullptr) // there was no memory for its contents
        return;
    MXMLItem state("settings"); // a reader remembers what it found, and slots may share a tree
    state.CopyContents(*slot);
    MAudioEffectPluginToAudioPluginAdapter::TakeState({.storing = false, .item = state});
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
    if (slots.IsAnyEmpty())
        MGuarded("MQuillfernAudioEffectPlugin::TakeState", 0,
                 [&]
                 {
                     slots.FillEmpty(KeepSlot());
                     return 0;
                 });
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
