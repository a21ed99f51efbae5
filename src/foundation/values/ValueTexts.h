#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"

/// Display texts of the units that parameters and controls share. Thresholds go by the value
/// before it is rounded, and by its magnitude.
namespace valuetexts
{

/// A linear gain in decibels: "silence", "-6.02 dB", "-20.0 dB".
MString Gain(double gain);
/// The same for fields that show the unit elsewhere: "silence", "-6.02", "-20.0".
MString GainWithoutUnit(double gain);

/// A fraction, 1.0 being "100.0%"; two decimals below one percent.
MString Percents(double fraction);

/// A frequency in Hz with @p separator before its unit: "440 Hz", "12.3 kHz".
MString Frequency(double hz, const MString& separator);

/// "0.0123" seconds are "12 ms"; the shorter, the more decimals.
MString Milliseconds(double seconds);

/// -1.0 is "100% left", 0.0 "center", 1.0 "100% right"; percents are cut, not rounded.
MString Pan(double position);

/// A fraction of a turn in both units: "90\u00B0 (25.0%)".
MString Degrees(double turns);

/// How many shapes a shape position runs through.
constexpr int ShapeCount = 16;

/// A place between two neighbours among the shapes.
struct ShapePosition
{
    int index;       ///< of the first of the two, 0 to ShapeCount - 2
    double fraction; ///< of the way to the second, 0.0 to 1.0
};
/// Positions are clamped to 0 to ShapeCount - 1; the end, like what is not a number, is reached
/// through the last pair.
ShapePosition SplitShapePosition(double position) noexcept;

/// Tells the name of a shape, 0 to ShapeCount - 1.
using ShapeNames = MString (*)(int index);
/// "Sine", or what two neighbours hold in percents: "75% Sine, 25% Triangle".
MString Shape(double position, ShapeNames names);
/// Reads it back: a name, two neighbours in either order whose percents make up 100 (give or take
/// one, by rounding), or the number of the position, which is not limited. Anything else is false
/// and leaves @p position.
bool ParseShape(const MString& text, ShapeNames names, double& position);

/// A count of seconds as hours, minutes and seconds: "1:02:03". Negative counts are 0.
MString Clock(std::int64_t seconds);

/// The four bytes of @p version, highest first: "1.2.3.4".
MString Version(std::uint32_t version);

} // namespace valuetexts
