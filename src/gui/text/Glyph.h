#pragma once

#include "gui/drawing/MAlphaMask.h"

/// A glyph as it is painted: coverage, and where it stands at the pen on the baseline.
struct Glyph
{
    MAlphaMask mask;
    int left = 0; ///< pixels from the pen to the mask's first column
    int top = 0;  ///< rows of the mask above the baseline
};
