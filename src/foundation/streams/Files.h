#pragma once

#include <vector>

#include "foundation/strings/MString.h"

/// What can be done to files and folders by their names. Where no code is named, a failure is an
/// MException (0) whose text names the file.
namespace files
{

struct Entry
{
    MString name; ///< without the folder
    bool isFolder;
};

/// Whether there is something of this name that is no folder.
bool FileExists(const MString& name);
/// Makes a folder and all those that lead to it; one that is there already is welcome.
void CreatePath(const MString& path);
/// Also to another folder; a file that stands in the place of @p newName goes.
void RenameFile(const MString& name, const MString& newName);
/// No folders.
void DeleteFile(const MString& name);
/// Of an empty folder.
void RemoveDirectory(const MString& path);
/// All that @p path holds, sorted by code units.
std::vector<Entry> ListDirectory(const MString& path);
/// Both with one separator between them, however many there were; the other one if one is empty.
MString PathJoin(const MString& path, const MString& name);
/// Opens an existing file or folder, an address that begins with "http://" or "https://", or a mail
/// address behind "mailto:" with the program that the desktop has for it. Nothing else is passed
/// on, and nothing to a shell. Returns at once.
void Execute(const MString& target);

} // namespace files
