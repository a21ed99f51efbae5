#pragma once

#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/MColorOp.h"

namespace drawing
{

/// Scales @p part of the source to @p rectangle, first corner to first and last to last corner.
/// Each pixel mixes the four around its place in the source, first along x and then along y, and
/// loses up to two steps by it. Beyond the source, on the left and above, its edge goes on; nothing
/// is drawn where the place lies at its right or lower end or beyond.
/// Steps and places are floats, and clipping moves the first place: a clipped picture may differ
/// from the whole one by what floats round.
void PaintStretched(const DrawingArea& area, const MRectangle& rectangle, const MBitmap& source,
                    const MRectangle& part, MColor colour, MColorOp op);

} // namespace drawing
