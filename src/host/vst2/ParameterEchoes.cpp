#include "host/vst2/ParameterEchoes.h"

#include <cmath>

namespace
{
/// Moves by less are rounding on the way through the parameter's own range.
constexpr float LeastMove = 1e-6f;
} // namespace

float Vst2::ParameterEchoes::Read(int index, float own) const noexcept
{
    const Echo echo = echoes[static_cast<std::size_t>(index)];
    return std::abs(own - echo.own) <= LeastMove ? echo.value : own;
}
