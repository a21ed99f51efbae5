#pragma once

#include <filesystem>

class MXMLItem;

/// Files that hold the settings of the plugin: an item tree under a root named "settings".
namespace statefile
{

/// Reads XML, plain or compressed, whichever it is, into @p root. @throws MException naming @p path
/// if it cannot be read, is no such tree, is larger than limits.h allows, or has another root.
void Load(const std::filesystem::path& path, MXMLItem& root);

/// Writes @p root as plain XML. @throws MException if that fails; an older file then stays.
void Save(const std::filesystem::path& path, const MXMLItem& root);

} // namespace statefile
