#include "effect/MSignalGenerator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr int Length = MSignalGenerator::TableLength;

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

TEST(MSignalGenerator, FractionsCrossFadeNeighbours)
{
    MSignalGenerator generator;
    generator.Shape = 5.5;
    generator.Rebuild();
    EXPECT_EQ(generator.ShapeFraction, 0.5f);
    EXPECT_EQ(Peak(generator), 1.0f);
    const PresetShapeTables& presets = PresetShapeTables::Get();
    double peak = 0.0;
    for (std::size_t n = 0; n < Length; ++n)
        peak = std::max(peak, std::abs(0.5 * presets[5][n] + 0.5 * presets[6][n]));
    for (std::size_t n = 0; n < Length; n += 7)
        ASSERT_NEAR(generator.GetTable()[n], (0.5 * presets[5][n] + 0.5 * presets[6][n]) / peak,
                    1e-6);
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

TEST(MSignalGenerator, StepsDivideTheCycle)
{
    MSignalGenerator generator;
    generator.StepDepth = 1.0;
    generator.StepItemCount = 3;
    generator.StepValues = {1.0f, -0.5f, 0.25f};
    generator.Shape = 14.0; // ignored
    generator.Rebuild();
    const auto table = generator.GetTable();
    EXPECT_EQ(table[2729], 1.0f);
    EXPECT_EQ(table[2730], -0.5f);
    EXPECT_EQ(table[5460], -0.5f);
    EXPECT_EQ(table[5461], 0.25f);
    EXPECT_EQ(table[8191], 0.25f);
    EXPECT_EQ(table[8192], 1.0f);
}

TEST(MSignalGenerator, StepsMixIntoTheShape)
{
    MSignalGenerator generator;
    generator.StepDepth = 0.25;
    generator.StepItemCount = 1;
    generator.StepValues[0] = 1.0f;
    generator.Rebuild(); // 0.75 sine + 0.25, whose peak is 1
    EXPECT_NEAR(generator.Get(0.25), 1.0, 1e-6);
    EXPECT_NEAR(generator.Get(0.75), -0.5, 1e-6);
    generator.StepDepth = 9e-6; // too little to count
    generator.Rebuild();
    EXPECT_EQ(generator.Get(0.0), 0.0f);
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
    MSignalGenerator generator;
    generator.StepDepth = 0.5;
    generator.StepValues[0] = std::numeric_limits<float>::infinity();
    generator.StepValues[1] = std::numeric_limits<float>::quiet_NaN();
    for (const int count : {8, 0, -5, 1000000})
    {
        generator.StepItemCount = count;
        generator.Rebuild();
        EXPECT_LE(Peak(generator), 1.0f);
        EXPECT_TRUE(
            std::ranges::all_of(generator.GetTable(), [](float s) { return std::isfinite(s); }));
    }
}

TEST(MSignalGenerator, StoresAndLoadsWhatItHolds)
{
    MXMLItem item("Shape");
    MSignalGenerator first;
    first.Shape = 6.75;
    first.StepDepth = 0.5;
    first.StepItemCount = 3;
    first.StepValues = {0.5f, -0.25f, 0.75f};
    first.Rebuild();
    first.Store(item);
    MSignalGenerator second;
    second.Load(item);
    EXPECT_TRUE(std::ranges::equal(second.GetTable(), first.GetTable()));
    EXPECT_EQ(second.StepItemCount, 3);

    MXMLItem empty("Shape");
    second.Load(empty);
    EXPECT_TRUE(std::ranges::equal(second.GetTable(), first.GetTable()))
        << "missing keys change nothing";

    MXMLItem older("Shape");
    older.AddSubItem("Step").SetAttribute("StepItemCount", 99);
    older.GetOrAddSubItem("Step").AddSubItem("Item31").SetAttribute("value", 0.5);
    second.Load(older);
    EXPECT_EQ(second.StepItemCount, 32);
    EXPECT_EQ(second.StepValues[31], 0.5f);
}

} // namespace
