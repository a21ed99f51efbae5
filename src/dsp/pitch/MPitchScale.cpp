#include "dsp/pitch/MPitchScale.h"

#include <cmath>

int MPitchScale::Nearest(double note) const noexcept
{
    int below = static_cast<int>(std::floor(note));
    int above = below + 1;
    while (!Contains(below))
        --below;
    while (!Contains(above))
        ++above;
    return above - note < note - below ? above : below;
}

double MPitchScale::NoteOf(double hz) noexcept
{
    return 69.0 + 12.0 * std::log2(hz / 440.0);
}

double MPitchScale::FrequencyOf(double note) noexcept
{
    return 440.0 * std::exp2((note - 69.0) / 12.0);
}
