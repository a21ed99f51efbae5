#pragma once

#include <span>

#include "curves/EnvelopeItemTable.h"
#include "curves/MEnvelopePoint.h"

namespace envelopes
{

/// Rounds the corners at those of two or more @p points that ask for it; all segments are there.
/// Returns from where on the curve is zero, MEnvelopeComputer::EndOfAll if it does not end so.
double SmoothPoints(std::span<const MEnvelopePoint> points, EnvelopeItemTable& table);

} // namespace envelopes
