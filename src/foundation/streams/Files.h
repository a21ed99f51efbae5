#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
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

/// Tells the contents of a file from those before: another one after each ReplaceContents, and as
/// far as the clock of the file system goes after each write.
struct Stamp
{
    std::int64_t modified = 0; ///< in units of the system
    std::int64_t size = -1;    ///< bytes; -1 if there is no such file
    std::uint64_t id = 0;      ///< of the file, whatever its name; 0 where files have none

    bool operator==(const Stamp&) const = default;
};

/// Whether there is something of this name that is no folder.
bool FileExists(const MString& name);
/// Makes a folder and all those that lead to it; one that is there already is welcome.
void CreatePath(const MString& path);
/// One look at the folder, the file stays closed.
Stamp GetStamp(const MString& name) noexcept;
/// Makes @p contents the whole of a file, new or old, or leaves it as it is: they go to a new file
/// beside it, on to the disk, and then in its place. Neither a full disk nor a crash leaves a part
/// of them under this name. Rights stay; a link stays, and what it points to is replaced.
/// @throws MException (257) "File \"{0}\" could not be created. Make sure there is no
/// write-protected file already existing." or (0) "Error writing to file \"{0}\". Probably disk
/// full."
void ReplaceContents(const MString& name, std::span<const std::byte> contents);
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
