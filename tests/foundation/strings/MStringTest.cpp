#include "foundation/strings/MString.h"

#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"

namespace
{

TEST(MString, LiteralsAndNullCostNothingAndReadBack)
{
    EXPECT_EQ(MString().Length(), 0);
    EXPECT_EQ(MString(nullptr).ToUTF8(), "");
    const MString text = "Wet";
    EXPECT_EQ(text.Length(), 3);
    EXPECT_EQ(text.CharAt(1), u'e');
    EXPECT_EQ(text.CharAt(3), 0);
    EXPECT_EQ(text.CharAt(-1), 0);
}

TEST(MString, AChangeIsSeenByNoOtherHolder)
{
    MString first = "gain";
    first.Append(u'1');
    const MString second = first;
    first.Append(" dB");
    MString third = second;
    third.Insert(0, "-");
    EXPECT_EQ(first.ToUTF8(), "gain1 dB");
    EXPECT_EQ(second.ToUTF8(), "gain1");
    EXPECT_EQ(third.ToUTF8(), "-gain1");
}

TEST(MString, InsertsAndAppendsItself)
{
    MString text = MString::FromInteger(123);
    text.Insert(1, text);
    EXPECT_EQ(text.ToUTF8(), "112323");
    text.Append(text);
    EXPECT_EQ(text.ToUTF8(), "112323112323");
    text.Insert(1000, "!");
    text.Insert(-5, "?");
    EXPECT_EQ(text.ToUTF8(), "?112323112323!");
}

TEST(MString, GrowsThroughManyAppends)
{
    MString text;
    std::string expected;
    for (int i = 0; i < 5000; ++i)
    {
        text.Append(static_cast<char16_t>(u'a' + i % 26));
        expected += static_cast<char>('a' + i % 26);
    }
    EXPECT_EQ(text.ToUTF8(), expected);
}

TEST(MString, MidCutsToTheText)
{
    struct Case
    {
        int position, count;
        const char* expected;
    };
    constexpr Case Cases[] = {{0, 3, "Fre"}, {3, 1000, "quency"}, {0, 1000, "Frequency"},
                              {9, 1, ""},    {-1, 3, ""},         {2, 0, ""}};
    MString shared = MString::FromUTF8("Frequency");
    for (const MString& text : {MString("Frequency"), shared})
        for (const Case& row : Cases)
            EXPECT_EQ(text.Mid(row.position, row.count).ToUTF8(), row.expected)
                << row.position << ", " << row.count;
}

TEST(MString, ComparesWithoutCase)
{
    EXPECT_TRUE(MString("Frequency") == MString::FromUTF8("fREQUENCY"));
    EXPECT_LT(MString("Dry").Compare("wet"), 0);
    EXPECT_GT(MString("wet").Compare("Dry"), 0);
    EXPECT_GT(MString("Wetter").Compare("Wet"), 0);
    EXPECT_LT(MString("").Compare("a"), 0);
}

TEST(MString, UTF8RoundTripsEveryPlane)
{
    for (const char* const text :
         {"", "plain", "\xC3\xA9", "\xE2\x99\xAF 440", "\xF0\x9D\x84\x9E!"})
        EXPECT_EQ(MString::FromUTF8(text).ToUTF8(), text);
    EXPECT_EQ(MString::FromUTF8("\xF0\x9D\x84\x9E").Length(), 2) << "a surrogate pair";
}

TEST(MString, BytesThatAreNotUTF8BecomeReplacements)
{
    for (const char* const broken :
         {"\xFF", "\xC3", "\xE2\x99", "\xC0\x80", "\xED\xA0\x80", "\xF8", "\xE0\x80\x80"})
        EXPECT_EQ(MString::FromUTF8(broken).CharAt(0), 0xFFFD) << broken;
    EXPECT_EQ(MString::FromUTF8("\xC3(").Mid(1, 1).ToUTF8(), "(") << "what follows is kept";
}

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

TEST(MStringThreads, HoldersOnSeveralThreadsShareOneText)
{
    const MString text = MString::FromUTF8("shared by all");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            [&text]
            {
                for (int i = 0; i < 2000; ++i)
                {
                    MString mine = text;
                    mine.Append(u'!');
                    EXPECT_EQ(mine.Length(), text.Length() + 1);
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(text.ToUTF8(), "shared by all");
}

} // namespace
