#include "curves/MEnvelope.h"

#include <utility>

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

void MEnvelope::Store(MXMLItem&) const {}
void MEnvelope::Load(MXMLItem&) {}
