#include "curves/MEnvelope.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"

namespace
{

double Limit(double value, double min, double max) noexcept
{
    return std::min(std::max(std::isfinite(value) ? value : 0.0, min), max);
}

/// The nearest place to the right of @p x for another point. Beyond a million or so, doubles are
/// farther apart than the gap.
double RightOf(double x) noexcept
{
    return std::max(x + MEnvelope::LeastGap,
                    std::nextafter(x, std::numeric_limits<double>::infinity()));
}

void CheckIndex(std::size_t index, std::size_t count)
{
    if (index >= count)
        throw MException("Index out of range.");
}

void StoreSwitch(MXMLItem& item, const char* key, bool isOn)
{
    if (isOn)
        item.SetAttribute(key, 1);
}

bool LoadSwitch(const MXMLItem& item, const char* key)
{
    const MString* const text = item.FindAttribute(key);
    return text != nullptr && text->ToInteger() != 0;
}

} // namespace

MEnvelopePoint& MEnvelope::Add(double x, double y)
{
    MEnvelopePoint& point = points.emplace_back();
    point.X = x;
    point.Y = y;
    return point;
}

void MEnvelope::AddEndPoints(double y0, double y1)
{
    for (const auto& [x, y] : {std::pair(MinX, y0), std::pair(MaxX, y1)})
        Add(x, y).Flags |= MEnvelopePoint::Fixed;
}

void MEnvelope::Insert(std::size_t index, const MEnvelopePoint& point)
{
    CheckIndex(index, points.size() + 1);
    points.insert(points.begin() + static_cast<std::ptrdiff_t>(index), point);
}

MEnvelopePoint MEnvelope::Remove(std::size_t index)
{
    CheckIndex(index, points.size());
    const auto place = points.begin() + static_cast<std::ptrdiff_t>(index);
    const MEnvelopePoint removed = *place;
    points.erase(place);
    return removed;
}

int MEnvelope::FindSegment(double x) const noexcept
{
    // No bisection: fixed points from a file may be out of order.
    const auto found = std::find_if(points.rbegin(), points.rend(),
                                    [x](const MEnvelopePoint& point) { return point.X <= x; });
    return static_cast<int>(points.rend() - found) - 1;
}

void MEnvelope::Sanitise()
{
    LimitToBox();
    SpreadPoints();
    // A curve as long as a file may be stays so, or it could not be loaded again.
    if (!points.empty() && points.size() < limits::CurvePoints && points.back().X + LeastGap < MaxX)
        Add(MaxX, points.back().Y).Flags |= MEnvelopePoint::Fixed;
}

void MEnvelope::LimitToBox() noexcept
{
    for (MEnvelopePoint& point : points)
    {
        point.X = Limit(point.X, MinX, MaxX);
        point.Y = Limit(point.Y, MinY, MaxY);
    }
}

void MEnvelope::SpreadPoints()
{
    auto kept = points.begin();
    for (MEnvelopePoint& point : points)
    {
        const bool stays = point.Has(MEnvelopePoint::Fixed) || point.Has(MEnvelopePoint::Exempt);
        if (kept != points.begin() && !stays && point.X <= std::prev(kept)->X)
            point.X = RightOf(std::prev(kept)->X);
        // Beyond it there is no other place: to the left of the next point, which lies in the box
        // too, it would come before the one before.
        if (point.X <= MaxX)
            *kept++ = point;
    }
    points.erase(kept, points.end());
}

void MEnvelope::Store(MXMLItem& item) const
{
    item.Clear();
    StoreSwitch(item, "DrawingMode", DrawingMode);
    StoreSwitch(item, "SnapToGridX", SnapToGridX);
    StoreSwitch(item, "SnapToGridY", SnapToGridY);
    for (const MEnvelopePoint& point : points)
        point.Store(item.AddSubItem("Point"));
}

void MEnvelope::Load(MXMLItem& item)
{
    CheckSettingsTree(item);
    DrawingMode = LoadSwitch(item, "DrawingMode");
    SnapToGridX = LoadSwitch(item, "SnapToGridX");
    SnapToGridY = LoadSwitch(item, "SnapToGridY");
    points.clear();
    // Sanitising may add one.
    points.reserve(std::min(item.GetSubItems().size(), std::size_t{limits::CurvePoints}) + 1);
    const MString pointName = "Point";
    for (const auto& subItem : item.GetSubItems())
        if (subItem->GetName() == pointName)
            points.emplace_back().Load(*subItem);
    Sanitise();
}
