#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "foundation/strings/MString.h"

namespace
{

TEST(MString, DoublesPrintAsTheCLibraryDoes)
{
    for (const double value : {0.0, -0.5, 1.005, 12345.6789, 1e21, -1e-9, 1.7e308})
        for (const int decimals : {0, 1, 2, 12})
        {
            char expected[512];
            std::snprintf(expected, sizeof(expected), "%.*f", decimals, value);
            EXPECT_EQ(MString::FromDouble(value, decimals).ToUTF8(), expected);
        }
}

TEST(MString, RandomDoublesPrintAsTheCLibraryDoes)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 200'000; ++i)
    {
        const auto bits = random();
        // Any bits; numbers of the usual sizes; halves, which have to round to even.
        const double value = i % 3 == 0 ? std::bit_cast<double>(bits)
                             : i % 3 == 1
                                 ? std::ldexp(static_cast<double>(bits >> 11), -40 - i % 30)
                                 : static_cast<double>(bits % 100'000) / 64.0 - 500.0;
        if (!std::isfinite(value))
            continue;
        const int decimals = static_cast<int>(random() % 23);
        char expected[512];
        std::snprintf(expected, sizeof(expected), "%.*f", decimals, value);
        ASSERT_EQ(MString::FromDouble(value, decimals).ToUTF8(), expected) << decimals;
    }
}

TEST(MString, ReadsTheNumberThatATextBeginsWith)
{
    struct Case
    {
        const char* text;
        double expected;
    };
    constexpr double Largest = std::numeric_limits<double>::max();
    constexpr Case Cases[] = {
        {"440 Hz", 440.0},  {" \t-6.5 dB", -6.5}, {"+3", 3.0},
        {"1e3", 1000.0},    {".5", 0.5},          {"", 0.0},
        {"abc", 0.0},       {"nan", 0.0},         {"-inf", 0.0},
        {"+-1", 0.0},       {"1e999", Largest},   {"-1e999", -Largest},
        {"1e-999", 0.0},    {"0x10", 0.0},        {"440,5", 440.0},
        {"0.000e999", 0.0},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(MString(row.text).ToDouble(), row.expected) << row.text;

    double value = 7.0;
    EXPECT_FALSE(MString("infinity").ReadDouble(value));
    EXPECT_EQ(value, 7.0);
    EXPECT_TRUE(MString((std::string(400, '9') + ".5").c_str()).ReadDouble(value));
    EXPECT_EQ(value, Largest) << "400 digits";
}

TEST(MString, ReadsIntegersUpToTheFirstOtherCharacter)
{
    struct Case
    {
        const char* text;
        int radix;
        std::int64_t expected;
        int consumed;
    };
    constexpr Case Cases[] = {
        {"72", 10, 72, 2},
        {"-12x", 10, -12, 3},
        {"x", 10, 0, 0},
        {"-", 10, 0, 1},
        {"fF", 16, 255, 0},
        {"-fG", 16, -15, 1},
        {"12", 2, 1, 0},
        {"-9223372036854775808", 10, std::numeric_limits<std::int64_t>::min(), 20},
    };
    for (const Case& row : Cases)
    {
        int consumed = -1;
        EXPECT_EQ(MString(row.text).ToInteger(row.radix, &consumed), row.expected) << row.text;
        EXPECT_EQ(consumed, row.consumed) << row.text;
    }
}

TEST(MString, IntegersPadBehindTheSign)
{
    EXPECT_EQ(MString::FromInteger(-5, 10, 3, u'0').ToUTF8(), "-005");
    EXPECT_EQ(MString::FromInteger(-5, 10, 3).ToUTF8(), "-  5");
    EXPECT_EQ(MString::FromInteger(std::numeric_limits<std::int64_t>::min()).ToUTF8(),
              "-9223372036854775808");
    EXPECT_EQ(MString::FromUnsigned(~std::uint64_t{0}, 16).ToUTF8(), "FFFFFFFFFFFFFFFF");
}

} // namespace
