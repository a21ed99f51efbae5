#pragma once

#include "gui/drawing/MDrawer.h"

/// Covers the rectangle with the whole of @p source; an empty or null one draws nothing.
/// @throws MException (2) "Invalid bitmap layout flags specified for processing." for a @p fill
/// that is none; nothing is drawn then
void FillBitmap(MDrawer& drawer, int x1, int y1, int x2, int y2, const MBitmap* source,
                MBitmapFill fill, MColor colour, MColorOp op);
