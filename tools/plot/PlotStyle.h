#pragma once

#include "gui/drawing/MColor.h"

/// The look that all pictures share: dark ink on white paper, as reports are printed.
namespace plotstyle
{

constexpr MColor Paper(255, 255, 255);
constexpr MColor Ink(33, 41, 51);
constexpr MColor FaintInk(104, 117, 131);
constexpr MColor Frame(154, 165, 177);
constexpr MColor Grid(229, 233, 238);
/// Of the first and the second channel.
constexpr MColor Channels[] = {MColor(24, 104, 178), MColor(222, 110, 38, 200)};
constexpr MColor Fill(24, 104, 178, 34); ///< below the line of the first channel

// Heights of letters, pixels.
constexpr int TitleHeight = 34;
constexpr int CaptionHeight = 21;
constexpr int LabelHeight = 18;

} // namespace plotstyle
