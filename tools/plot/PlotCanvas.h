#pragma once

#include "foundation/strings/MString.h"
#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"
#include "tools/plot/PlotStyle.h"

/// Paper to draw a picture on, with the few things that all pictures need.
class PlotCanvas
{
public:
    enum class Align
    {
        Left,
        Centre,
        Right,
    };

    PlotCanvas(int width, int height);
    PlotCanvas(const PlotCanvas&) = delete;
    PlotCanvas& operator=(const PlotCanvas&) = delete;

    MDrawer& GetDrawer() noexcept { return drawer; }
    /// Calls @p draw, which changes nothing outside @p area.
    template <typename Draw>
    void DrawWithin(const MRectangle& area, Draw&& draw)
    {
        drawer.SetClipRect(area);
        draw();
        drawer.SetClipRect({0, 0, bitmap.GetWidth() - 1, bitmap.GetHeight() - 1});
    }
    /// One line from @p x on, round it or up to it; @p y is the middle of its height.
    void Text(int x, int y, const MString& text, int height, MColor colour, Align align,
              bool isBold = false);
    /// A line 1.5 pixels wide.
    void Line(double x1, double y1, double x2, double y2, MColor colour);
    /// Puts the picture in the place of a PNG file. @throws MException if it cannot be written
    void Save(const MString& fileName) const;

private:
    MBitmap bitmap;
    MDrawerToMBitmap drawer;
};
