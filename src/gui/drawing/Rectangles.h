#pragma once

#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/MColorOp.h"

/// Rectangles with straight edges; none is clipped yet.
namespace drawing
{

/// One pixel wide, none of them painted twice.
void PaintFrame(const DrawingArea& area, const MRectangle& rectangle, MColor colour, MColorOp op);

/// Stores a colour that replaces all, instead of painting it.
void FillArea(const DrawingArea& area, const MRectangle& rectangle, MColor colour, MColorOp op);

/// Each row, or each column, in a colour of its own between @p first and @p last.
void FillGradient(const DrawingArea& area, const MRectangle& rectangle, MColor first, MColor last,
                  bool isHorizontal, MColorOp op);

} // namespace drawing
