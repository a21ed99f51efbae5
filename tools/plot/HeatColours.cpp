#include "tools/plot/HeatColours.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

constexpr MColor Stops[] = {MColor(10, 10, 20),    MColor(38, 24, 84),   MColor(98, 33, 124),
                            MColor(172, 46, 110),  MColor(228, 84, 72),  MColor(250, 150, 52),
                            MColor(252, 216, 110), MColor(255, 252, 226)};

int Mix(int from, int to, double share)
{
    return static_cast<int>(std::lround(from + (to - from) * share));
}

} // namespace

MColor heatcolours::Get(double level)
{
    constexpr auto Last = static_cast<double>(std::size(Stops) - 1);
    const double place = level > 0.0 ? std::min(level, 1.0) * Last : 0.0;
    const auto index = std::min(static_cast<std::size_t>(place), std::size(Stops) - 2);
    const double share = place - static_cast<double>(index);
    const MColor& from = Stops[index];
    const MColor& to = Stops[index + 1];
    return {Mix(from.GetRed(), to.GetRed(), share), Mix(from.GetGreen(), to.GetGreen(), share),
            Mix(from.GetBlue(), to.GetBlue(), share)};
}
