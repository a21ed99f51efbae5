#include "effect/StockValueTexts.h"

#include <cmath>

#include <gtest/gtest.h>

namespace
{

TEST(StockValueTexts, GainsReadWhatTheyShow)
{
    struct Law
    {
        MValueTextFunction function;
        double power;
    };
    constexpr Law Laws[] = {{&valuetexts::LinearGain, 1.0},
                            {&valuetexts::SquaredGain, 2.0},
                            {&valuetexts::FourthPowerGain, 4.0}};
    for (const Law& law : Laws)
    {
        MPluginParameterRecord record;
        record.SetFloat("Gain", 0.0, 1.0, 1.0);
        record.valueText = law.function;
        record.ParseValueText("-6 dB");
        EXPECT_NEAR(std::pow(record.range.asFloat.value, law.power), std::pow(10.0, -0.3), 1e-12);
        EXPECT_EQ(record.GetValueText().ToUTF8(), "-6.00 dB");
        record.ParseValueText("loud");
        EXPECT_EQ(record.GetValueText().ToUTF8(), "-6.00 dB") << "unreadable";
        record.ParseValueText("Silence");
        EXPECT_EQ(record.range.asFloat.value, 0.0);
        EXPECT_EQ(record.GetValueText().ToUTF8(), "silence");
    }
}

TEST(StockValueTexts, FrequenciesAreReadInHz)
{
    MPluginParameterRecord record;
    record.SetFloat("Frequency", std::log10(20.0), std::log10(20000.0), std::log10(20.0));
    record.valueText = &valuetexts::OptionalFrequency;
    EXPECT_EQ(record.GetValueText().ToUTF8(), "Disabled");
    record.ParseValueText("440 Hz");
    EXPECT_NEAR(record.range.asFloat.value, 2.6434526764861874, 1e-15);
    for (const char* const refused : {"0", "-5 Hz", "Disabled", "x"})
    {
        record.ParseValueText(refused);
        EXPECT_EQ(record.GetValueText().ToUTF8(), "440 Hz") << refused;
    }
}

} // namespace
