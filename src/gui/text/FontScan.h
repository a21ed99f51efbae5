#pragma once

#include <functional>
#include <span>
#include <vector>

#include "gui/text/FontFaceInfo.h"

/// All faces that can be used of the fonts below @p folders, up to eight levels deep, sorted by
/// folder and name. A folder that is reached twice, as by a link, counts once. What can be known
/// without opening a font is taken from the file @p cacheName, which is brought up to date; if that
/// cannot be written, the next scan takes longer. Any thread; ends early, with nothing, once
/// @p mustStop says so.
std::vector<FontFaceInfo> ScanFonts(std::span<const MString> folders, const MString& cacheName,
                                    const std::function<bool()>& mustStop);
