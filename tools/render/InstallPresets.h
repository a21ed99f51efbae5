#pragma once

#include <filesystem>
#include <iosfwd>

/// Adds those folders of the presets in @p source that the presets of the user lack, by their
/// names; what the user has stays as it is. Tells in @p report what was added.
/// @throws MException if one of the files cannot be read or written; each folder is there as a
/// whole or not at all
void InstallPresets(const std::filesystem::path& source, std::ostream& report);
