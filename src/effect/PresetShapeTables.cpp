#include "effect/PresetShapeTables.h"

#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>

#include "foundation/values/MRandom.h"

namespace
{

using Cycle = PresetShapeTables::Cycle;

constexpr std::size_t Length = PresetShapeTables::CycleLength;
constexpr std::size_t Half = Length / 2;
constexpr std::size_t Quarter = Length / 4;

constexpr std::array<const char*, PresetShapeTables::Count> Names = {
    "Exponencial",  "Triangle",
    "Sine power 8", "Sine power 4",
    "Sine square",  "Sine",
    "Harmonics",    "More harmonics",
    "Disharmonics", "Sine square root",
    "Sine 4-root",  "Rectangle",
    "Saw",          "Full saw",
    "Noise",        "Mess",
};

/// A cycle that is odd about its half and even about each quarter, from its first quarter.
template <typename Wave>
void BuildFromQuarter(Cycle& table, const Wave& wave)
{
    table[0] = table[Half] = static_cast<float>(wave(std::size_t{0}));
    for (std::size_t i = 1; i <= Quarter; ++i)
    {
        const auto value = static_cast<float>(wave(i));
        table[i] = table[Half - i] = value;
        table[Half + i] = table[Length - i] = -value;
    }
}

/// Each sample on its own, from its position in the cycle.
template <typename Wave>
void BuildFromPosition(Cycle& table, const Wave& wave)
{
    for (std::size_t n = 0; n < Length; ++n)
        table[n] = static_cast<float>(wave(static_cast<double>(n)));
}

/// sin(@p harmonic * 2 pi n / Length).
double Partial(double harmonic, double n) noexcept
{
    return std::sin(harmonic * (2.0 * std::numbers::pi / Length) * n);
}

double Harmonics(double n) noexcept
{
    return 0.5 * Partial(1, n) + 0.3 * Partial(2, n) + 0.1 * Partial(4, n);
}

void BuildDisharmonics(Cycle& table)
{
    BuildFromPosition(table,
                      [](double n)
                      {
                          return 0.3 * Partial(1, n) + 0.2 * Partial(1.1, n) +
                                 0.2 * Partial(1.2, n) + 0.2 * Partial(1.3, n) +
                                 0.1 * Partial(1.4, n);
                      });
    // The upper partials do not close with the cycle, so both of its ends fade to silence.
    constexpr std::size_t FadeLength = 1024;
    for (std::size_t i = 0; i < FadeLength; ++i)
    {
        const double gain = static_cast<double>(i) / (FadeLength - 1);
        for (float* const sample : {&table[i], &table[Length - 1 - i]})
            *sample = static_cast<float>(*sample * gain);
    }
}

void BuildRectangle(Cycle& table)
{
    BuildFromQuarter(table, [](std::size_t) { return 1.0; });
    // Each edge is a ramp of 16 samples on either side of the crossing.
    constexpr std::size_t EdgeLength = 16;
    for (std::size_t j = 0; j < EdgeLength; ++j)
    {
        const auto value = static_cast<float>(static_cast<double>(j) / (EdgeLength - 1));
        table[j] = table[Half - 1 - j] = value;
        table[Half + j] = table[Length - 1 - j] = -value;
    }
}

/// The same pseudo-random cycle in every run, 0 to 1.
void BuildNoise(Cycle& table)
{
    std::uint32_t state = 0;
    for (float& sample : table)
    {
        state = MRandom::Step(state);
        sample = static_cast<float>(MRandom::DrawFrom(state) / 32767.0);
    }
}

/// An arithmetic pattern, 0 to 1.
void BuildMess(Cycle& table)
{
    std::uint32_t counter = 0;
    for (float& sample : table)
    {
        sample = static_cast<float>(((counter ^ 0xCCDD1122u) % 1000000u) * 1e-6);
        counter += 0x4246859Au;
    }
}

} // namespace

PresetShapeTables::PresetShapeTables()
{
    const auto ramp = [](std::size_t i) { return static_cast<double>(i) / Quarter; };
    const auto sine = [](std::size_t i) { return Partial(1, static_cast<double>(i)); };
    const auto sineTo = [sine](double power)
    { return [=](std::size_t i) { return i == 0 ? 0.0 : std::pow(sine(i), power); }; };

    BuildFromQuarter(tables[0], [ramp](std::size_t i) { return std::pow(ramp(i), 4.0); });
    BuildFromQuarter(tables[1], ramp);
    BuildFromQuarter(tables[2], sineTo(8.0));
    BuildFromQuarter(tables[3], sineTo(4.0));
    BuildFromQuarter(tables[4], sineTo(2.0));
    BuildFromQuarter(tables[5], sine);
    BuildFromPosition(tables[6], Harmonics);
    BuildFromPosition(tables[7], [](double n)
                      { return Harmonics(n) + 0.05 * Partial(8, n) + 0.02 * Partial(16, n); });
    BuildDisharmonics(tables[8]);
    BuildFromQuarter(tables[9], sineTo(0.5));
    BuildFromQuarter(tables[10], sineTo(0.2)); // a fifth root, whatever the name says
    BuildRectangle(tables[11]);
    BuildFromPosition(tables[12], [](double n) { return 1.0 - n / Length; });
    BuildFromPosition(tables[13], [](double n) { return 1.0 - n / Half; });
    BuildNoise(tables[14]);
    BuildMess(tables[15]);
}

const PresetShapeTables& PresetShapeTables::Get()
{
    static const std::unique_ptr<const PresetShapeTables> tables(new PresetShapeTables);
    return *tables;
}

const char* PresetShapeTables::GetName(int index) noexcept
{
    return index >= 0 && index < Count ? Names[static_cast<std::size_t>(index)] : "";
}
