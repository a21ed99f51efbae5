#include "shell/MTargetRange.h"

#include <algorithm>

double MTargetRange::Map(double moving) const noexcept
{
    const double x = isInverted ? -moving : moving;
    const double share = (x + 1.0) / 2.0;
    switch (mode)
    {
    case Mode::UpAndDown:
        return value + x * std::min({range / 2.0, value, 1.0 - value});
    case Mode::FullRange:
    {
        const double half = range / 2.0;
        return std::min(std::max(value, half), 1.0 - half) + x * half;
    }
    case Mode::UpOnly:
        return value + share * std::min(1.0 - value, range);
    case Mode::DownOnly:
        return value - share * std::min(value, range);
    case Mode::Interval:
        return value + (maxValue - value) * share;
    }
    return value; // a stored number that is no mode
}
