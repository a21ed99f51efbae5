#include "persistence/presets/PresetTree.h"

#include <algorithm>

#include "foundation/streams/MMemoryStream.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/StorableTree.h"

namespace
{

constexpr const char* PresetName = "name";
constexpr const char* FolderName = "Name";
constexpr const char* CompressedKey = "compressed";
constexpr const char* ExchangeKey = "ExchangeIndex";

constexpr char16_t Separator = u'/';

void Compress(MXMLItem& preset)
{
    MMemoryStream packed;
    preset.SaveCompressed(packed, "utf-8");
    packed.Seek(0, MStream::FromStart);
    const MString name = preset.GetRequiredAttribute(PresetName);
    const bool isExchanged = preset.HasAttribute(ExchangeKey);
    const MString exchangeIndex = isExchanged ? preset.GetAttribute() : MString();
    preset.Clear();
    if (isExchanged)
        preset.SetAttribute(ExchangeKey, exchangeIndex);
    preset.SetAttribute(CompressedKey, 1);
    preset.SetAttribute(PresetName, name);
    preset.StoreBytes(packed.GetData(), false);
}

/// Whether it came to the end of @p folder.
bool CompressBelow(MXMLItem& folder, int& count)
{
    return std::ranges::all_of(folder.GetSubItems(),
                               [&count](const auto& item)
                               {
                                   if (!presettree::IsPreset(*item))
                                       return CompressBelow(*item, count);
                                   if (!item->HasAttribute(PresetName))
                                       return false;
                                   if (!item->HasAttribute(CompressedKey))
                                   {
                                       Compress(*item);
                                       ++count;
                                   }
                                   return true;
                               });
}

void ListBelow(const MXMLItem& folder, std::vector<MXMLItem*>& presets)
{
    for (const auto& item : folder.GetSubItems())
        if (presettree::IsPreset(*item))
            presets.push_back(item.get());
        else if (presettree::IsFolder(*item))
            ListBelow(*item, presets);
}

/// Unlike == of texts, by each unit.
bool AreSame(const MString& a, const MString& b)
{
    const auto widen = [](auto unit) { return static_cast<char16_t>(unit); };
    return a.IsSharedWith(b) ||
           a.WithCharacters(
               [&](auto left)
               {
                   return b.WithCharacters(
                       [&](auto right)
                       { return std::ranges::equal(left, right, {}, widen, widen); });
               });
}

/// Whether @p name stands in @p path from @p start on.
using Matching = bool (*)(const MString& path, int start, const MString& name);

MXMLItem* FindBelow(const MXMLItem& folder, const MString& path, int start, Matching matches)
{
    for (const auto& item : folder.GetSubItems())
    {
        const MString& name = presettree::GetName(*item);
        const int end = start + name.Length();
        if (end > path.Length() || !matches(path, start, name))
            continue;
        // Names may hold separators, too, so that more than one folder may lead on.
        if (presettree::IsPreset(*item) && end == path.Length())
            return item.get();
        if (presettree::IsFolder(*item) && path.CharAt(end) == Separator)
            if (MXMLItem* const found = FindBelow(*item, path, end + 1, matches))
                return found;
    }
    return nullptr;
}

bool AreNamesakes(const MXMLItem& a, const MXMLItem& b)
{
    return a.GetName() == b.GetName() && AreSame(presettree::GetName(a), presettree::GetName(b));
}

/// But for the blank before a text that has been read.
bool HaveSameContents(const MXMLItem& a, const MXMLItem& b)
{
    const auto textOf = [](const MXMLItem& item)
    {
        const MString& text = item.GetText();
        return text.CharAt(0) == u' ' ? text.Mid(1, text.Length()) : text;
    };
    return a.GetName() == b.GetName() && AreSame(textOf(a), textOf(b)) &&
           std::ranges::equal(a.GetAttributes(), b.GetAttributes(),
                              [](const MAttribute& left, const MAttribute& right) {
                                  return left.name == right.name &&
                                         AreSame(left.value, right.value);
                              }) &&
           std::ranges::equal(a.GetSubItems(), b.GetSubItems(),
                              [](const auto& left, const auto& right)
                              { return HaveSameContents(*left, *right); });
}

} // namespace

bool presettree::IsFolder(const MXMLItem& item) noexcept
{
    return item.GetName() == "Directory";
}

bool presettree::IsPreset(const MXMLItem& item) noexcept
{
    return item.GetName() == "preset";
}

const MString& presettree::GetName(const MXMLItem& item) noexcept
{
    static const MString none;
    const MString* const name = item.FindAttribute(PresetName); // in whatever case
    return name != nullptr ? *name : none;
}

void presettree::SetName(MXMLItem& item, const MString& name)
{
    item.SetAttribute(IsPreset(item) ? PresetName : FolderName, storabletree::DropUnstorable(name));
}

int presettree::CompressPresets(MXMLItem& root)
{
    int count = 0;
    return CompressBelow(root, count) ? count : 0;
}

void presettree::LoadPreset(MXMLItem& preset, MPresetBase& owner)
{
    if (!preset.HasAttribute(CompressedKey))
        return owner.Load(preset);
    const std::vector<std::byte> packed = preset.LoadBytes(false);
    MMemoryStream stream = MMemoryStream::Refer(packed);
    MXMLItem plain("");
    plain.LoadCompressed(stream);
    owner.Load(plain);
}

std::vector<MXMLItem*> presettree::ListPresets(const MXMLItem& root)
{
    std::vector<MXMLItem*> presets;
    ListBelow(root, presets);
    return presets;
}

MString presettree::GetPath(const MXMLItem& item)
{
    const MXMLItem* const folder = item.GetParent();
    if (folder == nullptr)
        return {};
    MString path = GetPath(*folder);
    if (folder->GetParent() != nullptr)
        path.Append(Separator);
    path.Append(GetName(item));
    return path;
}

MXMLItem* presettree::FindPreset(const MXMLItem& root, const MString& path)
{
    MXMLItem* const found = FindBelow(root, path, 0,
                                      [](const MString& whole, int start, const MString& name)
                                      { return AreSame(whole.Mid(start, name.Length()), name); });
    if (found != nullptr)
        return found;
    return FindBelow(root, path, 0,
                     [](const MString& whole, int start, const MString& name)
                     { return whole.Compare(start, name, 0, name.Length()) == 0; });
}

MXMLItem& presettree::FindCounterpart(const MXMLItem& item, MXMLItem& copy)
{
    const MXMLItem* const parent = item.GetParent();
    if (parent == nullptr)
        return copy;
    const auto& siblings = parent->GetSubItems();
    const auto place = std::ranges::find(siblings, &item, &std::unique_ptr<MXMLItem>::get);
    const auto& found = FindCounterpart(*parent, copy).GetSubItems();
    return *found[static_cast<std::size_t>(place - siblings.begin())];
}

MXMLItem* presettree::FindSame(const MXMLItem& item, MXMLItem& changedRoot)
{
    const MXMLItem* const parent = item.GetParent();
    if (parent == nullptr)
        return &changedRoot;
    MXMLItem* const folder = FindSame(*parent, changedRoot);
    if (folder == nullptr)
        return nullptr;
    std::vector<MXMLItem*> namesakes;
    for (const auto& candidate : folder->GetSubItems())
        if (AreNamesakes(*candidate, item))
            namesakes.push_back(candidate.get());
    const bool wasUnique = std::ranges::count_if(parent->GetSubItems(), [&item](const auto& sibling)
                                                 { return AreNamesakes(*sibling, item); }) == 1;
    if (wasUnique && namesakes.size() == 1)
        return namesakes.front();
    const auto found = std::ranges::find_if(namesakes, [&item](const MXMLItem* candidate)
                                            { return HaveSameContents(*candidate, item); });
    return found != namesakes.end() ? *found : nullptr;
}
