#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "gui/drawing/MDrawer.h"

/// Finds the inside of a closed outline, row by row.
///
/// In a row, the edges that cross it are gone through from left to right, those at one place in the
/// order of their upper ends and then of the outline. A span begins at an edge and runs to the next
/// one of the opposite direction (down the outline or up); on the way, edges of its own direction
/// and pairs of opposite ones at one place do not count. It goes on over all further edges of the
/// opposite direction. Spans include the places of both their edges, and rows those of both ends of
/// an edge: neighbours that share an edge both paint it.
class PolygonScanner
{
public:
    struct Span
    {
        std::int64_t firstX;
        std::int64_t lastX;
    };

    explicit PolygonScanner(std::span<const MPoint> outline);

    /// The spans of row @p y, until the next call; @p y must grow from call to call.
    std::span<const Span> Scan(std::int64_t y);

    /// The rows that have any.
    std::int64_t GetFirstY() const noexcept { return firstY; }
    std::int64_t GetLastY() const noexcept { return lastY; }

private:
    struct Edge
    {
        std::int64_t upperX, upperY, lowerX, lowerY;
        int direction; ///< 1 if the outline runs downward here, -1 if upward
    };
    struct Crossing
    {
        std::int64_t x;
        std::size_t edge;
        int direction;
    };

    void EnterEdges(std::int64_t y);
    void ListCrossings(std::int64_t y);
    void ListSpans();

    std::int64_t firstY = 0;
    std::int64_t lastY = -1;
    std::vector<Edge> edges;      ///< by upper end
    std::size_t entered = 0;      ///< edges that were active once
    std::vector<Crossing> active; ///< edges that cross the row, by place
    std::vector<Span> spans;
};
