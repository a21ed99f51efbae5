#pragma once

#include <vector>

#include "foundation/strings/MString.h"

/// Where the system and the user keep what programs share.
/// The environment decides, so that nothing is remembered between calls. Any thread; may read
/// files.
namespace systempaths
{

/// On Windows these are the folders of their names. Elsewhere they follow the conventions of
/// desktops, by which a path that is not absolute does not count.
enum class Kind
{
    Data,                  ///< the first of XDG_DATA_DIRS
    UserData,              ///< QUILLFERN_DATA, everywhere; else XDG_DATA_HOME
    Documents,             ///< what the user shares with all others, failing that UserDocuments
    UserDocuments,         ///< home if the user has none
    ProgramFiles,          ///< "lib" where this is installed
    Components,            ///< "share" where this is installed
    StartMenu,             ///< "applications" in Data
    UserStartMenu,         ///< "applications" in UserData
    StartMenuPrograms,     ///< StartMenu
    UserStartMenuPrograms, ///< UserStartMenu
    Desktop,               ///< UserDesktop
    UserDesktop,           ///< "Desktop" in home if the user has named none
    System,                ///< the system's settings; the folder of Windows
    Fonts,                 ///< the first one there is
    Temp,                  ///< TMPDIR; on Windows failing that "temp" in System
};

/// The path as the system tells it; nothing is created. @throws MException (0) "Could not retrieve
/// system path." and the system's reason, as without a home folder
MString Get(Kind kind);

/// All folders in which the user and the system keep fonts, the user's first. Some of them may not
/// exist.
std::vector<MString> GetFontFolders();

/// What all programs of this maker share, "Quillfern" in UserData. Created unless it is there.
/// @throws MException (0) as Get and files::CreatePath do
MString GetFamilyFolder();

} // namespace systempaths
