#pragma once

#include <bitset>
#include <cstddef>

#include "foundation/strings/MString.h"

/// What is known of a face without opening its file.
struct FontFaceInfo
{
    static constexpr std::size_t PageCount = 256;
    static constexpr int PageSize = 256; ///< codes of the 16-bit plane
    static constexpr int RegularWeight = 400;
    static constexpr int SemiBoldWeight = 600; ///< from here on a face is bold
    static constexpr int BoldWeight = 700;
    static constexpr int MaxWeight = 1000;

    MString family;
    MString style; ///< as the font names it, such as "Semi Bold"
    MString file;  ///< path, or the name of a resource
    int index = 0; ///< in the file
    int weight = RegularWeight;
    bool isItalic = false;
    bool isFixedWidth = false;
    bool isPacked = false;        ///< a resource
    std::bitset<PageCount> pages; ///< those of which the face has a code or more

    /// Whether it is worth opening for @p code; nothing is known beyond the 16-bit plane.
    bool MayHave(char32_t code) const noexcept
    {
        const auto page = static_cast<std::size_t>(code / PageSize);
        return page >= PageCount || pages[page];
    }
};
