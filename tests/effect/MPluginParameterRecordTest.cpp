#include "effect/MPluginParameterRecord.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace
{

MPluginParameterRecord Float(MParameterLaw law, double min = 0.0, double max = 1.0)
{
    MPluginParameterRecord record;
    record.SetFloat("Level", min, max, max);
    record.law = law;
    return record;
}

TEST(MPluginParameterRecord, FloatsBendByTheirLaw)
{
    struct Case
    {
        MParameterLaw law;
        double expected; ///< of 0.5, over 0 to 16
    };
    constexpr Case Cases[] = {{MParameterLaw::Linear, 8.0},
                              {MParameterLaw::Squared, 4.0},
                              {MParameterLaw::FourthPower, 1.0}};
    for (const Case& row : Cases)
    {
        MPluginParameterRecord record = Float(row.law, 0.0, 16.0);
        record.Set01(0.5);
        EXPECT_EQ(record.range.asFloat.value, row.expected);
        for (const double x : {0.0, 0.125, 0.7, 1.0})
        {
            record.Set01(x);
            EXPECT_NEAR(record.Get01(), x, 1e-12);
        }
    }
}

TEST(MPluginParameterRecord, IntsReachTheirTopOnlyAtOne)
{
    MPluginParameterRecord record;
    record.SetInt("Octaves", -3, 3, 0);
    struct Case
    {
        double x;
        int expected;
    };
    constexpr Case Cases[] = {{0.0, -3}, {0.1, -2}, {0.5, 0}, {0.9, 2}, {0.999, 2}, {1.0, 3}};
    for (const Case& row : Cases)
    {
        record.Set01(row.x);
        EXPECT_EQ(record.range.asInt.value, row.expected) << row.x;
    }
    EXPECT_EQ(record.Get01(), 1.0);
    for (const double x : {1e30, -1e30, std::numeric_limits<double>::quiet_NaN()})
    {
        record.Set01(x);
        EXPECT_EQ(record.range.asInt.value, 3) << "no int is near " << x;
    }
}

TEST(MPluginParameterRecord, EnumsFallIntoEqualPieces)
{
    static constexpr const char* Names[] = {"a", "b", "c", "d"};
    MPluginParameterRecord record;
    record.type = MParameterType::Enum;
    record.range.asEnum = {Names, 4, 0, 0, false};
    struct Case
    {
        double x;
        int expected;
    };
    constexpr Case Cases[] = {{-1.0, 0}, {0.0, 0},  {0.24, 0}, {0.25, 1},
                              {0.5, 2},  {0.76, 3}, {9.0, 3}};
    for (const Case& row : Cases)
    {
        record.Set01(row.x);
        EXPECT_EQ(record.range.asEnum.value, row.expected) << row.x;
    }
    EXPECT_EQ(record.Get01(), 1.0);
    EXPECT_EQ(record.GetValueText().ToUTF8(), "d");
    record.ParseValueText("B");
    EXPECT_EQ(record.range.asEnum.value, 1);
    record.ParseValueText("unknown");
    EXPECT_EQ(record.range.asEnum.value, 1);
}

TEST(MPluginParameterRecord, ModulationKeepsWhatTheUserSet)
{
    MPluginParameterRecord record = Float(MParameterLaw::Linear);
    record.range.asFloat.value = 0.25;
    record.SetModulated(true);
    EXPECT_EQ(record.Effective(), 0.25) << "starts where the user left it";
    record.Set01(0.75);
    EXPECT_EQ(record.Effective(), 0.75);
    EXPECT_EQ(record.Get01(), 0.25);
    record.SetModulated(false);
    EXPECT_EQ(record.Effective(), 0.25);
}

TEST(MPluginParameterRecord, PlainTextsAreNumbers)
{
    MPluginParameterRecord record = Float(MParameterLaw::Linear, -100.0, 100.0);
    record.range.asFloat.value = 0.5;
    EXPECT_EQ(record.GetValueText().ToUTF8(), "0.500000");
    record.format = "{+0.1} cents";
    EXPECT_EQ(record.GetValueText().ToUTF8(), "+0.5 cents");
    record.ParseValueText("-12.5 cents");
    EXPECT_EQ(record.range.asFloat.value, -12.5);
    for (const char* const unreadable : {"", "cents", "nan"})
    {
        record.ParseValueText(unreadable);
        EXPECT_EQ(record.range.asFloat.value, -12.5) << unreadable;
    }
}

} // namespace
