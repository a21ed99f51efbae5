#pragma once

#include <string>
#include <string_view>

#include "foundation/strings/MString.h"

/// The names of files where they are any bytes. What is UTF-8 becomes text; each other byte becomes
/// U+10FE00 plus its value, so that FileNameToBytes gives back exactly the same bytes.
MString FileNameFromBytes(std::string_view bytes);
std::string FileNameToBytes(const MString& name);
