#pragma once

#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/MColorOp.h"

namespace drawing
{

/// From (x1, y1) to (x2, y2). Along the longer axis, each step shares its coverage between two
/// pixels; the last pixel has all. The line is first cut to the clip and then drawn between the
/// places where it enters and leaves.
void PaintLine(const DrawingArea& area, int x1, int y1, int x2, int y2, MColor colour, MColorOp op);

/// The same between any places: samples at a distance of 1, each shared between four pixels.
void PaintPreciseLine(const DrawingArea& area, double x1, double y1, double x2, double y2,
                      MColor colour, MColorOp op);

} // namespace drawing
