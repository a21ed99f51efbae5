#include "persistence/presets/MPresetManagerBase.h"

#include <algorithm>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/PresetTree.h"
#include "persistence/presets/StorableTree.h"

namespace
{

MString FileNameOf(const MString& prefix)
{
    MString name = prefix;
    name.Append("presets.xml");
    return name;
}

MException NotFound(const MXMLItem& item)
{
    return MException(MStringFormatter(presettree::IsPreset(item)
                                           ? "Could not find preset \"{0}\"."
                                           : "Could not find folder \"{0}\".")
                          .Add(presettree::GetPath(item))
                          .Result());
}

void AddCopy(const MXMLItem& item, MXMLItem& folder)
{
    folder.AddSubItem(item.GetName()).CopyContents(item);
}

} // namespace

MPresetManagerBase::MPresetManagerBase(MPresetBase& presetOwner, const MString& prefix)
    : MPresetManagerBase(presetOwner, prefix, FindProductFolder())
{
}

MPresetManagerBase::MPresetManagerBase(MPresetBase& presetOwner, const MString& prefix,
                                       const MString& folder)
    : owner(presetOwner),
      file(folder, FileNameOf(prefix)),
      root(std::make_unique<MXMLItem>(PresetFile::RootName))
{
    try
    {
        LoadFile();
    }
    catch (const MException&)
    {
        // The presets are not at hand; who asks for them will be told.
    }
}

MPresetManagerBase::~MPresetManagerBase() = default;

void MPresetManagerBase::LoadFile()
{
    if (std::unique_ptr<MXMLItem> changed = file.ReadIfChanged())
        Adopt(std::move(changed));
}

MXMLItem& MPresetManagerBase::AddPreset(MXMLItem& folder, const MString& name)
{
    const std::unique_ptr<MXMLItem> preset = StoreOwner(name);
    return Change(folder,
                  [&](MXMLItem& item) -> MXMLItem&
                  {
                      AddCopy(*preset, item);
                      return *item.GetSubItems().back();
                  });
}

MXMLItem& MPresetManagerBase::ReplacePreset(MXMLItem& preset)
{
    const std::unique_ptr<MXMLItem> replacement = StoreOwner(presettree::GetName(preset));
    return Change(preset,
                  [&](MXMLItem& item) -> MXMLItem&
                  {
                      item.CopyContents(*replacement);
                      return item;
                  });
}

MXMLItem& MPresetManagerBase::AddFolder(MXMLItem& parent, const MString& name)
{
    return Change(parent,
                  [&](MXMLItem& item) -> MXMLItem&
                  {
                      MXMLItem& added = item.AddSubItem("Directory");
                      presettree::SetName(added, name);
                      return added;
                  });
}

MXMLItem& MPresetManagerBase::Import(MXMLItem& folder, const MString& fileName)
{
    const std::unique_ptr<MXMLItem> imported = ReadPresetTree(fileName);
    if (imported == nullptr)
        throw MException("The XML does not contain any elements.", MException::BadData);
    return Change(folder,
                  [&](MXMLItem& item) -> MXMLItem&
                  {
                      while (!item.GetSubItems().empty())
                          item.RemoveSubItem(*item.GetSubItems().back());
                      for (const auto& subItem : imported->GetSubItems())
                          AddCopy(*subItem, item);
                      return item;
                  });
}

void MPresetManagerBase::Export(const MXMLItem& folder, const MString& fileName) const
{
    MMemoryStream written;
    folder.Save(written, false, "utf-8");
    written.Seek(0, MStream::FromStart);
    files::ReplaceContents(fileName, written.GetData());
}

void MPresetManagerBase::LoadPreset(MXMLItem& preset) const
{
    presettree::LoadPreset(preset, owner);
}

std::vector<MXMLItem*> MPresetManagerBase::ListPresets() const
{
    return presettree::ListPresets(*root);
}

MXMLItem* MPresetManagerBase::FindNext(const MXMLItem* current) const
{
    const std::vector<MXMLItem*> presets = ListPresets();
    if (presets.empty())
        return nullptr;
    const auto found = std::ranges::find(presets, current);
    return found == presets.end() || *found == presets.back() ? presets.front() : *(found + 1);
}

MXMLItem* MPresetManagerBase::FindPrevious(const MXMLItem* current) const
{
    const std::vector<MXMLItem*> presets = ListPresets();
    if (presets.empty())
        return nullptr;
    const auto found = std::ranges::find(presets, current);
    return found == presets.end() || found == presets.begin() ? presets.back() : *(found - 1);
}

MXMLItem* MPresetManagerBase::Find(const MString& path) const
{
    return presettree::FindPreset(*root, path);
}

MString MPresetManagerBase::GetPath(const MXMLItem& item)
{
    return presettree::GetPath(item);
}

MXMLItem& MPresetManagerBase::Change(MXMLItem& item, const Operation& operation)
{
    const MFileLock others = file.Lock();
    MXMLItem* target = &item;
    if (std::unique_ptr<MXMLItem> changed = file.ReadIfChanged())
    {
        target = presettree::FindSame(item, *changed);
        const MException failure = NotFound(item); // while there is the item
        Adopt(std::move(changed));
        if (target == nullptr)
            throw failure;
    }

    // First to a copy, whose texts are shared: the items of the tree stay if it cannot be written.
    MXMLItem next(root->GetName());
    next.CopyContents(*root);
    operation(presettree::FindCounterpart(*target, next));
    presettree::CompressPresets(next);
    file.Write(next);

    MXMLItem& result = operation(*target);
    presettree::CompressPresets(*root);
    return result;
}

void MPresetManagerBase::Adopt(std::unique_ptr<MXMLItem> newRoot) noexcept
{
    root = std::move(newRoot);
    ++generation;
}

MXMLItem& MPresetManagerBase::Rename(MXMLItem& item, const MString& name)
{
    return Change(item,
                  [&](MXMLItem& renamed) -> MXMLItem&
                  {
                      presettree::SetName(renamed, name);
                      return renamed;
                  });
}

void MPresetManagerBase::Delete(MXMLItem& item)
{
    if (item.GetParent() == nullptr)
        return;
    Change(item,
           [](MXMLItem& deleted) -> MXMLItem&
           {
               MXMLItem& folder = *deleted.GetParent();
               folder.RemoveSubItem(deleted);
               return folder;
           });
}

std::unique_ptr<MXMLItem> MPresetManagerBase::StoreOwner(const MString& name)
{
    auto preset = std::make_unique<MXMLItem>("preset");
    owner.Store(*preset);
    preset->SetName("preset"); // whatever the owner made of it
    storabletree::DropUnstorable(*preset);
    presettree::SetName(*preset, name);
    return preset;
}
