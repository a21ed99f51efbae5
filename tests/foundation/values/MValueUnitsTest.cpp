#include "foundation/values/MValueUnits.h"

#include <cmath>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include "foundation/values/MValueFrequency.h"
#include "foundation/values/MValueSignalGeneratorShape.h"
#include "foundation/values/MValueStep.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

template <typename Value>
std::unique_ptr<MValueDouble> Make()
{
    return std::make_unique<Value>();
}

using Maker = std::unique_ptr<MValueDouble> (*)();

struct Fresh
{
    const char* what;
    Maker make;
    double min, max, value, inc, maxInc;
    const char* text;
};

// As a definition without attributes makes them.
constexpr Fresh AllUnits[] = {
    {"number", &Make<MValueDouble>, 0, 100, 0, 0.1, 1, "0.0000"},
    {"volume", &Make<MValueVolume>, 0, 1, 1, 0.0004f, 0.1f, "0.00 dB"},
    {"percents", &Make<MValuePercents>, 0, 1, 0, 0.001, 0.01, "0.00%"},
    {"pan", &Make<MValuePan>, -1, 1, 0, 0.01f, 0.1f, "center"},
    {"degrees", &Make<MValueDegreesFrom01>, 0, 1, 0, 0.001, 0.01, "0\u00B0 (0%)"},
    {"time", &Make<MValueTimeMS>, 0, 100, 0, 0.001f, 0.01f, "0 ms"},
    {"pitch", &Make<MValuePitch>, 0, 100, 0, 0.1f, 1, "0.00"},
    {"frequency", &Make<MValueFrequency>, 20, 20000, 1000, 1, 100, "1000 Hz"},
    {"linear", &Make<MValueFrequencyLinear>, 20, 20000, 1000, 19.98, 199.8, "1000 Hz"},
    {"log", &Make<MValueFrequencyLog>, 1.3010299956639812, 4.301029995663981, 2, 0.003, 0.03,
     "100 Hz"},
    {"shape", &Make<MValueSignalGeneratorShape>, 0, 15, 0, 0.015, 0.15, "0"},
    {"step", &Make<MValueStepDouble>, 0, 100, 0, 0.01, 0.1, "0.0000"},
    {"step percents", &Make<MValueStepPercents>, 0, 1, 0, 0.01, 0.1, "0.00%"},
};

TEST(MValueUnits, BeginWithTheRangeOfTheirUnit)
{
    for (const Fresh& row : AllUnits)
    {
        const auto value = row.make();
        EXPECT_DOUBLE_EQ(value->GetMin(), row.min) << row.what;
        EXPECT_DOUBLE_EQ(value->GetMax(), row.max) << row.what;
        EXPECT_EQ(value->Get(), row.value) << row.what;
        EXPECT_EQ(value->GetDefault(), row.value) << row.what;
        EXPECT_DOUBLE_EQ(value->GetInc(), row.inc) << row.what;
        EXPECT_DOUBLE_EQ(value->GetMaxInc(), row.maxInc) << row.what;
        EXPECT_EQ(value->GetText().ToUTF8(), row.text) << row.what;
    }
}

TEST(MValueUnits, PlacesAndValuesAreInverseAndTextsForetold)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (const Fresh& row : AllUnits)
    {
        const auto value = row.make();
        for (int round = 0; round < 200; ++round)
        {
            const double position = uniform(random);
            const MString foretold = value->GetContentFrom01(position).text;
            value->Set01(position);
            // Steps of a hundredth of the range keep its place by half of that.
            EXPECT_NEAR(value->Get01(), position, row.what[0] == 's' ? 0.0051 : 1e-12) << row.what;
            EXPECT_EQ(value->GetText().ToUTF8(), foretold.ToUTF8()) << row.what;
        }
        EXPECT_FALSE(value->Set01(std::nan(""))) << row.what;
    }
}

TEST(MValueUnits, ReadTheUnitThatTheyShow)
{
    struct Case
    {
        const char* what;
        Maker make;
        const char* typed;
        bool isChanged;
        double expected;
    };
    const Case Cases[] = {
        {"decibels", &Make<MValueVolume>, "-20 dB", true, 0.1},
        {"too loud", &Make<MValueVolume>, "6", false, 1.0},
        {"silence", &Make<MValueVolume>, "silence", false, 1.0},
        {"percents", &Make<MValuePercents>, "50.0%", true, 0.5},
        {"no percents", &Make<MValuePercents>, "half", false, 0.0},
        {"pan", &Make<MValuePan>, "50", true, 0.5},
        {"pan to the left", &Make<MValuePan>, "-25", true, -0.25},
        {"the side is not read", &Make<MValuePan>, "25% left", true, 0.25},
        {"degrees", &Make<MValueDegreesFrom01>, "90\u00B0 (25.0%)", true, 0.25},
        {"milliseconds", &Make<MValueTimeMS>, "12.5 ms", true, 0.0125},
        {"semitones", &Make<MValuePitch>, "+1.5", true, 1.5},
        {"hertz", &Make<MValueFrequency>, "440 Hz", true, 440.0},
        {"k is no number", &Make<MValueFrequency>, "12.3 kHz", true, 20.0},
        {"linear hertz", &Make<MValueFrequencyLinear>, "440 Hz", true, 440.0},
        {"logarithm", &Make<MValueFrequencyLog>, "1000", true, 3.0},
        {"no logarithm of 0", &Make<MValueFrequencyLog>, "0", false, 2.0},
        {"nor below", &Make<MValueFrequencyLog>, "-5", false, 2.0},
        {"shape", &Make<MValueSignalGeneratorShape>, "5.25", true, 5.25},
        {"snapped", &Make<MValueStepDouble>, "1.2345", true, 1.23},
        {"snapped percents", &Make<MValueStepPercents>, "12.6", true, 0.13},
    };
    for (const Case& row : Cases)
    {
        const auto value = row.make();
        EXPECT_EQ(value->SetText(MString::FromUTF8(row.typed)), row.isChanged) << row.what;
        EXPECT_DOUBLE_EQ(value->Get(), row.expected) << row.what;
    }
}

TEST(MValueFrequency, OctavesHaveTheSameRoom)
{
    MValueFrequency value(440.0, 100.0, 10000.0);
    EXPECT_TRUE(value.Set01(0.5));
    EXPECT_NEAR(value.Get(), 1000.0, 1e-9);
    EXPECT_EQ(value.GetContentFrom01(0.25).text.ToUTF8(), "316 Hz");
    value.SetFromString("10");
    EXPECT_NEAR(value.Get01(), -0.5, 1e-12) << "out of range as it is";
    EXPECT_EQ(MValueFrequency(50.0, 50.0, 50.0).Get01(), 1.0);

    value.Set01(1.0);
    EXPECT_TRUE(value.Set01(2.0)) << "another frequency, before it is limited to the present one";
    EXPECT_EQ(value.Get(), 10000.0);

    MXMLItem item("value");
    item.SetAttribute("min", MString("1"));
    value.InitFromXML(item);
    value.Set01(0.5);
    EXPECT_NEAR(value.Get(), 100.0, 1e-9);
    item.SetAttribute("min", MString("0"));
    value.InitFromXML(item);
    EXPECT_FALSE(value.Set01(0.5)) << "no logarithm of 0";
    EXPECT_NEAR(value.Get(), 100.0, 1e-9);
    EXPECT_EQ(value.Get01(), 0.0);
}

TEST(MValueFrequency, TheLinearOneHasTheSameRoomForEachHertz)
{
    MValueFrequencyLinear value(0.0, 0.0, 20000.0);
    value.Set01(0.25);
    EXPECT_DOUBLE_EQ(value.Get(), 5000.0);
    EXPECT_EQ(value.GetContentFrom01(0.75).text.ToUTF8(), "15.0 kHz");
}

TEST(MValueStepDouble, SnapsAndThenStaysInItsRange)
{
    struct Case
    {
        double set, expected;
    };
    constexpr Case Cases[] = {{3.7, 4.0}, {3.0, 4.0}, {2.9, 2.0}, {-3.0, -2.0}, {9.5, 9.0}};
    MValueStepDouble value(1.0, 2.0, -5.0, 9.0);
    EXPECT_EQ(value.Get(), 2.0);
    EXPECT_EQ(value.GetInc(), 2.0);
    EXPECT_EQ(value.GetMaxInc(), 20.0);
    for (const Case& row : Cases)
    {
        value.Set(row.set);
        EXPECT_EQ(value.Get(), row.expected) << row.set;
    }
    value.Set(4.0);
    EXPECT_TRUE(value.Step(-1));
    EXPECT_EQ(value.Get(), 2.0);

    MXMLItem item("value");
    item.SetAttribute("step", MString("0.5"));
    value.InitFromXML(item);
    value.Set(3.3);
    EXPECT_EQ(value.Get(), 3.5);
    for (const char* const none : {"0", "1e-320"})
    {
        item.SetAttribute("step", MString(none));
        value.InitFromXML(item);
        value.Set(3.3);
        EXPECT_EQ(value.Get(), 3.3) << none;
    }
}

TEST(MValueSignalGeneratorShape, ShowsTheInstalledNames)
{
    MValueSignalGeneratorShape value;
    value.Set(5.25);
    EXPECT_EQ(value.GetText().ToUTF8(), "75% 5, 25% 6") << "numbers before there are names";
    MValueSignalGeneratorShape::InstallNames(
        [](int index) { return MString::FromCharacter(static_cast<char16_t>(u'A' + index)); });
    EXPECT_EQ(value.GetText().ToUTF8(), "75% F, 25% G");
    EXPECT_EQ(value.GetContentFrom01(0.5).text.ToUTF8(), "50% H, 50% I");
    EXPECT_TRUE(value.SetText("50% O, 50% P"));
    EXPECT_EQ(value.Get(), 14.5);
    EXPECT_FALSE(value.SetText("Q"));
    MValueSignalGeneratorShape::InstallNames(nullptr);
    EXPECT_EQ(value.GetContentFrom01(1.0).text.ToUTF8(), "15");
}

} // namespace
