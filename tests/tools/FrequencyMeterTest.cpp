#include "tools/render/FrequencyMeter.h"

#include <cmath>
#include <cstdint>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/tools/Signals.h"

namespace
{

double Sine(double phase)
{
    return std::sin(2.0 * std::numbers::pi * phase);
}

double CentsBetween(double hz, double reference)
{
    return 1200.0 * std::log2(hz / reference);
}

/// The sum of all harmonics below half the rate, each weaker as its number is higher.
double Saw(double phase, double hz, double rate)
{
    double sum = 0.0;
    for (int harmonic = 1; harmonic * hz < 0.5 * rate; ++harmonic)
        sum += 0.5 * Sine(harmonic * phase) / harmonic;
    return sum;
}

struct SineCase
{
    double hz;
    double rate;
    double seconds;
    double cents; ///< allowed
};

constexpr SineCase SineCases[] = {
    {20.0, 48000.0, 0.3, 0.001},        {27.5, 44100.0, 0.2, 0.001},
    {55.0, 48000.0, 0.1, 0.001},        {110.0, 192000.0, 0.1, 0.001},
    {261.6255653, 48000.0, 0.1, 0.001}, {440.0, 48000.0, 0.1, 0.001},
    {440.0, 6144000.0, 0.1, 0.001},     {443.21, 22050.0, 2.0, 0.0001},
    {1000.0, 48000.0, 0.1, 0.001},      {4186.009, 48000.0, 0.1, 0.001},
    {12543.854, 48000.0, 0.1, 0.001},   {15000.0, 48000.0, 0.1, 0.001},
    {15000.0, 44100.0, 0.1, 0.001},     {15000.0, 33000.0, 0.1, 0.001},
    {40.0, 101.0, 2.0, 0.01},           {8.2, 48000.0, 1.0, 0.001},
    {1.1, 48000.0, 10.0, 0.001},        {440.0, 48000.0, 0.0092, 1.0},
};

TEST(FrequencyMeter, MeasuresSinesOverTheWholeRange)
{
    FrequencyMeter meter;
    for (const SineCase& row : SineCases)
    {
        const auto length = static_cast<std::size_t>(row.seconds * row.rate);
        const auto hz = meter.Measure(MakeSine(length, row.hz, row.rate), row.rate);
        ASSERT_TRUE(hz) << row.hz << " Hz at " << row.rate;
        EXPECT_LT(std::abs(CentsBetween(*hz, row.hz)), row.cents)
            << row.hz << " Hz at " << row.rate << " measured as " << *hz;
    }
}

TEST(FrequencyMeter, MeasuresTheFundamentalOfAnyShape)
{
    constexpr double Rate = 48000.0;
    struct ShapeCase
    {
        const char* what;
        std::function<double(double phase, double hz)> shape;
    };
    const ShapeCase cases[] = {
        {"saw", [](double phase, double hz) { return Saw(phase, hz, Rate); }},
        {"sine above a high offset", [](double phase, double) { return 0.1 * Sine(phase) + 0.8; }},
        {"loud octave",
         [](double phase, double) { return 0.1 * Sine(phase) + 0.8 * Sine(2.0 * phase); }},
        {"no fundamental",
         [](double phase, double) { return 0.3 * (Sine(2.0 * phase) + Sine(3.0 * phase)); }},
        {"several zero crossings a cycle",
         [](double phase, double) { return 0.3 * Sine(phase) + 0.5 * Sine(5.0 * phase); }},
        {"quiet", [](double phase, double) { return 1e-4 * Sine(phase); }},
    };
    FrequencyMeter meter;
    for (const ShapeCase& row : cases)
        for (const double reference : {41.2, 440.0, 2637.0})
        {
            const auto tone = MakeTone(9600, reference, Rate,
                                       [&](double phase) { return row.shape(phase, reference); });
            const auto hz = meter.Measure(tone, Rate);
            ASSERT_TRUE(hz) << row.what << ", " << reference;
            EXPECT_LT(std::abs(CentsBetween(*hz, reference)), 0.01)
                << row.what << ", " << reference << " measured as " << *hz;
        }
}

TEST(FrequencyMeter, ToleratesNoise)
{
    std::vector<float> tone = MakeSine(48000, 440.0, 48000.0);
    std::uint32_t state = 1;
    for (float& sample : tone)
    {
        state = state * 1664525u + 1013904223u;
        sample += 0.05f * (static_cast<float>(state >> 8) / 8388608.0f - 1.0f);
    }
    const auto hz = FrequencyMeter().Measure(tone, 48000.0);
    ASSERT_TRUE(hz);
    EXPECT_LT(std::abs(CentsBetween(*hz, 440.0)), 0.1);
}

TEST(FrequencyMeter, FindsNothingWhereThereIsNoPitch)
{
    std::vector<float> noise(48000);
    std::uint32_t state = 1;
    for (float& sample : noise)
    {
        state = state * 1664525u + 1013904223u;
        sample = static_cast<float>(state >> 8) / 8388608.0f - 1.0f;
    }
    std::vector<float> click(48000, 0.0f);
    click[20000] = 1.0f;
    struct Case
    {
        const char* what;
        std::vector<float> sound;
    };
    const Case cases[] = {
        {"no samples", {}},
        {"one sample", {0.5f}},
        {"silence", std::vector<float>(48000, 0.0f)},
        {"a constant", std::vector<float>(48000, 0.7f)},
        {"noise", noise},
        {"a click", click},
        {"three cycles and a half", MakeSine(3500, 48.0, 48000.0)},
        {"one cycle", MakeSine(48000, 1.0, 48000.0)},
    };
    FrequencyMeter meter;
    for (const Case& row : cases)
        EXPECT_FALSE(meter.Measure(row.sound, 48000.0)) << row.what;
}

} // namespace
