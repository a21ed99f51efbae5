#pragma once

#include <vector>

#include "gui/text/MFont.h"

/// 16-bit units of a text from first on that stand on one line.
struct TextLine
{
    int first;
    int count;
    int width; ///< pixels

    bool operator==(const TextLine&) const noexcept = default;
};

/// Breaks @p text at line feeds, and at white space before a word that would pass @p width pixels;
/// the white space of such a break belongs to no line. A word that is wider by itself stands alone.
/// All on one line if @p isSingleLine. No lines for an empty text.
std::vector<TextLine> BreakLines(const MFont& font, const MString& text, int width,
                                 bool isSingleLine);
