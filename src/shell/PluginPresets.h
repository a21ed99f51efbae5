#pragma once

#include "persistence/presets/ActivePresetList.h"
#include "persistence/presets/MPresetManagerT.h"
#include "shell/MAudioEffectPluginToAudioPluginAdapter.h"

/// The presets of the plugin as a whole, one after the other as hosts list programs, and those that
/// the user has put at hand. Owned by the plugin; GUI thread.
class PluginPresets
{
public:
    /// Of the files of the product.
    explicit PluginPresets(MAudioEffectPluginToAudioPluginAdapter& presetPlugin);
    /// Of files in @p folder.
    PluginPresets(MAudioEffectPluginToAudioPluginAdapter& presetPlugin, const MString& folder);

    /// The tree, for all that changes it.
    MPresetManagerBase& GetManager() noexcept { return manager; }
    /// The list is empty if its file cannot be read.
    const ActivePresetList& GetActivePresets() const noexcept { return active; }

    // These put a preset in force and tell the host all values. Blocks are silent meanwhile. They
    // throw MException as presettree::LoadPreset does, with the state from before.

    /// @p preset stands in the tree, and is then the current one.
    void Load(MXMLItem& preset);
    /// By its path, such as "Folder/Name". @throws MException (0) "Could not find preset \"{0}\"."
    void Load(const MString& path);
    /// The neighbour of the current preset, round at the ends; the outermost one while there is no
    /// current one. False if there are no presets.
    bool LoadNext();
    bool LoadPrevious();
    /// The one at @p index of GetActivePresets, which is then the chosen one: as it stands there,
    /// or the preset of the tree whose name it has. @throws MException (0) if there is none, too
    void LoadActive(int index);

private:
    /// The preset that the plugin's index names; null if there is none, or none has been loaded.
    MXMLItem* FindCurrent() const;
    bool LoadNeighbour(MXMLItem* (MPresetManagerBase::*find)(const MXMLItem*) const);
    void PutInForce(MXMLItem& preset);

    MAudioEffectPluginToAudioPluginAdapter& plugin;
    MPresetManagerT<MAudioEffectPluginToAudioPluginAdapter> manager;
    ActivePresetList active;
    bool isAnyLoaded = false; ///< so that the index means a preset even if it is 0
};
