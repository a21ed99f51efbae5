#include "effect/MSignalGenerator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr int Length = MSignalGenerator::TableLength;

std::string TextOf(const MXMLItem& item)
{
    MMemoryStream stream;
    item.Save(stream, true, "utf-8");
    stream.Seek(0, SEEK_SET);
    const std::span<const std::byte> bytes = stream.GetData();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

float Peak(const MSignalGenerator& generator)
{
    float peak = 0.0f;
    for (const float sample : generator.GetTable())
        peak = std::max(peak, std::abs(sample));
    return peak;
}

TEST(MSignalGenerator, StartsAsASineOfPeakOne)
{
    const MSignalGenerator generator;
    EXPECT_EQ(generator.Get(0.0), 0.0f);
    EXPECT_EQ(generator.Get(0.25), 1.0f);
    EXPECT_EQ(generator.Get(0.75), -1.0f);
    for (int i = 0; i < 3333; ++i)
    {
        const double phase = i * 0.0003;
        ASSERT_NEAR(generator.Get(phase), std::sin(2.0 * std::numbers::pi * phase), 2e-7) << phase;
    }
}

TEST(MSignalGenerator, PhasesBeyondACycleRepeatIt)
{
    const MSignalGenerator generator;
    EXPECT_EQ(generator.Get(1.0), generator.Get(0.0));
    EXPECT_EQ(generator.Get(2.25), generator.Get(0.25));
    EXPECT_EQ(generator.Get(1048576.625), generator.Get(0.625));
    EXPECT_EQ(generator.GetTable()[Length], generator.GetTable()[0]);
}

TEST(MSignalGenerator, InterpolatesBetweenSamplesAndAcrossTheEnd)
{
    MSignalGenerator generator;
    generator.Shape = 13.0; // "Full saw": 1 - n/4096
    generator.Rebuild();
    EXPECT_NEAR(generator.Get(100.25 / Length), 1.0 - 100.25 / 4096.0, 1e-7);
    // The last sample runs up to the first.
    EXPECT_NEAR(generator.Get((Length - 0.5) / Length), (1.0 - 8191.0 / 4096.0 + 1.0) / 2.0, 1e-6);
}

TEST(MSignalGenerator, ShapesBeyondTheBankAreItsEnds)
{
    constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
    struct Case
    {
        double shape, writtenBack;
        int preset;
        float fraction;
    };
    constexpr Case Cases[] = {{15.0, 15.0, 15, 1.0f},
                              {99.0, 15.0, 15, 1.0f},
                              {-3.0, 0.0, 0, 0.0f},
                              {0.0, 0.0, 0, 0.0f},
                              {NotANumber, 0.0, 15, 1.0f}};
    for (const Case& row : Cases)
    {
        MSignalGenerator generator;
        generator.Shape = row.shape;
        generator.Rebuild();
        EXPECT_TRUE(generator.Shape == row.writtenBack || std::isnan(row.shape));
        EXPECT_EQ(generator.ShapeFraction, row.fraction);
        const auto& preset = PresetShapeTables::Get()[row.preset];
        const float peak = *std::ranges::max_element(preset);
        for (std::size_t n = 0; n < Length; n += 11)
            ASSERT_FLOAT_EQ(generator.GetTable()[n], preset[n] / peak) << row.shape;
    }
}

TEST(MSignalGenerator, EveryPresetHasAPeakOfOne)
{
    MSignalGenerator generator;
    for (int shape = 0; shape < 16; ++shape)
    {
        generator.Shape = shape;
        generator.Rebuild();
        EXPECT_NEAR(Peak(generator), 1.0f, 1e-6f) << MSignalGenerator::GetShapeName(shape).ToUTF8();
    }
    generator.Shape = 12.0;
    generator.Rebuild();
    EXPECT_GE(*std::ranges::min_element(generator.GetTable()), 0.0f) << "a unipolar shape stays so";
}

/// The default free curve.
double Curve(double x)
{
    return x < 0.25 ? 4.0 * x : x < 0.75 ? 2.0 - 4.0 * x : 4.0 * x - 4.0;
}

struct MixCase
{
    double envelopeDepth, stepDepth;
    double preset, curve, steps; ///< expected shares
};

constexpr MixCase MixCases[] = {
    {0.0, 0.0, 1.0, 0.0, 0.0},
    {9.9e-6, 9.9e-6, 1.0, 0.0, 0.0},
    {1e-5, 1e-5, 1.0, 0.0, 0.0}, // too little for either of them
    {-1.0, -1.0, 1.0, 0.0, 0.0},
    {1.01e-5, 0.0, 1.0 - 1.01e-5, 1.01e-5, 0.0},
    {0.25, 0.0, 0.75, 0.25, 0.0},
    {0.99998, 0.0, 0.00002, 0.99998, 0.0},
    {0.99999, 0.0, 0.0, 1.0, 0.0},
    {1.0, 9.9e-6, 0.0, 1.0, 0.0},
    {1.0, 1e-5, 0.0, 1.0 - 1e-5, 1e-5}, // but enough for steps on the curve alone
    {1.0, 0.25, 0.0, 0.75, 0.25},
    {0.0, 0.25, 0.75, 0.0, 0.25},
    {0.0, 0.99998, 0.00002, 0.0, 0.99998},
    {0.5, 0.25, 0.375, 0.375, 0.25},
    {0.5, 0.99999, 0.0, 0.0, 0.99999}, // steps alone, at their depth
    {1.0, 1.0, 0.0, 0.0, 1.0},
};

TEST(MSignalGenerator, MixesThreeSourcesByTheirDepths)
{
    MSignalGenerator generator;
    generator.Shape = 6.5;
    generator.StepItemCount = 3;
    generator.StepValues = {1.0f, -0.25f, 0.5f};
    const PresetShapeTables& presets = PresetShapeTables::Get();
    for (const MixCase& row : MixCases)
    {
        generator.EnvelopeDepth = row.envelopeDepth;
        generator.StepDepth = row.stepDepth;
        generator.Rebuild();
        std::vector<double> expected(Length);
        double peak = 0.0;
        for (std::size_t n = 0; n < Length; ++n)
        {
            expected[n] = row.preset * (0.5 * presets[6][n] + 0.5 * presets[7][n]) +
                          row.curve * Curve(static_cast<double>(n) / Length) +
                          row.steps * generator.StepValues[n < 2730   ? 0
                                                           : n < 5461 ? 1
                                                                      : 2];
            peak = std::max(peak, std::abs(expected[n]));
        }
        for (std::size_t n = 0; n < Length; ++n)
            ASSERT_NEAR(generator.GetTable()[n], expected[n] / peak, 1e-6)
                << row.envelopeDepth << ", " << row.stepDepth << ", sample " << n;
    }
}

/// A wide and a narrow kernel, on steps that lie across the end of the cycle.
TEST(MSignalGenerator, SmoothsRoundTheCycle)
{
    struct Case
    {
        double smoothness;
        int halfWidth;
    };
    for (const auto& [smoothness, halfWidth] : {Case{1.0, 256}, Case{0.1, 26}})
    {
        MSignalGenerator generator;
        generator.StepDepth = 1.0;
        generator.StepItemCount = 4;
        generator.StepValues = {1.0f, -0.5f, 0.25f, -1.0f};
        generator.Smoothness = smoothness;
        generator.Rebuild();
        EXPECT_EQ(generator.SmoothingFilter.GetHalfWidth(), halfWidth);
        for (int n = 0; n < Length; n += 8)
        {
            double sum = 0.0;
            double weights = 0.0;
            for (int k = -halfWidth; k <= halfWidth; ++k)
            {
                const double weight = std::exp(-std::pow(k * 2.0 / (256.0 * smoothness), 2.0));
                const int step = (n + k + Length) % Length / 2048;
                sum += weight * generator.StepValues[static_cast<std::size_t>(step)];
                weights += weight;
            }
            ASSERT_NEAR(generator.GetTable()[static_cast<std::size_t>(n)], sum / weights, 1e-5)
                << smoothness << ", sample " << n; // the peak is 1 in the middle of the first step
        }
    }
}

TEST(MSignalGenerator, NormalisesBetweenOperationsAndAmplitudes)
{
    MSignalGenerator generator; // sin(x) + sin(2x), whose peak is 1.76
    generator.Operations.Harmonic[0] = 1.0;
    generator.Operations.AmplitudeTransformEnable = true;
    generator.Operations.AmplitudeTransform.Clear();
    generator.Operations.AmplitudeTransform.AddEndPoints(0.0, 0.5);
    generator.Rebuild();
    double peak = 0.0;
    const auto shape = [](std::size_t n)
    {
        const double angle = 2.0 * std::numbers::pi * static_cast<double>(n) / Length;
        return std::sin(angle) + std::sin(2.0 * angle);
    };
    for (std::size_t n = 0; n < Length; ++n)
        peak = std::max(peak, std::abs(shape(n)));
    for (std::size_t n = 0; n <= Length; ++n)
        ASSERT_NEAR(generator.GetTable()[n], 0.25 + 0.25 * shape(n) / peak, 1e-6) << n;
}

TEST(MSignalGenerator, NearSilenceIsRaisedByTenAtMost)
{
    MSignalGenerator generator;
    generator.StepDepth = 1.0;
    generator.StepItemCount = 2;
    generator.StepValues = {0.05f, -0.05f};
    generator.Rebuild();
    EXPECT_FLOAT_EQ(Peak(generator), 0.5f);
    generator.StepValues = {};
    generator.Rebuild();
    EXPECT_EQ(Peak(generator), 0.0f);
}

TEST(MSignalGenerator, BrokenFieldsGiveAFiniteTable)
{
    constexpr double Broken[] = {std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity(), 1e300, -1e300};
    constexpr void (*Breaks[])(MSignalGenerator&, double) = {
        [](MSignalGenerator& g, double v) { g.StepValues[0] = static_cast<float>(v); },
        [](MSignalGenerator& g, double v) { g.StepDepth = v; },
        [](MSignalGenerator& g, double v) { g.EnvelopeDepth = v; },
        [](MSignalGenerator& g, double v) { g.Smoothness = v; },
        [](MSignalGenerator& g, double v) { g.Operations.Skew = v; },
        [](MSignalGenerator& g, double v) { g.Operations.FullSkew = v; },
        [](MSignalGenerator& g, double v) { g.Operations.Halve = v; },
        [](MSignalGenerator& g, double v) { g.Operations.Harmonic[3] = v; },
        [](MSignalGenerator& g, double v) { g.Operations.HarmonicPhase[0] = v; },
        [](MSignalGenerator& g, double v) { g.StepItemCount = v > 0.0 ? 1000000 : -5; },
    };
    for (const double value : Broken)
        for (const auto& set : Breaks)
        {
            MSignalGenerator generator;
            generator.StepDepth = 0.5;
            generator.Operations.Harmonic[0] = 0.5;
            set(generator, value);
            generator.Rebuild();
            EXPECT_TRUE(std::ranges::all_of(generator.GetTable(),
                                            [](float s) { return std::abs(s) <= 1.001f; }))
                << value << ", row " << &set - Breaks;
            MXMLItem item("Shape");
            generator.Store(item);
        }
}

/// What no hand would choose: all fields at random, curves of several kinds of segments.
void Randomise(MSignalGenerator& generator, std::mt19937& draw)
{
    const auto between = [&draw](double low, double high)
    { return std::uniform_real_distribution<>(low, high)(draw); };
    generator.Shape = between(0.0, 15.0);
    generator.EnvelopeDepth = between(0.0, 1.0);
    generator.StepDepth = between(0.0, 0.5);
    generator.Smoothness = between(0.0, 1.0);
    generator.StepItemCount = static_cast<std::int32_t>(between(1.0, 32.99));
    for (float& value : generator.StepValues)
        value = static_cast<float>(between(-1.0, 1.0));
    MSignalGeneratorOperations& operations = generator.Operations;
    for (double* amount : {&operations.Skew, &operations.FullSkew, &operations.Halve})
        *amount = between(-0.5, 0.5);
    for (std::size_t i = 0; i < operations.Harmonic.size(); i += 2)
    {
        operations.Harmonic[i] = between(-1.0, 1.0);
        operations.HarmonicPhase[i] = between(0.0, 1.0);
    }
    operations.TransformEnable = draw() % 2 == 0;
    operations.AmplitudeTransformEnable = draw() % 2 == 0;
    for (MEnvelope* curve :
         {&generator.Envelope, &operations.Transform, &operations.AmplitudeTransform})
        curve->Insert(1, MEnvelopePoint{.X = between(0.05, 0.2),
                                        .Y = between(0.0, 0.5),
                                        .Curvature = between(-1.0, 1.0),
                                        .Type = draw() % 2 == 0
                                                    ? MEnvelopePoint::ControlType::Mode1
                                                    : MEnvelopePoint::ControlType::Smooth1});
}

TEST(MSignalGenerator, LoadsWhatItStored)
{
    std::mt19937 draw(1);
    MXMLItem item("Shape"); // stored over and over
    for (int round = 0; round < 30; ++round)
    {
        MSignalGenerator first;
        Randomise(first, draw);
        first.Rebuild();
        first.Store(item);
        MSignalGenerator second;
        second.Load(item);
        for (std::size_t n = 0; n <= Length; ++n)
            ASSERT_NEAR(second.GetTable()[n], first.GetTable()[n], 1e-6) << round << ", " << n;
        MXMLItem fresh("Shape");
        second.Store(fresh);
        EXPECT_EQ(TextOf(fresh), TextOf(item)) << "nothing of the shape before is left";
    }
}

std::string FlagsOf(const MXMLItem& curve)
{
    std::string flags;
    for (const auto& point : curve.GetSubItems())
        flags += point->GetAttribute("Flags", "").ToUTF8() + " ";
    return flags;
}

TEST(MSignalGenerator, StoresNoZeros)
{
    MXMLItem item("Shape");
    MSignalGenerator().Store(item);
    for (const char* key : {"value", "Smoothness", "EnvelopeDepth"})
        EXPECT_TRUE(item.HasAttribute(key)) << key;
    EXPECT_EQ(FlagsOf(item.GetRequiredSubItem("Envelope")), "15 12 12 15 ");
    EXPECT_EQ(item.GetRequiredSubItem("Step").GetAttributes().size(), 2u + 8u);
    MXMLItem& operations = item.GetRequiredSubItem("Operations");
    EXPECT_TRUE(operations.GetAttributes().empty());
    for (const char* curve : {"Transform", "AmplitudeTransform"})
        EXPECT_EQ(FlagsOf(operations.GetRequiredSubItem(curve)), "13 13 ") << curve;
}

TEST(MSignalGenerator, WhatIsMissingIsZeroOrStays)
{
    std::mt19937 draw(2);
    MSignalGenerator generator;
    Randomise(generator, draw);
    MXMLItem before("Shape");
    generator.Store(before);
    MXMLItem empty("Shape");
    generator.Load(empty);
    EXPECT_TRUE(empty.HasSubItem("Operations"));

    MXMLItem after("Shape");
    generator.Store(after);
    before.SetAttribute("EnvelopeDepth", 0.0);
    MXMLItem& operations = before.GetRequiredSubItem("Operations");
    std::vector<MAttribute> none;
    operations.AdoptAttributes(none);
    EXPECT_EQ(TextOf(after), TextOf(before));
}

TEST(MSignalGenerator, ReadsForeignTextsWithinBounds)
{
    using Generator = const MSignalGenerator&;
    struct Case
    {
        const char *item, *key, *text; ///< the item is the shape itself if it has no name
        double (*field)(Generator);
        double expected;
    };
    constexpr auto Shape = [](Generator g) { return g.Shape; };
    constexpr auto Smoothness = [](Generator g) { return g.Smoothness; };
    constexpr auto StepCount = [](Generator g) { return double(g.StepItemCount); };
    constexpr auto FirstStep = [](Generator g) { return double(g.StepValues[0]); };
    constexpr auto Skew = [](Generator g) { return g.Operations.Skew; };
    constexpr auto Switch = [](Generator g) { return double(g.Operations.TransformEnable); };
    const Case cases[] = {
        {"", "value", "abc", Shape, 0.0},
        {"", "value", "1e99", Shape, 15.0},
        {"", "value", "nan", Shape, 0.0},
        {"", "Smoothness", "7", Smoothness, 1.0},
        {"", "Smoothness", "-1e400", Smoothness, 0.0},
        {"", "EnvelopeDepth", "inf", [](Generator g) { return g.EnvelopeDepth; }, 0.0},
        {"Step", "StepItemCount", "0", StepCount, 1.0},
        {"Step", "StepItemCount", "-7", StepCount, 1.0},
        {"Step", "StepItemCount", "99999999999999999999", StepCount, 32.0},
        {"Step", "StepDepth", "2", [](Generator g) { return g.StepDepth; }, 2.0},
        {"Step", "Item0", "5", FirstStep, 1.0},
        {"Step", "Item0", "-1e39", FirstStep, -1.0},
        {"Step", "Item0", "", FirstStep, 0.0},
        {"Operations", "Skew", "1e9", Skew, 1e9},
        {"Operations", "Skew", "-1e400", Skew, std::numeric_limits<double>::lowest()},
        {"Operations", "Harmonic8", "1e300", [](Generator g) { return g.Operations.Harmonic[6]; },
         1e300},
        {"Operations", "HarmonicPhase2", "-0.7",
         [](Generator g) { return g.Operations.HarmonicPhase[0]; }, -0.7},
        {"Operations", "TransformEnable", "2", Switch, 1.0},
        {"Operations", "TransformEnable", "no", Switch, 0.0},
    };
    for (const Case& row : cases)
    {
        MXMLItem item("Shape");
        (*row.item == 0 ? item : item.AddSubItem(row.item)).SetAttribute(row.key, row.text);
        MSignalGenerator generator;
        generator.Load(item);
        EXPECT_EQ(row.field(generator), row.expected) << row.key << " = " << row.text;
        EXPECT_TRUE(
            std::ranges::all_of(generator.GetTable(), [](float s) { return std::isfinite(s); }))
            << row.key << " = " << row.text;
    }
}

TEST(MSignalGenerator, RefusedTreesChangeNothing)
{
    MSignalGenerator generator;
    MXMLItem before("Shape");
    generator.Store(before);
    MXMLItem item("Shape");
    item.SetAttribute("value", 3.0);
    item.AddSubItem("Envelope").AddSubItem("Point");
    MXMLItem& curve = item.AddSubItem("Operations").AddSubItem("AmplitudeTransform");
    for (int i = 0; i <= limits::CurvePoints; ++i)
        curve.AddSubItem("Point");
    EXPECT_THROW(generator.Load(item), MException);
    MXMLItem after("Shape");
    generator.Store(after);
    EXPECT_EQ(TextOf(after), TextOf(before));
}

TEST(MSignalGenerator, ReadsStepsOfOlderFiles)
{
    MXMLItem item("Shape");
    MXMLItem& steps = item.AddSubItem("Step");
    steps.SetAttribute("StepItemCount", 32);
    steps.AddSubItem("Item31").SetAttribute("value", 0.5);
    steps.AddSubItem("Item30");
    MSignalGenerator generator;
    generator.Load(item);
    EXPECT_EQ(generator.StepValues[31], 0.5f);
    EXPECT_EQ(generator.StepValues[30], 0.0f);
    EXPECT_EQ(generator.StepValues[29], -1.0f) << "one that is missing stays";
}

} // namespace
