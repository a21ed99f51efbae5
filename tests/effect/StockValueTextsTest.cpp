#include "effect/StockValueTexts.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace
{

/// What @p record shows once @p typed was read into it.
std::string Shown(MPluginParameterRecord& record, const char* typed = "")
{
    MString text;
    record.valueText(text, record, typed, {});
    if (*typed != '\0')
        record.valueText(text, record, {}, {});
    return text.ToUTF8();
}

TEST(StockValueTexts, GainsReadDecibels)
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
        record.SetFloat("Gain", 0.0, 1.0, 0.0);
        record.valueText = law.function;
        EXPECT_EQ(Shown(record), "silence");
        EXPECT_EQ(Shown(record, "-6 dB"), "-6.00 dB");
        EXPECT_NEAR(std::pow(record.range.asFloat.value, law.power), std::pow(10.0, -0.3), 1e-12);
        for (const char* const unreadable : {"loud", "silence"})
            EXPECT_EQ(Shown(record, unreadable), "-6.00 dB") << unreadable;
    }
}

TEST(StockValueTexts, FrequenciesAreReadInHz)
{
    MPluginParameterRecord record;
    record.SetFloat("Frequency", std::log10(20.0), std::log10(20000.0), std::log10(20.0));
    record.valueText = &valuetexts::OptionalFrequency;
    EXPECT_EQ(Shown(record), "Disabled");
    EXPECT_EQ(Shown(record, "440 Hz"), "440 Hz");
    EXPECT_NEAR(record.range.asFloat.value, 2.6434526764861874, 1e-15);
    for (const char* const refused : {"0", "-5 Hz", "Disabled", "x"})
        EXPECT_EQ(Shown(record, refused), "440 Hz") << refused;
}

} // namespace
