#pragma once

#include "foundation/strings/MString.h"

class MResourcePack;

/// Adds all files below @p folder under their names from there on, with "/" between the parts. Each
/// folder's entries are sorted by code units, so that the same files make the same pack. What
/// begins with "." stays out.
/// @throws MException for a file without contents, which would count as missing, and as files and
/// streams do
void PackFolder(MResourcePack& pack, const MString& folder);
