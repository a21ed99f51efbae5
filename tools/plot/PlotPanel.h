#pragma once

#include <vector>

#include "gui/drawing/MRectangle.h"
#include "tools/plot/PlotCanvas.h"

/// One plot of a picture: a frame with a grid and numbers beside it.
class PlotPanel
{
public:
    /// A line of the grid and what stands at it.
    struct Tick
    {
        double place; ///< pixels from the left or from the bottom
        MString label;
    };

    /// @p area is what lies within the frame.
    PlotPanel(PlotCanvas& panelCanvas, const MRectangle& panelArea);

    const MRectangle& GetArea() const noexcept { return area; }
    /// Above the frame; @p detail stands behind it.
    void DrawCaption(const MString& caption, const MString& detail);
    /// Below everything else: paper and lines.
    void DrawGrid(const std::vector<Tick>& alongX, const std::vector<Tick>& alongY);
    /// Above everything else: frame and numbers. @p unit stands at the right end.
    void DrawFrame(const std::vector<Tick>& alongX, const std::vector<Tick>& alongY,
                   const MString& unitX, const MString& unitY);
    /// Ticks at round numbers from @p least to @p most, @p pixels apart, some @p spacing pixels
    /// from one to the next. Both ends may have one.
    static std::vector<Tick> MakeTicks(double least, double most, int pixels, int spacing);

private:
    PlotCanvas& canvas;
    MRectangle area;
};
