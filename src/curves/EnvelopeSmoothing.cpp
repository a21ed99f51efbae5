#include "curves/EnvelopeSmoothing.h"

#include <algorithm>
#include <cmath>

namespace
{

using Points = std::span<const MEnvelopePoint>;

/// Where a curve leaves its left segment or enters its right one.
struct Joint
{
    EnvelopePlace place;
    double slope;
};

/// How far the smoothing of a point may reach to both sides.
struct Reach
{
    double left;
    double right;
};

bool HasCloseNeighbour(Points points, std::size_t index)
{
    const auto isClose = [&](const MEnvelopePoint& other)
    { return std::abs(other.X - points[index].X) < 1e-8; };
    return (index > 0 && isClose(points[index - 1])) ||
           (index + 1 < points.size() && isClose(points[index + 1]));
}

/// Up to the middles towards the neighbours; a missing neighbour lies as far as the other one.
Reach GetReach(Points points, std::size_t index)
{
    const double x = points[index].X;
    const bool hasLeft = index > 0;
    const bool hasRight = index + 1 < points.size();
    Reach reach{};
    reach.left = hasLeft ? 0.5 * (x - points[index - 1].X) : 0.5 * (points[index + 1].X - x);
    reach.right = hasRight ? 0.5 * (points[index + 1].X - x) : reach.left;
    if (points[index].Has(MEnvelopePoint::Proportional))
        reach.left = reach.right = std::min(reach.left, reach.right);
    return reach;
}

/// 0 for what is not a number.
double ToShare(double smoothing)
{
    return std::min(1.0, std::max(0.0, smoothing));
}

bool IsSmoothed(const MEnvelopePoint& point)
{
    return std::abs(point.SmoothX1) >= 1e-5 || std::abs(point.SmoothX2) >= 1e-5;
}

bool IsAt(double a, double b)
{
    return std::abs(a - b) < 1e-50;
}

/// How far behind @p left the two tangents cross; far out if they do not.
double FindCrossing(const Joint& left, const Joint& right)
{
    if (IsAt(left.slope, right.slope))
        return MEnvelopeComputer::EndOfAll;
    const double height = left.place.y - right.place.y;
    const double width = left.place.x - right.place.x;
    return (height - width * right.slope) / (right.slope - left.slope);
}

void CutCorner(std::size_t index, bool isFast, const Joint& left, const Joint& right,
               EnvelopeItemTable& table)
{
    const double crossing = FindCrossing(left, right);
    const double width = right.place.x - left.place.x;
    if (!isFast && crossing >= 1e-10 && crossing < width - 1e-10)
    {
        const EnvelopePlace control{crossing, crossing * left.slope};
        table.SetCorner<MEnvelopeComputer::ItemBezier>(index, right.place.x, left.place, control,
                                                       right.place);
    }
    else
        table.SetCorner<MEnvelopeComputer::ItemCubic>(index, right.place.x, left.place, right.place,
                                                      left.slope, right.slope);
    table.GetLeft(index)->EndX = left.place.x;
}

} // namespace

double envelopes::SmoothPoints(Points points, EnvelopeItemTable& table)
{
    double silentFromX = MEnvelopeComputer::EndOfAll;
    bool nonZeroSeen = false;
    for (std::size_t index = points.size(); index-- > 0;)
    {
        const MEnvelopePoint& point = points[index];
        if (HasCloseNeighbour(points, index))
            continue;
        if (!IsAt(point.Y, 0.0))
            nonZeroSeen = true;
        else if (!nonZeroSeen)
            silentFromX = point.X;
        if (!IsSmoothed(point))
            continue;

        const Reach reach = GetReach(points, index);
        const double rightShare =
            point.Has(MEnvelopePoint::LockSides) ? point.SmoothX1 : point.SmoothX2;
        const double leftX = point.X - ToShare(point.SmoothX1) * reach.left;
        const double rightX = point.X + ToShare(rightShare) * reach.right;
        const MEnvelopeComputer::Item& before = *table.GetLeft(index);
        const MEnvelopeComputer::Item& behind = *table.GetRight(index);
        const Joint left{{leftX, before.Get(leftX)}, before.LeftSlope(leftX)};
        const Joint right{{rightX, behind.Get(rightX)}, behind.RightSlope(rightX)};
        const bool isLevel = IsAt(left.place.y, point.Y) && IsAt(right.place.y, point.Y);
        // Points out of order reach nowhere.
        if (isLevel || !(rightX > leftX))
            continue;

        CutCorner(index, point.SmoothingType == 1, left, right, table);
        if (!nonZeroSeen && IsAt(right.place.y, 0.0))
            silentFromX = rightX;
        else
            nonZeroSeen = true;
    }
    return silentFromX;
}
