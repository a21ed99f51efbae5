#include "shell/PluginPresets.h"

#include <algorithm>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "persistence/presets/PresetTree.h"

namespace
{

constexpr const char* Prefix = "Tonvale";

MException NotFound(const MString& name)
{
    return MException(MStringFormatter("Could not find preset \"{0}\".").Add(name).Result());
}

/// Wherever it lies; null if no preset has the name.
MXMLItem* FindByName(const MPresetManagerBase& manager, const MString& name)
{
    const std::vector<MXMLItem*> presets = manager.ListPresets();
    const auto found = std::ranges::find_if(presets, [&name](const MXMLItem* preset)
                                            { return presettree::GetName(*preset) == name; });
    return found == presets.end() ? nullptr : *found;
}

} // namespace

PluginPresets::PluginPresets(MAudioEffectPluginToAudioPluginAdapter& presetPlugin)
    : PluginPresets(presetPlugin, FindProductFolder())
{
}

PluginPresets::PluginPresets(MAudioEffectPluginToAudioPluginAdapter& presetPlugin,
                             const MString& folder)
    : plugin(presetPlugin),
      manager(presetPlugin, Prefix, folder),
      active(folder)
{
    try
    {
        active.Load();
    }
    catch (const MException&)
    {
        // The plugin works without.
    }
}

void PluginPresets::Load(MXMLItem& preset)
{
    PutInForce(preset);
    const std::vector<MXMLItem*> presets = manager.ListPresets();
    const auto place = std::ranges::find(presets, &preset) - presets.begin();
    plugin.SetCurrentPresetIndex(static_cast<int>(place));
    isAnyLoaded = true;
}

void PluginPresets::Load(const MString& path)
{
    MXMLItem* const preset = manager.Find(path);
    if (preset == nullptr)
        throw NotFound(path);
    Load(*preset);
}

bool PluginPresets::LoadNext()
{
    return LoadNeighbour(&MPresetManagerBase::FindNext);
}

bool PluginPresets::LoadPrevious()
{
    return LoadNeighbour(&MPresetManagerBase::FindPrevious);
}

bool PluginPresets::LoadNeighbour(MXMLItem* (MPresetManagerBase::*find)(const MXMLItem*) const)
{
    MXMLItem* const neighbour = (manager.*find)(FindCurrent());
    if (neighbour == nullptr)
        return false;
    Load(*neighbour);
    return true;
}

MXMLItem* PluginPresets::FindCurrent() const
{
    const std::vector<MXMLItem*> presets = manager.ListPresets();
    const int index = plugin.GetCurrentPresetIndex();
    const bool isThere = index >= 0 && index < static_cast<int>(presets.size()) &&
                         (index > 0 || isAnyLoaded); // a new plugin says 0 and means none
    return isThere ? presets[static_cast<std::size_t>(index)] : nullptr;
}

void PluginPresets::LoadActive(int index)
{
    const auto presets = active.Get();
    if (index < 0 || index >= static_cast<int>(presets.size()))
        throw NotFound(MString::FromInteger(index));
    const auto& [name, item] = presets[static_cast<std::size_t>(index)];
    const bool holdsState = !item->GetSubItems().empty() || item->GetAttributes().size() > 1;
    if (holdsState)
        PutInForce(*item);
    else if (MXMLItem* const path = manager.Find(name))
        Load(*path);
    else if (MXMLItem* const named = FindByName(manager, name))
        Load(*named);
    else
        throw NotFound(name);
    plugin.GetActivePresets().CurrentActivePreset = index;
}

void PluginPresets::PutInForce(MXMLItem& preset)
{
    manager.LoadPreset(preset);
    for (const MAutomationAdapter* const adapter : plugin.GetAdapters())
        plugin.SendAllAutomation(*adapter);
}
