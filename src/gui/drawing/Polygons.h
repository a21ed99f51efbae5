#pragma once

#include <span>

#include "gui/drawing/DrawingArea.h"
#include "gui/drawing/MDrawer.h"

namespace drawing
{

/// The inside of a closed outline, as PolygonScanner finds it.
void PaintPolygon(const DrawingArea& area, std::span<const MPoint> outline, MColor colour,
                  MColorOp op);

} // namespace drawing
