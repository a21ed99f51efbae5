#pragma once

#include "gui/drawing/MColor.h"

/// Colours that tell a level: from nearly black over violet and orange to nearly white, each
/// brighter than the one before, so that a picture also reads in grey.
namespace heatcolours
{

/// For 0.0 to 1.0; what lies outside, or is no number, takes the nearest end.
MColor Get(double level);

} // namespace heatcolours
