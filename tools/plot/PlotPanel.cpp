#include "tools/plot/PlotPanel.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr MColorOp Blend = MColorOp::Alphablend;
constexpr int Gap = 10; ///< pixels between the frame and what stands beside it

/// The round number nearest to @p step that is 1, 2 or 5 times a power of ten.
double RoundStep(double step)
{
    const double power = std::pow(10.0, std::floor(std::log10(step)));
    const double share = step / power;
    return power * (share < 1.5 ? 1.0 : share < 3.5 ? 2.0 : share < 7.5 ? 5.0 : 10.0);
}

MString NumberText(double number, double step)
{
    const int decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 9);
    return MString::FromDouble(std::abs(number) < step * 1e-6 ? 0.0 : number, decimals);
}

int Round(double place)
{
    return static_cast<int>(std::lround(place));
}

} // namespace

PlotPanel::PlotPanel(PlotCanvas& panelCanvas, const MRectangle& panelArea)
    : canvas(panelCanvas),
      area(panelArea)
{
}

void PlotPanel::DrawCaption(const MString& caption, const MString& detail)
{
    const int y = area.top - 2 * Gap;
    canvas.Text(area.left, y, caption, plotstyle::CaptionHeight, plotstyle::Ink,
                PlotCanvas::Align::Left, true);
    canvas.Text(area.right, y, detail, plotstyle::LabelHeight, plotstyle::FaintInk,
                PlotCanvas::Align::Right);
}

void PlotPanel::DrawGrid(const std::vector<Tick>& alongX, const std::vector<Tick>& alongY)
{
    MDrawer& drawer = canvas.GetDrawer();
    for (const Tick& tick : alongX)
    {
        const int x = area.left + Round(tick.place);
        drawer.FillRectangle(x, area.top, x, area.bottom, plotstyle::Grid, Blend);
    }
    for (const Tick& tick : alongY)
    {
        const int y = area.bottom - Round(tick.place);
        drawer.FillRectangle(area.left, y, area.right, y, plotstyle::Grid, Blend);
    }
}

void PlotPanel::DrawFrame(const std::vector<Tick>& alongX, const std::vector<Tick>& alongY,
                          const MString& unitX, const MString& unitY)
{
    using enum PlotCanvas::Align;
    canvas.GetDrawer().Rectangle(area.left - 1, area.top - 1, area.right + 1, area.bottom + 1,
                                 plotstyle::Frame, Blend);
    const int below = area.bottom + Gap + plotstyle::LabelHeight / 2;
    const auto label = [this](int x, int y, const MString& text, PlotCanvas::Align align)
    { canvas.Text(x, y, text, plotstyle::LabelHeight, plotstyle::FaintInk, align); };
    for (const Tick& tick : alongX)
        label(area.left + Round(tick.place), below, tick.label, Centre);
    for (const Tick& tick : alongY)
        label(area.left - Gap, area.bottom - Round(tick.place), tick.label, Right);
    label(area.right + 2 * Gap, below, unitX, Left);
    label(area.left - Gap, area.top - 2 * Gap, unitY, Right);
}

std::vector<PlotPanel::Tick> PlotPanel::MakeTicks(double least, double most, int pixels,
                                                  int spacing)
{
    const double perPixel = (most - least) / std::max(1, pixels);
    const double step = RoundStep(perPixel * spacing);
    const auto first = static_cast<int>(std::ceil(least / step - 1e-6));
    const auto last = static_cast<int>(std::floor(most / step + 1e-6));
    std::vector<Tick> ticks;
    ticks.reserve(static_cast<std::size_t>(std::max(0, last - first + 1)));
    for (int i = first; i <= last; ++i)
        ticks.push_back({(i * step - least) / perPixel, NumberText(i * step, step)});
    return ticks;
}
