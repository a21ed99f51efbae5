#pragma once

#include <span>

#include "curves/EnvelopeItemTable.h"
#include "curves/MEnvelopePoint.h"

/// What stands between points, before the first and behind the last. Two points or more.
namespace envelopes
{

/// @throws MException "Invalid control point type." where MakeSegments could not go on
void CheckSegments(std::span<const MEnvelopePoint> points);
/// Makes all but the corners.
void MakeSegments(std::span<const MEnvelopePoint> points, EnvelopeItemTable& table);

} // namespace envelopes
