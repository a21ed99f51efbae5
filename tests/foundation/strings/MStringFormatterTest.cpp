#include "foundation/strings/MStringFormatter.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"

namespace
{

std::string Format(const char* format, double value)
{
    return MStringFormatter(format).Add(value).Result().ToUTF8();
}

std::string Format(const char* format, int value)
{
    return MStringFormatter(format).Add(value).Result().ToUTF8();
}

TEST(MStringFormatter, FormatsDoubles)
{
    EXPECT_EQ(Format("{0}", 1.5), "1.5000");
    EXPECT_EQ(Format("{0;.2} dB", -6.0206), "-6.02 dB");
    EXPECT_EQ(Format("{0.2}", 0.125), Format("{0:.2}", 0.125));
    EXPECT_EQ(Format("{+0.1}", 12.34), "+12.3");
    EXPECT_EQ(Format("{0;+.02}", 1.5), "+1.50");
    EXPECT_EQ(Format("{0;+.02}", 0.0), "0.00");
    EXPECT_EQ(Format("{+0.1}", -0.5), "-0.5");
}

TEST(MStringFormatter, FormatsIntegers)
{
    EXPECT_EQ(Format("{0}", -5), "-5");
    EXPECT_EQ(Format("{0:03}", -5), "-005");
    EXPECT_EQ(Format("{0;04}", 7), "0007");
    EXPECT_EQ(Format("{0; 4}", 7), "   7");
    EXPECT_EQ(Format("{0x;02}", 255), "FF");
    EXPECT_EQ(Format("{0x;02}", 10), "0A");
    EXPECT_EQ(Format("{+0}", 3), "+3");
    EXPECT_EQ(Format("{+0}", 0), "0");
    EXPECT_EQ(MStringFormatter("{+0}").Add(std::uint64_t{1}).Result().ToUTF8(), "+1");
}

TEST(MStringFormatter, PlacesArgumentsByNumber)
{
    const auto both = [](const char* format)
    { return MStringFormatter(format).Add("first").Add("second").Result().ToUTF8(); };
    EXPECT_EQ(both("{1} {0}"), "second first");
    EXPECT_EQ(both("{0}{1}"), "firstsecond");
    EXPECT_EQ(both("{1}{0}"), "secondfirst");
    EXPECT_EQ(both("<{0}> {0}"), "<> first") << "the last place counts";
    EXPECT_EQ(both("{1}"), "second") << "a number that the text lacks";
    EXPECT_EQ(both("none"), "none");
}

TEST(MStringFormatter, BracesStandForThemselvesWhenDoubled)
{
    EXPECT_EQ(MStringFormatter("{{0}}").Result().ToUTF8(), "{0}");
    EXPECT_EQ(MStringFormatter("a}b").Result().ToUTF8(), "ab");
    EXPECT_EQ(MStringFormatter("end}").Result().ToUTF8(), "end");
}

TEST(MStringFormatter, LongTextsComeOutWhole)
{
    for (const std::size_t size : {254u, 255u, 256u, 511u, 5000u})
    {
        const std::string literal(size, 'x');
        std::string format = literal;
        format.append("{1}").append(literal).append("{0; 99}");
        std::string expected = literal;
        expected.append("mid").append(literal).append(98, ' ').append("7");
        EXPECT_EQ(MStringFormatter(format.c_str()).Add(7).Add("mid").Result().ToUTF8(), expected);
    }
    EXPECT_EQ(Format("{0;.99}", -1e308).size(), 1u + 309u + 1u + 99u);
    EXPECT_EQ(Format("{0;.99}", 1e308).substr(0, 7), "1000000");
}

TEST(MStringFormatter, ArgumentsOfOnePlaceKeepTheirOrder)
{
    // All orders of four placeholders that stand in the same place.
    std::string order = "0123";
    do
    {
        std::string format;
        std::string expected;
        for (const char digit : order)
        {
            format.append("{").append(1, digit).append("}");
            expected += static_cast<char>(digit - '0' + 'a');
        }
        const MString result =
            MStringFormatter(format.c_str()).Add("a").Add("b").Add("c").Add("d").Result();
        EXPECT_EQ(result.ToUTF8(), expected) << format;
    } while (std::ranges::next_permutation(order).found);
}

TEST(MStringFormatter, CopiesFillTheSameText)
{
    MStringFormatter first("{0}, {1}");
    MStringFormatter second = first;
    first.Add(1);
    second.Add(2).Add("nowhere");
    EXPECT_EQ(first.Result().ToUTF8(), "1, 2");
}

TEST(MStringFormatter, SkipsWhatItDoesNotKnow)
{
    EXPECT_EQ(Format("{}", 5), "5") << "no number is 0";
    EXPECT_EQ(Format("{0;?.1y}", 2.0), "2.0");
    EXPECT_EQ(Format("{0;.123}", 2.0), "2.000000000000") << "two digits count";
    EXPECT_EQ(Format("{0;.-2}", 2.0), "2") << "no digits are none";
    EXPECT_EQ(Format("{0x}", -255), "-FF");
    EXPECT_EQ(MStringFormatter("{0x;08}").Add(~std::uint64_t{0}).Result().ToUTF8(),
              "FFFFFFFFFFFFFFFF");
}

TEST(MStringFormatter, RefusesBrokenFormats)
{
    struct Case
    {
        const char* format;
        const char* text;
    };
    constexpr const char* Unended = "Formatting string ends in an argument specification.";
    constexpr const char* Invalid = "Formatting string contains an invalid argument number.";
    constexpr Case Cases[] = {
        {"{", Unended},       {"{0;", Unended},   {"{0", Unended},
        {"x {12.3", Unended}, {"{0;.", Unended},  {"{32}", Invalid},
        {"{-1}", Invalid},    {"{999}", Invalid}, {"a{31}b{320", Invalid},
    };
    for (const Case& row : Cases)
        try
        {
            MStringFormatter formatter(row.format);
            ADD_FAILURE() << row.format;
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(), row.text) << row.format;
            EXPECT_EQ(failure.code, 2) << row.format;
        }
    EXPECT_EQ(MStringFormatter("{31}{-0}{001}").Result().ToUTF8(), "");
}

} // namespace
