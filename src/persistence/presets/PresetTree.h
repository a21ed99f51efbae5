#pragma once

#include <vector>

#include "foundation/xml/MXMLItem.h"

class MPresetBase;

/// Trees of presets: folders are items "Directory" with the attribute "Name", presets are items
/// "preset" with the attribute "name". A preset holds the state of its owner, or, where it has the
/// attribute "compressed", the same item in hexadecimal digits, as SaveCompressed wrote it.
/// Any number of siblings may have the same name, and names hold any characters.
namespace presettree
{

bool IsFolder(const MXMLItem& item) noexcept;
bool IsPreset(const MXMLItem& item) noexcept;
/// Of a folder or a preset; empty for the root and for an item without.
const MString& GetName(const MXMLItem& item) noexcept;
void SetName(MXMLItem& item, const MString& name);

/// Compresses the presets below @p root that are not. Stops at the first one without a name.
/// Returns how many it compressed, 0 if it stopped. @throws MException as
/// MXMLItem::SaveCompressed does
int CompressPresets(MXMLItem& root);
/// Hands the state in @p preset to @p owner. @throws MException as MPresetBase::Load,
/// MXMLItem::LoadBytes and MXMLItem::LoadCompressed do; the owner has then kept its state
void LoadPreset(MXMLItem& preset, MPresetBase& owner);

/// All presets below @p root in the order of the file: depth first.
std::vector<MXMLItem*> ListPresets(const MXMLItem& root);
/// The names of the folders and of @p item itself, with "/" between them.
MString GetPath(const MXMLItem& item);
/// The first preset whose GetPath is @p path; failing that, one that differs in case or diacritics
/// alone; or null.
MXMLItem* FindPreset(const MXMLItem& root, const MString& path);

/// What stands in @p copy, which was copied from the root of @p item, where @p item stands.
MXMLItem& FindCounterpart(const MXMLItem& item, MXMLItem& copy);
/// What has become of @p item in @p changedRoot, which may have been changed by others. Names tell
/// the items on the way; where several have the same one, only one of the same contents will do.
/// Null if there is none.
MXMLItem* FindSame(const MXMLItem& item, MXMLItem& changedRoot);

} // namespace presettree
