#include "effect/MSignalGeneratorOperations.h"

#include <algorithm>
#include <cmath>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Polynomials.h"
#include "dsp/kernels/Shapes.h"

namespace
{

using Buffers = MSignalGeneratorOperations::Buffers;

constexpr int Length = kernels::CycleLength;
constexpr int Mask = Length - 1;
constexpr int Half = Length / 2;
constexpr double LastSample = Length - 1;

/// Amounts nearer to zero do nothing; so do those that are not numbers.
bool IsActive(double amount) noexcept
{
    return std::abs(amount) >= 1e-50;
}

/// Makes the cycle the source of a stage, so that reading it runs into its start again.
void TakeSource(const Buffers& buffers) noexcept
{
    kernels::Copy(buffers.source.data(), buffers.render.data(), Length);
    buffers.source.back() = buffers.render.front();
}

} // namespace

void MSignalGeneratorOperations::Process(const Buffers& buffers)
{
    if (IsActive(Skew))
        ProcessSkew(buffers);
    if (IsActive(FullSkew))
        ProcessFullSkew(buffers);
    if (IsActive(Halve))
        ProcessHalve(buffers);
    if (std::ranges::any_of(Harmonic, IsActive))
        ProcessHarmonics(buffers);
    if (TransformEnable)
        ProcessTransform(buffers);
}

void MSignalGeneratorOperations::ProcessAmplitude(Cycle cycle)
{
    amplitudeComputer.Compile(AmplitudeTransform);
    amplitudeComputer.MapFloat(cycle.data(), Length);
}

void MSignalGeneratorOperations::ProcessSkew(const Buffers& buffers) const noexcept
{
    // The cubic from (0, 0) to (1, 1) with this slope at both ends.
    const double slope = std::pow(3.0, Skew);
    const double cubic[] = {0.0, slope, 3.0 - 3.0 * slope, 2.0 * slope - 2.0};
    TakeSource(buffers);
    float* const positions = buffers.render.data();
    kernels::Polynomial(positions, cubic, 3, 0.0, 1.0 / LastSample, Length);
    kernels::Scale(positions, positions, LastSample, Length);
    kernels::Clamp(positions, LastSample, Length);
    kernels::Lookup(positions, buffers.source.data(), positions, Length, Mask);
}

void MSignalGeneratorOperations::ProcessFullSkew(const Buffers& buffers) const noexcept
{
    constexpr std::size_t BlockLength = 512; // few enough for the stack
    const double exponent = std::pow(10.0, std::abs(FullSkew));
    const bool isMirrored = FullSkew < 0.0;
    std::array<double, BlockLength> powers;
    std::array<double, BlockLength> positions;
    TakeSource(buffers);
    for (std::size_t start = 0; start < CycleLength; start += BlockLength)
    {
        const std::size_t first = isMirrored ? CycleLength - BlockLength - start : start;
        kernels::PowerRamp(powers.data(), 1.0 / LastSample, exponent, static_cast<int>(first),
                           BlockLength);
        for (std::size_t i = 0; i < BlockLength; ++i)
            positions[i] =
                std::min(LastSample, isMirrored ? (1.0 - powers[BlockLength - 1 - i]) * LastSample
                                                : powers[i] * LastSample);
        kernels::Lookup(buffers.render.data() + start, buffers.source.data(), positions.data(),
                        BlockLength, Mask);
    }
}

void MSignalGeneratorOperations::ProcessHalve(const Buffers& buffers) const noexcept
{
    // Two samples at least are left to either half: its ends.
    const double shift = std::trunc(Halve * (2.0 - Half));
    const int middle = static_cast<int>(std::clamp(Half - shift, 2.0, Length - 2.0));
    if (middle == Half)
        return;
    TakeSource(buffers);
    kernels::Resample(buffers.render.data(), middle, buffers.source.data(), Half);
    kernels::Resample(buffers.render.data() + middle, Length - middle, buffers.source.data() + Half,
                      Half);
}

void MSignalGeneratorOperations::ProcessHarmonics(const Buffers& buffers) const noexcept
{
    TakeSource(buffers);
    for (std::size_t i = 0; i < HarmonicCount; ++i)
    {
        if (!IsActive(Harmonic[i]))
            continue;
        const double phase = std::fmod(HarmonicPhase[i], 1.0);
        const float* cycle = buffers.source.data();
        double whole = 0.0;
        if (IsActive(phase))
        {
            // All its samples lie at the same fraction between two of the source.
            const auto fraction = static_cast<float>(std::modf(phase * Length, &whole));
            kernels::Mix(buffers.scratch.data(), cycle, 1.0f - fraction, cycle + 1, fraction,
                         Length);
            cycle = buffers.scratch.data();
        }
        kernels::AddStrided(buffers.render.data(), cycle, static_cast<int>(whole),
                            static_cast<int>(i) + 2, static_cast<float>(Harmonic[i]), Length, Mask);
    }
}

void MSignalGeneratorOperations::ProcessTransform(const Buffers& buffers)
{
    transformComputer.Compile(Transform);
    transformComputer.FillFloat(buffers.scratch.data(), 0.0, 1.0 / LastSample, Length);
    TakeSource(buffers);
    // Places run to Length here, one beyond the cycle, and what is read there is the curve's first
    // value: shapes are made with this sound in mind.
    buffers.source.back() = buffers.scratch.front();
    float* const positions = buffers.render.data();
    kernels::Scale(positions, buffers.scratch.data(), Length, Length);
    kernels::Lookup(positions, buffers.source.data(), positions, Length, Mask);
}
