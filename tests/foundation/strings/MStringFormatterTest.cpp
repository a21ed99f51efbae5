#include "foundation/strings/MStringFormatter.h"

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

TEST(MStringFormatter, RefusesBrokenFormats)
{
    for (const char* const format : {"{", "{0;", "{0", "x {12.3"})
        EXPECT_THROW(MStringFormatter{format}, MException) << format;
    for (const char* const format : {"{32}", "{-1}", "{999}"})
        EXPECT_THROW(MStringFormatter{format}, MException) << format;
    EXPECT_EQ(MStringFormatter("{31}").Result().ToUTF8(), "");
}

} // namespace
