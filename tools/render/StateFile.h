#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

class MXMLItem;

/// Files that hold the state of a plugin. That of this system, settings, is an item tree under a
/// root named "settings", which plugins give and take compressed; of others it is any bytes.
namespace statefile
{

/// Whether @p state is settings, compressed.
bool IsSettings(std::span<const std::byte> state);

/// Reads settings from XML, plain or compressed, whichever it is. @throws MException naming @p path
/// if it cannot be read, is no such tree, is larger than limits.h allows, or has another root.
std::vector<std::byte> LoadSettings(const std::filesystem::path& path);
/// Reads any file. @throws MException naming @p path
std::vector<std::byte> Load(const std::filesystem::path& path);

/// @p settings, compressed.
std::vector<std::byte> Pack(const MXMLItem& settings);

/// Writes @p state, settings as plain XML. @throws MException if that fails; an older file then
/// stays.
void Save(const std::filesystem::path& path, std::span<const std::byte> state);

} // namespace statefile
