// Draws every primitive in every operation onto one sheet, for the eye: rows of operations, columns
// of primitives, each over the same background with a transparent edge.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>

#include "foundation/strings/FileNames.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MAlphaMask.h"
#include "gui/text/MFont.h"
#include "tools/plot/PlotCanvas.h"

namespace
{

constexpr int CellWidth = 88; // pixels
constexpr int CellHeight = 64;
constexpr int Gap = 6;
constexpr int NameWidth = 190;
constexpr int HeadHeight = 92;
constexpr int Margin = 24;
constexpr int Inset = 8; ///< of what is drawn, within its cell

constexpr MColor Main(250, 140, 40, 210);
constexpr MColor Second(40, 90, 230, 210);

/// What is blitted and written with.
struct Sources
{
    static constexpr int Size = 40; ///< pixels of the picture

    /// The picture is a disc that fades out, on nothing.
    Sources()
    {
        for (int y = 0; y < Size; ++y)
            for (int x = 0; x < Size; ++x)
            {
                const int right = 2 * x - Size;
                const int down = 2 * y - Size;
                const int alpha = 255 - 255 * (right * right + down * down) / (Size * Size);
                *picture.GetRow(y, x) = MColor(6 * x, 255 - 6 * y, 128, alpha > 0 ? alpha : 0);
            }
        picture.ToAlphaMask(mask);
    }

    MBitmap picture{Size, Size};
    MAlphaMask mask;
    MFont font{{.height = 22, .isBold = true}};
};

/// A primitive in the rectangle from 0, 0 to right, bottom.
struct Primitive
{
    const char* name;
    void (*draw)(MDrawer& drawer, const Sources& sources, int right, int bottom, MColorOp op);
};

using D = MDrawer;
using S = Sources;

constexpr Primitive Primitives[] = {
    {"FillRectangle",
     [](D& d, const S&, int r, int b, MColorOp op) { d.FillRectangle(0, 0, r, b, Main, op); }},
    {"Gradient", [](D& d, const S&, int r, int b, MColorOp op)
     { d.FillRectangleGradient(0, 0, r, b, Main, Second, 1, op); }},
    {"Rectangle",
     [](D& d, const S&, int r, int b, MColorOp op) { d.Rectangle(0, 0, r, b, Main, op); }},
    {"RoundRectangle",
     [](D& d, const S&, int r, int b, MColorOp op) { d.RoundRectangle(0, 0, r, b, 14, Main, op); }},
    {"FillRoundRect.", [](D& d, const S&, int r, int b, MColorOp op)
     { d.FillRoundRectangle(0, 0, r, b, 14, Main, op); }},
    {"Circle",
     [](D& d, const S&, int r, int b, MColorOp op) { d.Circle(r / 2, b / 2, b / 2, Main, op); }},
    {"FillCircle", [](D& d, const S&, int r, int b, MColorOp op)
     { d.FillCircle(r / 2, b / 2, b / 2, Main, op); }},
    {"LineTo",
     [](D& d, const S&, int r, int b, MColorOp op)
     {
         for (int x = 0; x <= r; x += 9)
         {
             d.MoveTo(r / 2, 0);
             d.LineTo(x, b, Main, op);
         }
     }},
    {"LineToF",
     [](D& d, const S&, int r, int b, MColorOp op)
     {
         for (double x = 0.0; x <= r; x += 9.3)
         {
             d.MoveToF(r * 0.5, 0.0);
             d.LineToF(x, b, Main, op);
         }
     }},
    {"PolyLine",
     [](D& d, const S&, int r, int b, MColorOp op)
     {
         const MPoint points[] = {{0, b}, {r / 4, 0}, {r / 2, b}, {3 * r / 4, 0}, {r, b}};
         d.PolyLine(points, Main, op);
     }},
    {"FillPolygon",
     [](D& d, const S&, int r, int b, MColorOp op)
     {
         const MPoint star[] = {{r / 2, 0}, {r - 12, b}, {0, b / 3}, {r, b / 3}, {12, b}};
         d.FillPolygon(star, Main, op);
     }},
    {"BitBlt", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.BitBlt(0, 0, r, b, &s.picture, 0, 0, MColor(0, 0, 0), op); }},
    {"PatBlt", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.PatBlt(0, 0, r, b, &s.picture, 0, 0, 39, 39, MColor(0, 0, 0), op); }},
    {"StretchBlt", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.StretchBlt(0, 0, r, b, &s.picture, 0, 0, 39, 39, MColor(0, 0, 0), op); }},
    {"StretchBltH", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.StretchBltH(0, 0, r, b, &s.picture, 0, 0, 39, 19, MColor(0, 0, 0), op); }},
    {"StretchBltV", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.StretchBltV(0, 0, r, b, &s.picture, 0, 0, 19, 39, MColor(0, 0, 0), op); }},
    {"AlignedBlt", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.AlignedBlt(0, 0, r, b, &s.picture, 0, 0, 39, 39, 0, MColor(0, 0, 0), op); }},
    {"MaskBlt", [](D& d, const S& s, int r, int b, MColorOp op)
     { d.MaskBlt(0, 0, r, b, &s.mask, 0, 0, Main, op); }},
    {"AlignedTextOut",
     [](D& d, const S& s, int r, int b, MColorOp op)
     {
         d.AlignedTextOut(s.font, 0, 0, r, b, "Text", alignedtext::Center | alignedtext::VCenter,
                          Main, op);
     }},
};

constexpr int ColumnCount = static_cast<int>(std::size(Primitives));
constexpr int SheetWidth = 2 * Margin + NameWidth + ColumnCount * (CellWidth + Gap);

/// Dark to bright from left to right, three colours from top to bottom, transparent at the right.
void DrawBackground(MDrawer& drawer)
{
    for (int y = 0; y < CellHeight; ++y)
        for (int x = 0; x < CellWidth; ++x)
        {
            const int level = 255 * x / (CellWidth - 1);
            const int band = 3 * y / CellHeight;
            const MColor colour(band == 0 ? level : level / 2, band == 1 ? level : level / 2,
                                band == 2 ? level : level / 2, x > CellWidth * 4 / 5 ? 60 : 255);
            drawer.SetPixel(x, y, colour);
        }
}

void DrawSheet(const MString& fileName)
{
    constexpr int RowCount = static_cast<int>(MColorOp::AddAndOverflow) + 1;
    PlotCanvas canvas(SheetWidth, HeadHeight + RowCount * (CellHeight + Gap) + Margin);
    const Sources sources;
    for (int column = 0; column < ColumnCount; ++column)
    {
        const int left = Margin + NameWidth + column * (CellWidth + Gap);
        canvas.Text(left + CellWidth / 2, HeadHeight - 18 - column % 2 * 20,
                    Primitives[column].name, 14, plotstyle::Ink, PlotCanvas::Align::Centre);
    }
    for (int row = 0; row < RowCount; ++row)
    {
        const auto op = static_cast<MColorOp>(row);
        const int top = HeadHeight + row * (CellHeight + Gap);
        canvas.Text(Margin, top + CellHeight / 2, NameOf(op), plotstyle::LabelHeight,
                    plotstyle::Ink, PlotCanvas::Align::Left);
        for (int column = 0; column < ColumnCount; ++column)
        {
            const int left = Margin + NameWidth + column * (CellWidth + Gap);
            MDrawer cell(&canvas.GetDrawer(), left, top, CellWidth, CellHeight);
            DrawBackground(cell);
            MDrawer inner(&cell, Inset, Inset);
            Primitives[column].draw(inner, sources, CellWidth - 2 * Inset, CellHeight - 2 * Inset,
                                    op);
        }
    }
    canvas.Text(Margin, 40, "Drawing", plotstyle::TitleHeight, plotstyle::Ink,
                PlotCanvas::Align::Left, true);
    canvas.Save(fileName);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
    {
        std::fprintf(stderr, "usage: tonvale-gallery FILE.png\n");
        return EXIT_FAILURE;
    }
    try
    {
        DrawSheet(FileNameFromBytes(arguments[1]));
        return EXIT_SUCCESS;
    }
    catch (const MException& failure)
    {
        std::fprintf(stderr, "tonvale-gallery: %s\n", failure.text.ToUTF8().c_str());
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "tonvale-gallery: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
