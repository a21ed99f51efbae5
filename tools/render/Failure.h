#pragma once

#include <filesystem>
#include <string>

#include "foundation/threads/MException.h"

/// A failure to tell the user in one line; @p text is UTF-8.
MException Failure(const std::string& text);

/// The same about @p subject, an option or a file: "subject: text".
MException Failure(const std::string& subject, const std::string& text);

/// "No such file or directory" and the like, for a value of errno.
std::string SystemReason(int errorNumber);

/// @p path as it appears in messages.
std::string Quoted(const std::filesystem::path& path);
