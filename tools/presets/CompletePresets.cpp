#include "tools/presets/CompletePresets.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "persistence/MPluginConfiguration.h"
#include "persistence/presets/PresetTree.h"
#include "shell/MQuillfernAudioEffectPlugin.h"

namespace
{

constexpr const char* Unkept =
    "The plugin does not keep \"{0}\" as it stands; leave out what is as in a new plugin.";
constexpr const char* RootName = "settings"; // of a state

[[noreturn]] void Refuse(const char* text, const MString& subject)
{
    throw MException(MStringFormatter(text).Add(subject).Result(), MException::BadData);
}

/// A new plugin, whatever the user of this machine has settled for new ones.
std::unique_ptr<MQuillfernAudioEffectPlugin> CreatePlugin()
{
    MPluginConfiguration configuration{MString()};
    return MQuillfernAudioEffectPlugin::Create(configuration);
}

bool AreSame(const MString& given, const MString& stored)
{
    constexpr double Tolerance = 1e-6; // steps are kept in single precision
    double a = 0.0;
    double b = 0.0;
    if (given.ReadDouble(a) && stored.ReadDouble(b))
        return std::abs(a - b) <= Tolerance * std::max(1.0, std::abs(a));
    return given == stored;
}

/// Refuses an attribute that is misspelled or out of range, and a target that there is not: a load
/// passes over all of them. Zeros may be missing in @p stored.
void CheckTaken(const MXMLItem& given, const MXMLItem& stored, const MAudioPluginAutomation& plugin)
{
    for (const auto& [name, value] : given.GetAttributes())
    {
        if (!AreSame(value, stored.GetAttribute(name, "0")))
            Refuse(Unkept, name);
        if (name == "ParameterName" && !value.IsEmpty() && plugin.FindParameterByName(value) < 0)
            Refuse("There is no parameter \"{0}\".", value);
    }
    auto next = stored.GetSubItems().begin();
    for (const auto& item : given.GetSubItems())
    {
        next = std::find_if(next, stored.GetSubItems().end(),
                            [&item](const auto& candidate)
                            { return candidate->GetName() == item->GetName(); });
        if (next == stored.GetSubItems().end())
            Refuse(Unkept, item->GetName());
        CheckTaken(*item, **next++, plugin);
    }
}

bool IsSlot(const MXMLItem& item)
{
    return item.GetName().Length() == 7 && item.GetName().Mid(0, 6) == "Preset";
}

/// Makes @p state, which may lack what is as in a new plugin, all that a plugin keeps of it.
template <typename Keep>
void Complete(MXMLItem& state, Keep keep)
{
    const auto plugin = CreatePlugin();
    plugin->Store({.storing = false, .item = state});
    MXMLItem stored(RootName);
    keep(*plugin, stored);
    CheckTaken(state, stored, *plugin);
    state.CopyContents(stored);
}

void CompleteState(MXMLItem& state)
{
    for (const auto& item : state.GetSubItems())
        if (IsSlot(*item))
            Complete(*item, [](MQuillfernAudioEffectPlugin& plugin, MXMLItem& stored)
                     { stored.CopyContents(*plugin.KeepCurrentSlot()); });
    Complete(state, [](MQuillfernAudioEffectPlugin& plugin, MXMLItem& stored)
             { plugin.Store({.storing = true, .item = stored}); });
}

void CompletePreset(MXMLItem& preset)
{
    const MString name = presettree::GetName(preset);
    if (name.IsEmpty())
        Refuse("A preset of \"{0}\" has no name.", presettree::GetPath(*preset.GetParent()));
    MXMLItem state(RootName);
    state.CopyContents(preset);
    state.RemoveAttribute("name");
    try
    {
        CompleteState(state);
    }
    catch (const MException& failure)
    {
        throw MException(MStringFormatter("\"{0}\": {1}")
                             .Add(presettree::GetPath(preset))
                             .Add(failure.text)
                             .Result(),
                         failure.code);
    }
    preset.CopyContents(state);
    presettree::SetName(preset, name);
}

void CheckElements(const MXMLItem& folder)
{
    for (const auto& item : folder.GetSubItems())
        if (presettree::IsFolder(*item))
            CheckElements(*item);
        else if (!presettree::IsPreset(*item))
            Refuse("\"{0}\" is neither a preset nor a folder.", item->GetName());
}

} // namespace

void CompletePresets(MXMLItem& root)
{
    CheckElements(root);
    const std::vector<MXMLItem*> presets = presettree::ListPresets(root);
    for (MXMLItem* const preset : presets)
    {
        if (presettree::FindPreset(root, presettree::GetPath(*preset)) != preset)
            Refuse("There are two presets \"{0}\".", presettree::GetPath(*preset));
        CompletePreset(*preset);
    }
    presettree::CompressPresets(root);
}
