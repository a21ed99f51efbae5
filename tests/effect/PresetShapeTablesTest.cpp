#include "effect/PresetShapeTables.h"

#include <cmath>
#include <functional>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

namespace
{

constexpr int Length = 8192;

float At(int shape, int n)
{
    return PresetShapeTables::Get()[shape][static_cast<std::size_t>(n)];
}

double Angle(int n)
{
    return 2.0 * std::numbers::pi * n / Length;
}

/// Amplitude of the sine of @p harmonic in @p shape.
double SineShare(int shape, int harmonic)
{
    double sum = 0.0;
    for (int n = 0; n < Length; ++n)
        sum += At(shape, n) * std::sin(harmonic * Angle(n));
    return sum * 2.0 / Length;
}

double Mean(int shape)
{
    double sum = 0.0;
    for (int n = 0; n < Length; ++n)
        sum += At(shape, n);
    return sum / Length;
}

TEST(PresetShapeTables, NamesAreTheKnownOnes)
{
    const char* const names[] = {"Exponencial",  "Triangle",
                                 "Sine power 8", "Sine power 4",
                                 "Sine square",  "Sine",
                                 "Harmonics",    "More harmonics",
                                 "Disharmonics", "Sine square root",
                                 "Sine 4-root",  "Rectangle",
                                 "Saw",          "Full saw",
                                 "Noise",        "Mess"};
    for (int i = 0; i < 16; ++i)
        EXPECT_STREQ(PresetShapeTables::GetName(i), names[i]);
    EXPECT_STREQ(PresetShapeTables::GetName(16), "");
    EXPECT_STREQ(PresetShapeTables::GetName(-1), "");
}

TEST(PresetShapeTables, FollowTheirFormulas)
{
    const auto triangle = [](int n)
    { return 2.0 / std::numbers::pi * std::asin(std::sin(Angle(n))); };
    const auto sineTo = [](double power)
    {
        return [power](int n)
        {
            const double sine = std::sin(Angle(n));
            // The exact zero at the half of the cycle is a rounding error in sin.
            return n % (Length / 2) == 0 ? 0.0
                                         : std::copysign(std::pow(std::abs(sine), power), sine);
        };
    };
    struct Case
    {
        int shape;
        std::function<double(int)> formula;
    };
    const Case Cases[] = {
        {0, [=](int n) { return std::copysign(std::pow(triangle(n), 4.0), triangle(n)); }},
        {1, triangle},
        {2, sineTo(8.0)},
        {3, sineTo(4.0)},
        {4, sineTo(2.0)},
        {5, sineTo(1.0)},
        {9, sineTo(0.5)},
        {10, sineTo(0.2)},
        {12, [](int n) { return 1.0 - n / 8192.0; }},
        {13, [](int n) { return 1.0 - n / 4096.0; }},
    };
    for (const Case& row : Cases)
        for (int n = 0; n < Length; ++n)
            ASSERT_NEAR(At(row.shape, n), row.formula(n), 1e-6)
                << PresetShapeTables::GetName(row.shape) << " at " << n;
}

TEST(PresetShapeTables, HarmonicShapesHoldJustTheirHarmonics)
{
    const auto expected = [](int shape, int harmonic)
    {
        switch (harmonic)
        {
        case 1:
            return 0.5;
        case 2:
            return 0.3;
        case 4:
            return 0.1;
        case 8:
            return shape == 7 ? 0.05 : 0.0;
        case 16:
            return shape == 7 ? 0.02 : 0.0;
        default:
            return 0.0;
        }
    };
    for (const int shape : {6, 7})
        for (int harmonic = 1; harmonic <= 20; ++harmonic)
            EXPECT_NEAR(SineShare(shape, harmonic), expected(shape, harmonic), 1e-7)
                << shape << ", harmonic " << harmonic;
}

TEST(PresetShapeTables, DisharmonicsFadesAtBothEnds)
{
    const auto partials = [](int n)
    {
        return 0.3 * std::sin(Angle(n)) + 0.2 * std::sin(1.1 * Angle(n)) +
               0.2 * std::sin(1.2 * Angle(n)) + 0.2 * std::sin(1.3 * Angle(n)) +
               0.1 * std::sin(1.4 * Angle(n));
    };
    EXPECT_EQ(At(8, 0), 0.0f);
    EXPECT_EQ(At(8, Length - 1), 0.0f);
    for (const int n : {1024, 2048, 5000, 7167})
        EXPECT_NEAR(At(8, n), partials(n), 1e-6) << n;
    for (const int n : {1, 100, 1022, 1023})
    {
        EXPECT_NEAR(At(8, n), partials(n) * n / 1023.0, 1e-6) << n;
        EXPECT_NEAR(At(8, Length - 1 - n), partials(Length - 1 - n) * n / 1023.0, 1e-6) << n;
    }
}

TEST(PresetShapeTables, RectangleHasRampsOfSixteenSamples)
{
    struct Point
    {
        int n;
        double expected;
    };
    constexpr Point Points[] = {
        {0, 0.0},     {1, 1.0 / 15},    {15, 1.0},         {16, 1.0},   {2048, 1.0},
        {4080, 1.0},  {4088, 7.0 / 15}, {4095, 0.0},       {4096, 0.0}, {4097, -1.0 / 15},
        {4111, -1.0}, {6000, -1.0},     {8188, -3.0 / 15}, {8191, 0.0},
    };
    for (const Point& point : Points)
        EXPECT_NEAR(At(11, point.n), point.expected, 1e-7) << point.n;
    EXPECT_NEAR(Mean(11), 0.0, 1e-7);
}

TEST(PresetShapeTables, NoiseAndMessAreFixedUnipolarPatterns)
{
    // The congruence and the pattern worked by hand for their first entries.
    EXPECT_FLOAT_EQ(At(14, 0), 38.0f / 32767.0f);
    EXPECT_FLOAT_EQ(At(14, 1), 7719.0f / 32767.0f);
    EXPECT_FLOAT_EQ(At(15, 0), 0.039906f); // 0xCCDD1122 modulo 1000000
    EXPECT_FLOAT_EQ(At(15, 1), 0.560824f);
    for (const int shape : {14, 15})
    {
        EXPECT_NEAR(Mean(shape), 0.5, 0.02);
        for (int n = 0; n < Length; ++n)
        {
            ASSERT_GE(At(shape, n), 0.0f);
            ASSERT_LE(At(shape, n), 1.0f);
        }
    }
}

} // namespace
