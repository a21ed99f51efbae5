#include "tests/tools/Signals.h"

#include <cmath>
#include <numbers>

std::vector<float> MakeTone(std::size_t length, double hz, double rate,
                            const std::function<double(double phase)>& shape)
{
    std::vector<float> tone(length);
    for (std::size_t i = 0; i < length; ++i)
        tone[i] = static_cast<float>(shape(0.123 + hz * static_cast<double>(i) / rate));
    return tone;
}

std::vector<float> MakeSine(std::size_t length, double hz, double rate)
{
    return MakeTone(length, hz, rate,
                    [](double phase) { return 0.5 * std::sin(2.0 * std::numbers::pi * phase); });
}
