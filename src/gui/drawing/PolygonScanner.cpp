#include "gui/drawing/PolygonScanner.h"

#include <algorithm>
#include <tuple>

#include "gui/drawing/Proportion.h"

PolygonScanner::PolygonScanner(std::span<const MPoint> outline)
{
    edges.reserve(outline.size());
    for (std::size_t i = 0; i < outline.size(); ++i)
    {
        const MPoint& from = outline[i];
        const MPoint& to = outline[i + 1 < outline.size() ? i + 1 : 0];
        if (from.y < to.y)
            edges.push_back({from.x, from.y, to.x, to.y, 1});
        if (from.y > to.y)
            edges.push_back({to.x, to.y, from.x, from.y, -1});
    }
    if (edges.empty())
        return;
    std::ranges::stable_sort(edges, {}, &Edge::upperY);
    firstY = edges.front().upperY;
    lastY = std::ranges::max(edges, {}, &Edge::lowerY).lowerY;
}

std::span<const PolygonScanner::Span> PolygonScanner::Scan(std::int64_t y)
{
    EnterEdges(y);
    ListCrossings(y);
    ListSpans();
    return spans;
}

void PolygonScanner::EnterEdges(std::int64_t y)
{
    for (; entered < edges.size() && edges[entered].upperY <= y; ++entered)
        active.push_back({edges[entered].upperX, entered, edges[entered].direction});
}

void PolygonScanner::ListCrossings(std::int64_t y)
{
    std::erase_if(active,
                  [&](const Crossing& crossing) { return edges[crossing.edge].lowerY < y; });
    for (Crossing& crossing : active)
    {
        const Edge& edge = edges[crossing.edge];
        crossing.x = edge.upperX + Proportion(edge.lowerX - edge.upperX, y - edge.upperY,
                                              edge.lowerY - edge.upperY);
    }
    // From row to row the order rarely changes.
    const auto isBefore = [](const Crossing& a, const Crossing& b)
    { return std::tie(a.x, a.edge) < std::tie(b.x, b.edge); };
    if (!std::ranges::is_sorted(active, isBefore))
        std::ranges::sort(active, isBefore);
}

void PolygonScanner::ListSpans()
{
    spans.clear();
    const std::size_t count = active.size();
    const auto isPair = [&](std::size_t i)
    {
        return i + 1 < count && active[i].x == active[i + 1].x &&
               active[i].direction != active[i + 1].direction;
    };
    for (std::size_t first = 0; first < count;)
    {
        const int direction = active[first].direction;
        std::size_t last = first + 1;
        while (last < count && (isPair(last) || active[last].direction == direction))
            last += isPair(last) ? 2 : 1;
        if (last >= count)
            return;
        while (last + 1 < count && active[last + 1].direction != direction)
            ++last;
        spans.push_back({active[first].x, active[last].x});
        first = last + 1;
    }
}
