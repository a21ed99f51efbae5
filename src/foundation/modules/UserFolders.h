#pragma once

#include <string>
#include <string_view>

/// Looks up a folder of the user ("DESKTOP", "DOCUMENTS"...) in @p text, the contents of the file
/// user-dirs.dirs. That file is a shell script by its form, of which only lines such as
/// XDG_DESKTOP_DIR="$HOME/Desktop" count: with a value in double quotes that is absolute or begins
/// with "$HOME", and nothing to expand behind that. Of several lines the last counts.
/// @p home is an absolute path. Answers an absolute path too, or an empty text.
std::string FindUserFolder(std::string_view text, std::string_view name, std::string_view home);
