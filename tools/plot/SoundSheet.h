#pragma once

#include <optional>

#include "foundation/strings/MString.h"

class SoundAnalysis;

/// What stands on the sheet besides the sound.
struct SoundSheetTexts
{
    MString title;
    MString detail;                     ///< a line below the title
    std::optional<double> periodFrames; ///< of the tone in the excerpt, if it has one
};

/// One sheet on a sound, for a report: a few cycles as a line, the spectrum in decibels, and for
/// longer sounds how it changes.
namespace soundsheet
{

/// What SoundAnalysis gathers for the sheet.
constexpr int PlotWidth = 1420; ///< pixels, of each plot
constexpr int SpectrogramHeight = 330;

/// Draws the sheet to a PNG file. @throws MException if it cannot be written
void Save(const SoundAnalysis& sound, const SoundSheetTexts& texts, const MString& fileName);

} // namespace soundsheet
