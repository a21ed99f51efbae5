#include "curves/EnvelopeSegments.h"

#include <algorithm>
#include <cmath>

#include "foundation/threads/MException.h"

namespace
{

using Points = std::span<const MEnvelopePoint>;
using Computer = MEnvelopeComputer;

enum class Kind
{
    Constant,
    Linear,
    Quadratic,
    FourthOrder,
    Exponencial,
    Bezier,
    LikeNeighbours, ///< a cubic, made when its neighbours are there
    LikeSecants,
    Stairs,
    Pulses,
};

double GetStepCount(const MEnvelopePoint& point)
{
    return std::max(1.0, std::floor(64.0 * point.Curvature * point.Curvature + 0.5));
}

bool IsBent(const MEnvelopePoint& point)
{
    const bool isBentInX =
        point.Type == MEnvelopePoint::ControlType::Free1 && std::abs(point.CurvatureX) >= 1e-20;
    return std::abs(point.Curvature) >= 1e-20 || isBentInX;
}

Kind ChooseBent(MEnvelopePoint::ControlType type)
{
    using enum MEnvelopePoint::ControlType;
    switch (type)
    {
    case Mode1:
        return Kind::Quadratic;
    case Mode2:
        return Kind::FourthOrder;
    case Mode3:
        return Kind::Exponencial;
    case Free1:
        return Kind::Bezier;
    case Smooth1:
    case Smooth2:
    case Stairs:
    case Pulses:
        break;
    }
    throw MException("Invalid control point type.");
}

Kind ChooseKind(const MEnvelopePoint& from, const MEnvelopePoint& to)
{
    using enum MEnvelopePoint::ControlType;
    if (std::abs(to.X - from.X) < 1e-8)
        return Kind::Constant;
    if (from.Type == Stairs)
        return GetStepCount(from) > 1.0 ? Kind::Stairs : Kind::Constant;
    if (from.Type == Pulses)
        return Kind::Pulses;
    if (from.Type == Smooth1)
        return Kind::LikeNeighbours;
    if (from.Type == Smooth2)
        return Kind::LikeSecants;
    if (std::abs(from.Y - to.Y) < 1e-20)
        return Kind::Constant;
    const Kind bent = ChooseBent(from.Type);
    return IsBent(from) ? bent : Kind::Linear;
}

EnvelopePlace PlaceOf(const MEnvelopePoint& point)
{
    return {point.X, point.Y};
}

/// From the first end to the middle of the rectangle between both, which the curvatures move.
EnvelopePlace GetControlOffset(const MEnvelopePoint& from, const MEnvelopePoint& to)
{
    return {(1.0 + from.CurvatureX) * 0.5 * (to.X - from.X),
            (1.0 + from.Curvature) * 0.5 * (to.Y - from.Y)};
}

void MakeSegment(Points points, std::size_t index, EnvelopeItemTable& table)
{
    const MEnvelopePoint& from = points[index];
    const MEnvelopePoint& to = points[index + 1];
    const EnvelopePlace start = PlaceOf(from);
    const EnvelopePlace end = PlaceOf(to);
    switch (ChooseKind(from, to))
    {
    case Kind::Constant:
        return table.SetRight<Computer::ItemConstant>(index, to.X, from.Y);
    case Kind::Linear:
        return table.SetRight<Computer::ItemLinear>(index, to.X, start, end);
    case Kind::Quadratic:
        return table.SetRight<Computer::ItemQuadratic>(index, to.X, start, end, from.Curvature);
    case Kind::FourthOrder:
        return table.SetRight<Computer::ItemFourthOrder>(index, to.X, start, end, from.Curvature);
    case Kind::Exponencial:
        return table.SetRight<Computer::ItemExponencial>(index, to.X, start, end, from.Curvature);
    case Kind::Bezier:
        return table.SetRight<Computer::ItemBezier>(index, to.X, start, GetControlOffset(from, to),
                                                    end);
    case Kind::Stairs:
        return table.SetRight<Computer::ItemStairs>(index, to.X, start, end, GetStepCount(from));
    case Kind::Pulses:
    {
        const bool startsHigh = from.Curvature > 1e-20;
        return table.SetRight<Computer::ItemPulses>(index, to.X, from.X, to.X - from.X,
                                                    GetStepCount(from), startsHigh ? to.Y : from.Y,
                                                    startsHigh ? from.Y : to.Y);
    }
    case Kind::LikeNeighbours:
    case Kind::LikeSecants:
        return;
    }
}

/// The mean slope at the point @p index of the lines to its neighbours. Valleys are level, peaks
/// are not, and neither side counts at an edge or an end of the curve.
double GetMeanSlope(Points points, std::size_t index)
{
    if (index == 0 || index + 1 == points.size())
        return 0.0;
    const MEnvelopePoint& left = points[index - 1];
    const MEnvelopePoint& point = points[index];
    const MEnvelopePoint& right = points[index + 1];
    const bool isEdge = std::abs(point.X - left.X) < 1e-50 || std::abs(right.X - point.X) < 1e-50;
    if (isEdge || point.Y - 1e-20 <= std::min(left.Y, right.Y))
        return 0.0;
    return 0.5 *
           ((point.Y - left.Y) / (point.X - left.X) + (right.Y - point.Y) / (right.X - point.X));
}

void MakeSmoothSegment(Points points, std::size_t index, EnvelopeItemTable& table)
{
    const MEnvelopePoint& from = points[index];
    const MEnvelopePoint& to = points[index + 1];
    double slopeFrom = 0.0;
    double slopeTo = 0.0;
    if (from.Type == MEnvelopePoint::ControlType::Smooth1)
    {
        const Computer::Item* next = table.GetRight(index + 1); // not there yet if it is smooth too
        slopeFrom = table.GetLeft(index)->LeftSlope(from.X);
        slopeTo = next != nullptr ? next->RightSlope(to.X) : 0.0;
    }
    else
    {
        slopeFrom = GetMeanSlope(points, index);
        slopeTo = GetMeanSlope(points, index + 1);
    }
    table.SetRight<Computer::ItemCubic>(index, to.X, PlaceOf(from), PlaceOf(to), slopeFrom,
                                        slopeTo);
}

} // namespace

void envelopes::CheckSegments(Points points)
{
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        ChooseKind(points[i], points[i + 1]);
}

void envelopes::MakeSegments(Points points, EnvelopeItemTable& table)
{
    table.SetLeft<Computer::ItemConstant>(0, points.front().X, points.front().Y);
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        MakeSegment(points, i, table);
    table.SetRight<Computer::ItemConstant>(points.size() - 1, Computer::EndOfAll, points.back().Y);

    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        if (table.GetRight(i) == nullptr)
            MakeSmoothSegment(points, i, table);
}
