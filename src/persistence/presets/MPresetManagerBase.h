#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "persistence/presets/PresetFile.h"

class MPresetBase;

/// Keeps the presets of one kind of object in folders, in memory and in one file.
///
/// A change takes what the file holds at that time, even if other managers or programs have written
/// it since, applies itself to it, and writes the whole anew. If it fails, memory and file keep
/// what they held; a crash or a full disk leaves the old file. A file that cannot be read is never
/// written over; one that is missing or empty takes nothing out of memory.
///
/// Items of the tree stand for folders and presets. They stay as long as they are not deleted, but
/// for when a change or LoadFile finds that others have written the file: then all of them are new
/// ones, and GetGeneration tells.
/// Owned by the object whose presets it keeps, or by its editor. GUI thread.
class MPresetManagerBase
{
public:
    /// In the folder of the product. Reads the file @p prefix + "presets.xml"; one that cannot be
    /// read counts as missing here, and LoadFile tells why. The owner has to outlive this.
    MPresetManagerBase(MPresetBase& presetOwner, const MString& prefix);
    MPresetManagerBase(MPresetBase& presetOwner, const MString& prefix, const MString& folder);
    MPresetManagerBase(const MPresetManagerBase&) = delete;
    MPresetManagerBase& operator=(const MPresetManagerBase&) = delete;
    virtual ~MPresetManagerBase();

    /// Reads the file if others have written it. @throws MException as PresetFile::ReadIfChanged
    /// does; the tree then stays
    void LoadFile();
    /// The topmost folder.
    MXMLItem& GetRoot() const noexcept { return *root; }
    /// Another number once all items are new ones.
    int GetGeneration() const noexcept { return generation; }

    // Changes return the item that they made or changed, as it stands in the tree then. All throw
    // MException as PresetFile does, and (0) "Could not find preset \"{0}\"." or "Could not find
    // folder \"{0}\"." if others have removed the item; the tree is then what they have written.

    /// Adds the present state of the owner at the end of @p folder.
    MXMLItem& AddPreset(MXMLItem& folder, const MString& name);
    /// Puts the present state of the owner in the place of the one in @p preset.
    MXMLItem& ReplacePreset(MXMLItem& preset);
    MXMLItem& RenamePreset(MXMLItem& preset, const MString& name) { return Rename(preset, name); }
    void DeletePreset(MXMLItem& preset) { Delete(preset); }
    MXMLItem& AddFolder(MXMLItem& parent, const MString& name);
    /// Not of the root.
    MXMLItem& RenameFolder(MXMLItem& folder, const MString& name) { return Rename(folder, name); }
    /// With all that it holds. Not the root.
    void DeleteFolder(MXMLItem& folder) { Delete(folder); }
    /// Puts what the file holds, whatever the name of its root, in the place of all presets and
    /// folders in @p folder.
    MXMLItem& Import(MXMLItem& folder, const MString& fileName);

    /// Writes @p folder to a file of its own, which it replaces. @throws MException as
    /// files::ReplaceContents does
    void Export(const MXMLItem& folder, const MString& fileName) const;
    /// Gives the preset to the owner. @throws MException as presettree::LoadPreset does
    void LoadPreset(MXMLItem& preset) const;

    /// All presets, depth first.
    std::vector<MXMLItem*> ListPresets() const;
    /// The preset behind @p current in this order, and round to the first one; also the first one
    /// if @p current is null or no preset of the tree. Null if there are none.
    MXMLItem* FindNext(const MXMLItem* current) const;
    /// Likewise the other way.
    MXMLItem* FindPrevious(const MXMLItem* current) const;
    /// By its path, such as "Folder/Name"; null if there is none.
    MXMLItem* Find(const MString& path) const;
    static MString GetPath(const MXMLItem& item);

private:
    using Operation = std::function<MXMLItem&(MXMLItem& item)>;

    /// Does @p operation to @p item in the file and, once it is written, in the tree.
    MXMLItem& Change(MXMLItem& item, const Operation& operation);
    void Adopt(std::unique_ptr<MXMLItem> newRoot) noexcept;
    MXMLItem& Rename(MXMLItem& item, const MString& name);
    void Delete(MXMLItem& item);
    /// The present state of the owner as a preset.
    std::unique_ptr<MXMLItem> StoreOwner(const MString& name);

    MPresetBase& owner;
    PresetFile file;
    std::unique_ptr<MXMLItem> root; ///< never null
    int generation = 0;
};
