#pragma once

#include "foundation/strings/MString.h"

/// Display texts of the units that parameters and controls share.
namespace valuetexts
{

/// A linear gain in decibels: "silence", "-6.02 dB", "-20.0 dB".
MString Gain(double gain);

/// A frequency in Hz with @p separator before its unit: "440 Hz", "12.3 kHz".
MString Frequency(double hz, const MString& separator);

} // namespace valuetexts
