#include "foundation/values/ValueTexts.h"

#include <gtest/gtest.h>

namespace
{

TEST(ValueTexts, GainsInDecibels)
{
    EXPECT_EQ(valuetexts::Gain(1.0).ToUTF8(), "0.00 dB");
    EXPECT_EQ(valuetexts::Gain(0.5).ToUTF8(), "-6.02 dB");
    EXPECT_EQ(valuetexts::Gain(0.1).ToUTF8(), "-20.0 dB");
    EXPECT_EQ(valuetexts::Gain(4.0).ToUTF8(), "12.0 dB");
    EXPECT_EQ(valuetexts::Gain(0.0).ToUTF8(), "silence");
    EXPECT_EQ(valuetexts::Gain(1e-51).ToUTF8(), "silence");
}

TEST(ValueTexts, FrequenciesByMagnitude)
{
    struct Case
    {
        double hz;
        const char* expected;
    };
    constexpr Case Cases[] = {
        {0.0, "0 Hz"},         {9e-6, "0 Hz"},      {0.5, "0.5000 Hz"},   {1.0, "1.00 Hz"},
        {9.994, "9.99 Hz"},    {10.0, "10.0 Hz"},   {99.95, "100.0 Hz"},  {100.0, "100 Hz"},
        {440.5, "441 Hz"},     {9999.4, "9999 Hz"}, {9999.9, "10000 Hz"}, {10000.0, "10.0 kHz"},
        {12345.0, "12.3 kHz"},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(valuetexts::Frequency(row.hz, " ").ToUTF8(), row.expected);
    EXPECT_EQ(valuetexts::Frequency(440.0, "").ToUTF8(), "440Hz");
}

} // namespace
