#pragma once

#include <filesystem>
#include <vector>

#include "foundation/modules/SystemPaths.h"
#include "foundation/strings/MString.h"

/// What each platform knows of this library, its user and its folders, for the sources of this
/// folder.
namespace modulesystem
{

/// The file of the library or program that this code is part of; empty if the system cannot tell.
std::filesystem::path GetLibraryPath();

/// The folder that an environment variable names; empty unless that is an absolute path.
std::filesystem::path GetFolderVariable(const char* name);

/// @throws std::system_error with the system's reason
std::filesystem::path FindFolder(systempaths::Kind kind);

/// As systempaths::GetFontFolders tells.
std::vector<std::filesystem::path> GetFontFolders();

/// "de", "de_AT" or "de_AT.UTF-8@euro"; empty if the user has set none.
MString GetUserLanguage();

} // namespace modulesystem
