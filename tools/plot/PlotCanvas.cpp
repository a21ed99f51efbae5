#include "tools/plot/PlotCanvas.h"

#include "foundation/streams/Files.h"
#include "foundation/streams/MMemoryStream.h"
#include "gui/images/PNG.h"
#include "gui/text/MFont.h"

namespace
{

constexpr MColorOp Blend = MColorOp::Alphablend;

} // namespace

PlotCanvas::PlotCanvas(int width, int height) : bitmap(width, height), drawer(bitmap)
{
    drawer.FillRectangle(0, 0, width - 1, height - 1, plotstyle::Paper, MColorOp::Copy);
}

void PlotCanvas::Text(int x, int y, const MString& text, int height, MColor colour, Align align,
                      bool isBold)
{
    using namespace alignedtext;
    const MFont font({.height = height, .isBold = isBold});
    const int reach = bitmap.GetWidth();
    const int left = align == Align::Left ? x : align == Align::Right ? x - reach : x - reach / 2;
    const int flags = align == Align::Left ? 0 : align == Align::Right ? Right : Center;
    drawer.AlignedTextOut(font, left, y - height, left + reach, y + height, text,
                          flags | VCenter | SingleLine, colour, Blend);
}

void PlotCanvas::Line(double x1, double y1, double x2, double y2, MColor colour)
{
    for (const double lower : {0.0, 0.5})
    {
        drawer.MoveToF(x1, y1 + lower);
        drawer.LineToF(x2, y2 + lower, colour, Blend);
    }
}

void PlotCanvas::Save(const MString& fileName) const
{
    MMemoryStream png;
    images::SavePNG(bitmap, png);
    png.Seek(0, MStream::FromStart);
    files::ReplaceContents(fileName, png.GetData());
}
