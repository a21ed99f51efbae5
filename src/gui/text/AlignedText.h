#pragma once

#include <cstdint>

#include "gui/drawing/MColor.h"
#include "gui/drawing/MColorOp.h"
#include "gui/drawing/MRectangle.h"

class MDrawer;
class MFont;
class MString;

/// Text in a rectangle, as MDrawer::AlignedTextOut draws it.
struct AlignedText
{
    const MFont& font;
    const MString& text;
    MRectangle rectangle; ///< inclusive; nothing is drawn if it is inverted
    int flags;            ///< of alignedtext
    MColorOp op;

    /// Glyph by glyph, through MaskBlt. A shadow stands one pixel right of and below a font of more
    /// than 10 pixels, in the opposite colour with @p shadowStrength of its alpha.
    /// @throws std::bad_alloc, and nothing else
    void Draw(MDrawer& drawer, MColor colour, std::uint8_t shadowStrength) const;
};
