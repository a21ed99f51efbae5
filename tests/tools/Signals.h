#pragma once

#include <functional>
#include <vector>

/// @p length samples of @p shape, a function of the phase in cycles, at @p hz.
std::vector<float> MakeTone(std::size_t length, double hz, double rate,
                            const std::function<double(double phase)>& shape);

std::vector<float> MakeSine(std::size_t length, double hz, double rate);
