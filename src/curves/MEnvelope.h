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
    static constexpr double LeastGap = 1e-10; ///< between the places of sanitised points

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

    /// Index of the last point at or left of @p x, -1 if there is none. Looks at all points.
    int FindSegment(double x) const noexcept;

    /// Brings all points into the box, and each but the fixed and exempt ones strictly to the right
    /// of the one before it: by LeastGap, and where that leaves the box, the point is removed.
    /// What is not finite counts as 0. A curve that then ends short of MaxX gets a fixed end point
    /// with the y of the last; an empty one stays empty.
    void Sanitise();

    /// Writes points and editor switches to @p item, in place of all that it held.
    void Store(MXMLItem& item) const;
    /// Replaces points and switches, and sanitises. The box stays.
    /// @throws MException (256) as CheckSettingsTree does, with the old curve whole
    void Load(MXMLItem& item);

    double MinX = 0.0;
    double MaxX = 1.0;
    double MinY = 0.0;
    double MaxY = 1.0;
    bool DrawingMode = false; ///< of the editor, kept with the curve
    bool SnapToGridX = false;
    bool SnapToGridY = false;

private:
    void LimitToBox() noexcept;
    void SpreadPoints();

    std::vector<MEnvelopePoint> points; ///< in the order of X
};
