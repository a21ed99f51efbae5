#include "effect/MGaussianSmoother.h"

MGaussianSmoother::MGaussianSmoother() = default;
void MGaussianSmoother::SetHalfWidth(double) noexcept {}
void MGaussianSmoother::Process(std::span<float, CycleLength>) noexcept {}
