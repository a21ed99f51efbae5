#include "foundation/values/ValueTexts.h"

#include <limits>

#include <gtest/gtest.h>

namespace
{

struct Case
{
    double value;
    const char* expected;
};

template <std::size_t Count>
void ExpectTexts(const Case (&cases)[Count], MString (*text)(double))
{
    for (const Case& row : cases)
        EXPECT_EQ(text(row.value).ToUTF8(), row.expected) << row.value;
}

TEST(ValueTexts, GainsInDecibels)
{
    constexpr Case Cases[] = {{1.0, "0.00 dB"},  {0.5, "-6.02 dB"}, {0.1, "-20.0 dB"},
                              {4.0, "12.0 dB"},  {3.1, "9.83 dB"},  {0.0, "silence"},
                              {1e-51, "silence"}};
    ExpectTexts(Cases, &valuetexts::Gain);
    constexpr Case Bare[] = {{0.5, "-6.02"}, {0.1, "-20.0"}, {0.0, "silence"}};
    ExpectTexts(Bare, &valuetexts::GainWithoutUnit);
}

TEST(ValueTexts, FrequenciesByMagnitude)
{
    constexpr Case Cases[] = {
        {0.0, "0 Hz"},         {9e-6, "0 Hz"},      {0.5, "0.5000 Hz"},   {1.0, "1.00 Hz"},
        {9.994, "9.99 Hz"},    {10.0, "10.0 Hz"},   {99.95, "100.0 Hz"},  {100.0, "100 Hz"},
        {440.5, "441 Hz"},     {9999.4, "9999 Hz"}, {9999.9, "10000 Hz"}, {10000.0, "10.0 kHz"},
        {12345.0, "12.3 kHz"}, {-440.0, "-440 Hz"}, {-2e4, "-20.0 kHz"},  {-440.5, "-440 Hz"},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(valuetexts::Frequency(row.value, " ").ToUTF8(), row.expected);
    EXPECT_EQ(valuetexts::Frequency(440.0, "").ToUTF8(), "440Hz");
    EXPECT_EQ(valuetexts::Frequency(0.0, "_").ToUTF8(), "0_Hz");
    EXPECT_EQ(valuetexts::Frequency(12345.0, "_").ToUTF8(), "12.3_kHz");
}

TEST(ValueTexts, PercentsHaveTwoDecimalsBelowOne)
{
    constexpr Case Cases[] = {{0.005, "0.50%"}, {0.5, "50.0%"},    {0.01, "1.0%"},
                              {0.0, "0.00%"},   {-0.25, "-25.0%"}, {-0.005, "-0.50%"}};
    ExpectTexts(Cases, &valuetexts::Percents);
}

TEST(ValueTexts, ShorterTimesHaveMoreDecimals)
{
    constexpr Case Cases[] = {{0.0, "0 ms"},       {5e-5, "0.050 ms"}, {0.00012, "0.12 ms"},
                              {0.00123, "1.2 ms"}, {0.0123, "12 ms"},  {0.0125, "13 ms"},
                              {1.5, "1500 ms"},    {1e-51, "0 ms"},    {-0.0123, "-12 ms"}};
    ExpectTexts(Cases, &valuetexts::Milliseconds);
}

TEST(ValueTexts, PansBySide)
{
    // 0.29 lies a little below 29 hundredths, and percents are cut.
    constexpr Case Cases[] = {{0.0, "center"},     {1e-51, "center"},    {-0.25, "25% left"},
                              {1.0, "100% right"}, {0.999, "99% right"}, {0.29, "28% right"},
                              {0.001, "0% right"}};
    ExpectTexts(Cases, &valuetexts::Pan);
}

TEST(ValueTexts, TurnsInDegreesAndPercents)
{
    constexpr Case Cases[] = {{0.0, "0\u00B0 (0%)"},
                              {0.25, "90\u00B0 (25.0%)"},
                              {1.0 / 3.0, "120\u00B0 (33.3%)"},
                              {0.999, "360\u00B0 (99.9%)"},
                              {-0.25, "-90\u00B0 (-25.0%)"}};
    ExpectTexts(Cases, &valuetexts::Degrees);
}

TEST(ValueTexts, ShapesByTheNamesOfTheNeighbours)
{
    const valuetexts::ShapeNames letters = [](int index)
    { return MString::FromCharacter(static_cast<char16_t>(u'A' + index)); };
    constexpr Case Cases[] = {{5.0, "F"},
                              {5.004, "F"},
                              {5.25, "75% F, 25% G"},
                              {5.995, "G"},
                              {15.0, "P"},
                              {14.5, "50% O, 50% P"},
                              {99.0, "P"},
                              {-3.0, "A"},
                              {0.01, "99% A, 1% B"},
                              {std::numeric_limits<double>::quiet_NaN(), "P"}};
    for (const Case& row : Cases)
        EXPECT_EQ(valuetexts::Shape(row.value, letters).ToUTF8(), row.expected) << row.value;
}

TEST(ValueTexts, ShapesAreReadBack)
{
    const valuetexts::ShapeNames names = [](int index)
    { return index == 5 ? MString("Sine 4-root") : MString::FromInteger(index, 10, 2, u'S'); };
    constexpr Case Cases[] = {
        {5.0, "Sine 4-root"},
        {5.0, " sine 4-ROOT\t"},
        {15.0, "15"},
        {5.25, "75% Sine 4-root, 25% S6"},
        {5.25, "25% s6,75%sine 4-root"},
        {4.0 + 33.5 / 101.0, "67.5% S4, 33.5% Sine 4-root"}, // rounded up, both
        {3.0, "0% S2, 100% S3"},
        {14.5, "14.5"},
        {-2.0, " -2 "},
        {99.0, "99"},
    };
    for (const Case& row : Cases)
    {
        double position = -1.0;
        EXPECT_TRUE(valuetexts::ParseShape(row.expected, names, position)) << row.expected;
        EXPECT_DOUBLE_EQ(position, row.value) << row.expected;
    }
    for (const char* const refused :
         {"", " ", "Triangle", "30% S4", "S4, S5", "30% S4, 70% S6", "50% S4, 50% S4",
          "30% S3, 68% S4", "130% S3, -30% S4", "5 S4", "nan", ",", "30% S3, 30% S4, 40% S4",
          "x30% S3, 70% S4"})
    {
        double position = 7.0;
        EXPECT_FALSE(valuetexts::ParseShape(refused, names, position)) << refused;
        EXPECT_EQ(position, 7.0) << refused;
    }
}

TEST(ValueTexts, ClockAndVersion)
{
    EXPECT_EQ(valuetexts::Clock(3723).ToUTF8(), "1:02:03");
    EXPECT_EQ(valuetexts::Clock(59).ToUTF8(), "0:00:59");
    EXPECT_EQ(valuetexts::Clock(360000).ToUTF8(), "100:00:00");
    EXPECT_EQ(valuetexts::Clock(-1).ToUTF8(), "0:00:00");
    EXPECT_EQ(valuetexts::Version(0x01020AFF).ToUTF8(), "1.2.10.255");
}

TEST(ValueTexts, NumbersBeyondAnyRangeGiveSomeText)
{
    using Double = std::numeric_limits<double>;
    for (const double value : {1e300, -1e300, Double::infinity(), Double::quiet_NaN()})
    {
        EXPECT_FALSE(valuetexts::Degrees(value).IsEmpty());
        EXPECT_FALSE(valuetexts::Milliseconds(value).IsEmpty());
        EXPECT_FALSE(valuetexts::Pan(value).IsEmpty());
        EXPECT_FALSE(valuetexts::Frequency(value, "").IsEmpty());
        EXPECT_FALSE(valuetexts::Gain(value).IsEmpty());
    }
}

} // namespace
