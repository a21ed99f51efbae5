#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>

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

/// Has the desktop open a file or an address and does not wait for it; no shell sees the text.
/// Whether it could be started.
bool OpenOnDesktop(const MString& target);

} // namespace filesystem
