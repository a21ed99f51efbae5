#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "foundation/streams/Files.h"
#include "foundation/strings/MString.h"

/// What each platform does with files in its own way, for the sources of this folder.
namespace filesystem
{

std::filesystem::path ToPath(const MString& name);
MString FromPath(const std::filesystem::path& path);

/// As fopen does it, for a file that programs started from here do not inherit. Null, with errno
/// set, if it fails.
std::FILE* OpenFile(const MString& name, const char* mode);
/// @p origin is one of MStream's.
bool SeekFile(std::FILE* file, std::int64_t offset, int origin) noexcept;
/// Negative if it fails.
std::int64_t GetFilePosition(std::FILE* file) noexcept;
/// Makes the file end at @p size; nothing may be buffered.
bool TruncateFile(std::FILE* file, std::int64_t size) noexcept;

/// Waits until what was written, with nothing left in the buffer, is on the disk; whether it is.
bool FlushToDisk(std::FILE* file) noexcept;
/// The same for the names in a folder, where they can be lost apart from the files.
void FlushFolder(const std::filesystem::path& folder) noexcept;
files::Stamp GetStamp(const std::filesystem::path& path) noexcept;

enum class LockResult
{
    Taken,
    Busy,
    Failed
};

/// Locks a file against all others that ask, of this process and of others. Does not wait.
LockResult TryLockFile(std::FILE* file) noexcept;
void UnlockFile(std::FILE* file) noexcept;

/// Has the desktop open a file or an address and does not wait for it; no shell sees the text.
/// Whether it could be started.
bool OpenOnDesktop(const MString& target);

} // namespace filesystem
