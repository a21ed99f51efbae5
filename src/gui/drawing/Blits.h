#pragma once

#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/MColorOp.h"

class MAlphaMask;

/// Painting of images pixel by pixel; MDrawer tells what each does.
namespace drawing
{

/// @p rectangle is not clipped yet.
void PaintTiles(const DrawingArea& area, const MRectangle& rectangle, const MBitmap& source,
                const MRectangle& tile, MColor colour, MColorOp op);
void PaintBitmap(const DrawingArea& area, const MRectangle& rectangle, const MBitmap& source,
                 int sx, int sy, MColor colour, MColorOp op);
void PaintMask(const DrawingArea& area, const MRectangle& rectangle, const MAlphaMask& mask, int mx,
               int my, MColor colour, MColorOp op, bool invert);

} // namespace drawing
