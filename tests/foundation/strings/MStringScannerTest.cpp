#include "foundation/strings/MStringScanner.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

namespace
{

TEST(MStringScanner, FindsFieldsUpToTheFirstDifference)
{
    struct Case
    {
        const char* format;
        const char* input;
        int count;
        const char* fields; ///< each in brackets
    };
    constexpr Case Cases[] = {
        {"{0} dB", "12 dB", 1, "[12]"},
        {"{0}", "12 dB", 1, "[12]"},
        {"{0}", "", 0, ""},
        {"{0} dB", "12 Hz", 1, "[12]"},
        {"x{0}", "y12", 0, ""},
        {"{1}/{0}", "3/4", 2, "[4][3]"},
        {"{0}:{1}", "12:34:56", 2, "[12][34:56]"},
        {"{0}:{1}", "12", 1, "[12]"},
        {"{0}x{1}", "xx", 2, "[][x]"},
        {"{2} {0}", "a b", 3, "[b][][a]"},
        {"{0}  \t {1}", "a\n b", 2, "[a][b]"},
        {"{0} {1}", "a  ", 1, "[a]"},
        {" {0}", "a", 0, ""},
        {"({0})", "(1 2)", 1, "[1 2]"},
        {"{{{0}}}", "{7}", 1, "[7]"},
        {"{0}%", "50", 1, "[50]"},
        {"{0}{1}", "a{b", 2, "[a][{b]"},
        {"{0}}", "5", 1, "[5]"},
        {"{0}}=", "5}=", 1, "[5]"},
        {"{0;+.02} Hz", "+1.50 Hz", 1, "[+1.50]"},
        {"a}{b{0}", "a{bc", 1, "[c]"},
        {"{0} {0}", "a b", 1, "[b]"},
    };
    for (const Case& row : Cases)
    {
        MStringScanner scanner(row.format, row.input);
        EXPECT_EQ(scanner.FieldCount(), row.count) << row.format << " on " << row.input;
        MString fields;
        for (int i = 0; i < row.count; ++i)
        {
            MString field = "not handed out";
            scanner.Get(field);
            fields.Append("[");
            fields.Append(field);
            fields.Append("]");
        }
        EXPECT_EQ(fields.ToUTF8(), row.fields) << row.format << " on " << row.input;
    }
}

TEST(MStringScanner, HandsOutNumbersOfEachWidth)
{
    std::int8_t i8 = 0;
    std::int16_t i16 = 0;
    std::int32_t i32 = 0;
    std::int64_t i64 = 0;
    double number = 0.0;
    MString text;
    MStringScanner scanner("{0} {1} {2x} {3} {4} {5}",
                           "-128 32767 -7fffffFF 9223372036854775807 -1.5e3x y");
    MStringScanner(scanner).Get(i8).Get(i16).Get(i32);
    scanner.Get(i64).Get(number).Get(text).Get(number);
    EXPECT_EQ(i8, -128);
    EXPECT_EQ(i16, 32767);
    EXPECT_EQ(i32, -0x7fffffff) << "copies share the place";
    EXPECT_EQ(i64, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(number, -1500.0) << "and stays when there is no further field";
    EXPECT_EQ(text.ToUTF8(), "y");
    EXPECT_EQ(scanner.FieldCount(), 6);
}

template <typename Integer>
void ExpectTheScanToEndAt(const char* digitless)
{
    Integer first = 7;
    Integer second = 7;
    Integer third = 7;
    MStringScanner scanner("{0} {1} {2}", digitless);
    EXPECT_EQ(scanner.Get(first).FieldCount(), 3);
    EXPECT_EQ(scanner.Get(second).Get(third).FieldCount(), 1) << digitless;
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0) << "what the text gives";
    EXPECT_EQ(third, 7);
}

TEST(MStringScanner, AFieldWithoutADigitEndsTheScanOfShortIntegers)
{
    for (const char* const input : {"1 x 3", "1 - 3", "1 ff 3"})
    {
        ExpectTheScanToEndAt<std::int8_t>(input);
        ExpectTheScanToEndAt<std::int16_t>(input);
        ExpectTheScanToEndAt<std::int32_t>(input);
    }
    std::int32_t hexadecimal = 0;
    EXPECT_EQ(MStringScanner("{0x}", "ff").Get(hexadecimal).FieldCount(), 1);
    EXPECT_EQ(hexadecimal, 255);

    std::int64_t wide = 7;
    double number = 7.0;
    MString last;
    MStringScanner others("{0} {1} {2}", "x y z");
    EXPECT_EQ(others.Get(wide).Get(number).Get(last).FieldCount(), 3) << "simply advance";
    EXPECT_EQ(wide, 0);
    EXPECT_EQ(number, 0.0);
    EXPECT_EQ(last.ToUTF8(), "z");
}

TEST(MStringScanner, RefusesBrokenFormatsOnceItComesToThem)
{
    for (const char* const format : {"a{", "a{0;", "a{32}", "a{-1}"})
    {
        EXPECT_THROW(MStringScanner(format, "ab"), MException) << format;
        EXPECT_EQ(MStringScanner(format, "b").FieldCount(), 0) << format;
    }
}

TEST(MStringScanner, IsTheInverseOfTheFormatter)
{
    std::mt19937_64 random(5);
    for (int i = 0; i < 5000; ++i)
    {
        const auto integer = static_cast<std::int64_t>(random()) >> (random() % 64);
        const auto hexadecimal = static_cast<std::int32_t>(random());
        const double number =
            std::ldexp(static_cast<double>(integer), static_cast<int>(random() % 80) - 60);
        const MString text = MString::FromUTF16(std::u16string(1 + random() % 9, u'\u00E9'));
        const MString format = "{2;+.9} dB, ({1x;06}) <{3}>  {0;09}";
        const MString filled =
            MStringFormatter(format).Add(integer).Add(hexadecimal).Add(number).Add(text).Result();

        std::int64_t readInteger = 0;
        std::int32_t readHexadecimal = 0;
        double readNumber = 0.0;
        MString readText;
        MStringScanner scanner(format, filled);
        scanner.Get(readInteger).Get(readHexadecimal).Get(readNumber).Get(readText);
        ASSERT_EQ(scanner.FieldCount(), 4) << filled.ToUTF8();
        ASSERT_EQ(readInteger, integer) << filled.ToUTF8();
        ASSERT_EQ(readHexadecimal, hexadecimal) << filled.ToUTF8();
        ASSERT_NEAR(readNumber, number, 5.1e-10 + std::abs(number) * 1e-15) << filled.ToUTF8();
        ASSERT_TRUE(readText == text) << filled.ToUTF8();
    }
}

} // namespace
