#pragma once

#include <array>
#include <cstdint>
#include <span>

class MEnvelope;

/// A bar pattern that an editor keeps beside a curve, to draw the curve from it. Not stored.
struct StepPattern
{
    static constexpr int MaxCount = 32;
    static constexpr std::int32_t FirstCount = 8;

    /// Before its first use: FirstCount steps, all at the curve's lowest y.
    void Prepare(const MEnvelope& curve) noexcept;

    std::int32_t count = -1; ///< negative until it is first used
    std::array<float, MaxCount> values{};
};

/// Replaces the points of @p curve by one for each step, each a stair up to the next.
void MakeCurveFromSteps(MEnvelope& curve, std::span<const float> steps);
