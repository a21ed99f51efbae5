#include "gui/drawing/FillBitmap.h"

#include "foundation/threads/MException.h"
#include "gui/drawing/MBitmap.h"

void FillBitmap(MDrawer& drawer, int x1, int y1, int x2, int y2, const MBitmap* source,
                MBitmapFill fill, MColor colour, MColorOp op)
{
    if (source == nullptr || source->IsEmpty())
        return;
    const int right = source->GetWidth() - 1;
    const int bottom = source->GetHeight() - 1;
    switch (fill)
    {
    case MBitmapFill::Stretch:
        return drawer.StretchBlt(x1, y1, x2, y2, source, 0, 0, right, bottom, colour, op);
    case MBitmapFill::HPattern:
        return drawer.StretchBltV(x1, y1, x2, y2, source, 0, 0, right, bottom, colour, op);
    case MBitmapFill::VPattern:
        return drawer.StretchBltH(x1, y1, x2, y2, source, 0, 0, right, bottom, colour, op);
    case MBitmapFill::Pattern:
        return drawer.PatBlt(x1, y1, x2, y2, source, 0, 0, right, bottom, colour, op);
    }
    throw MException("Invalid bitmap layout flags specified for processing.",
                     MException::BadArgument);
}
