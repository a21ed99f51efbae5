#pragma once

#include "foundation/strings/MString.h"

/// A contact sheet of the cycles that the oscillator can play: the preset shapes, and what
/// cross-fades, curves, steps and each operation make of them.
namespace shapesheet
{

/// Draws it to a PNG file. @throws MException if it cannot be written
void Save(const MString& fileName);

} // namespace shapesheet
