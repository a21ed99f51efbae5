#pragma once

#include <cstddef>
#include <vector>

#include "curves/MEnvelopePoint.h"

class MXMLItem;

/// A free curve: points in the order of x, joined by segments of many kinds. This is what editors
/// change and files hold; MEnvelopeComputer makes of it what audio code reads.
/// Owned by what it shapes, and guarded by the lock of that.
class MEnvelope
{
public:
    MEnvelope() = default;
    /// An empty curve within a box.
    MEnvelope(double minX, double maxX, double minY, double maxY) noexcept
        : MinX(minX),
          MaxX(maxX),
          MinY(minY),
          MaxY(maxY)
    {
    }

    const std::vector<MEnvelopePoint>& GetPoints() const noexcept { return points; }
    std::vector<MEnvelopePoint>& GetPoints() noexcept { return points; }
    std::size_t GetCount() const noexcept { return points.size(); }

    /// Adds a point behind the last.
    MEnvelopePoint& Add(double x, double y);
    /// Adds fixed points of @p y0 at MinX and @p y1 at MaxX.
    void AddEndPoints(double y0, double y1);
    /// @p index is 0 to GetCount(). @throws MException "Index out of range."
    void Insert(std::size_t index, const MEnvelopePoint& point);
    /// Returns what was removed. @throws MException "Index out of range."
    MEnvelopePoint Remove(std::size_t index);
    void Clear() noexcept { points.clear(); }

    /// Index of the last point at or left of @p x, -1 if there is none.
    int FindSegment(double x) const noexcept;

    /// Brings all points into the box and into strictly rising order; what fits nowhere is removed.
    /// A curve that ends short of MaxX gets its end point back.
    void Sanitise();

    /// Writes points and editor switches to @p item, in place of those that are there.
    void Store(MXMLItem& item) const;
    /// Replaces points and switches, and sanitises. The box stays.
    /// @throws MException (256) "Invalid file contents. Too many points in a curve.", with the old
    /// curve whole
    void Load(MXMLItem& item);

    double MinX = 0.0;
    double MaxX = 1.0;
    double MinY = 0.0;
    double MaxY = 1.0;
    bool DrawingMode = false; ///< of the editor, kept with the curve
    bool SnapToGridX = false;
    bool SnapToGridY = false;

private:
    std::vector<MEnvelopePoint> points; ///< in the order of X
};
