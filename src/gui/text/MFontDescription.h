#pragma once

#include "foundation/strings/MString.h"

/// What is asked of a font. Faces are compared as names are, without case.
struct MFontDescription
{
    static constexpr const char* DefaultFace = "Inter"; ///< packed with the library
    static constexpr int MaxSide = 1024;                ///< pixels

    /// The family; DefaultFace if there is none of this name.
    MString face = DefaultFace;
    int height = 13;     ///< pixels from the highest ascender to the lowest descender, 1 to MaxSide
    int width = 0;       ///< pixels, as if the font were of this height; 0 for the height itself
    bool isBold = false; ///< also if the family has no such face
    bool isItalic = false; ///< also if the family has no such face
    int space = 0;         ///< pixels between characters, which may overlap

    bool operator==(const MFontDescription&) const noexcept = default;
};
