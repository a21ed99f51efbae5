#include "tools/render/ParameterSettings.h"

#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "effect/MPluginParameterRecord.h"
#include "foundation/threads/MException.h"
#include "tools/render/InProcessPlugin.h"

namespace
{

class ParameterSettingsTest : public testing::Test
{
protected:
    double Value(const char* name) const { return plugin.FindParameter(name)->Effective(); }
    double Value01(const char* name)
    {
        const int index = plugin.GetShell().FindParameterByName(name);
        return index >= 0 ? plugin.Get01(index) : std::nan("");
    }

    /// Sets @p name and returns the complaint; empty if there is none.
    std::string Set(const std::string& name, const std::string& text)
    {
        try
        {
            settings.SetText(name, text);
            return {};
        }
        catch (const MException& failure)
        {
            return failure.text.ToUTF8();
        }
    }

    InProcessPlugin plugin;
    ParameterSettings settings{plugin};
};

TEST_F(ParameterSettingsTest, ReadsWhatParametersShow)
{
    struct Case
    {
        const char* name;
        const char* text;
        double value;
    };
    const Case cases[] = {
        {"Wet", "-12 dB", std::pow(10.0, -12.0 / 40.0)}, // the gain is the value squared
        {"WET", "0 db", 1.0},
        {"wet", "-6", std::pow(10.0, -6.0 / 40.0)},
        {"Wet", "silence", 0.0},
        {"Octaves", "-3", -3.0},
        {"Semitones", "+12", 12.0},
        {"Semitones", "3 semitones", 3.0},
        {"Semitones", "2.0", 2.0},
        {"Cents", "12.5 cents", 12.5},
        {"Cents", "-100", -100.0},
        {"Pitch", "7.25 semitones", 7.25},
        {"Pitch", "1 semitone", 1.0},
        {"Pitch", " -24 ", -24.0},
        {"Width", "1e-1", 0.1},
        {"Frequency", "440 Hz", std::log10(440.0)},
        {"Frequency", "440.5hz", std::log10(440.5)},
        {"Frequency", "12500", std::log10(12500.0)},
        {"Frequency", "20000 Hz", std::log10(20000.0)},
        {"Frequency", "disabled", std::log10(20.0)},
    };
    for (const Case& row : cases)
    {
        EXPECT_EQ(Set(row.name, row.text), "") << row.name << '=' << row.text;
        EXPECT_NEAR(Value(row.name), row.value, 1e-12) << row.name << '=' << row.text;
    }
}

TEST_F(ParameterSettingsTest, TimesTakeFractionsThatTheyDoNotShow)
{
    EXPECT_EQ(Set("Follower attack (Modulator 1)", "12.5 ms"), "");
    EXPECT_NEAR(Value01("Follower attack (Modulator 1)"), 0.0125, 1e-12);
}

TEST_F(ParameterSettingsTest, TakesEveryWholeNumber)
{
    for (const auto& [name, limit] : {std::pair("Octaves", 3), std::pair("Semitones", 12)})
        for (int value = -limit; value <= limit; ++value)
        {
            EXPECT_EQ(Set(name, std::to_string(value)), "");
            EXPECT_EQ(Value(name), value) << name;
        }
}

TEST_F(ParameterSettingsTest, ReadsShapesAndTheirShares)
{
    struct Case
    {
        const char* name;
        const char* text;
        double value01;
    };
    const Case cases[] = {
        {"Shape", "Exponencial", 0.0},
        {"shape", "saw", 12.0 / 15.0},
        {"Shape", "Saw", 12.0 / 15.0}, // again
        {"Shape", "Mess", 1.0},
        {"Shape", "30% Sine, 70% Harmonics", 5.7 / 15.0},
        {"Shape", "5.5", 5.5 / 15.0},
        {"Shape", "0", 0.0},
        {"Shape custom morph", "30%", 0.3},
        {"Shape step sequencer", "0.5", 0.005},
        {"Shape smoothness", "100.0%", 1.0},
    };
    for (const Case& row : cases)
    {
        EXPECT_EQ(Set(row.name, row.text), "") << row.name << '=' << row.text;
        EXPECT_NEAR(Value01(row.name), row.value01, 1e-12) << row.name << '=' << row.text;
    }
}

TEST_F(ParameterSettingsTest, RefusesWhatTheEffectWouldMisunderstand)
{
    struct Case
    {
        const char* name;
        const char* text;
        const char* complaint; ///< part of it
    };
    const Case cases[] = {
        {"Loudness", "1", "there are Dry, Wet, Octaves"},
        {"Wet", "loud", "no value; one looks like \""},
        {"Wet", "-inf dB", "no value"},
        {"Wet", "0.1 dB", "range of silence to 0.00 dB"},
        {"Wet", "-6 Hz", "unit \"Hz\""},
        {"Octaves", "4", "range of -3 to +3"},
        {"Octaves", "99999999999", "range of -3 to +3"},
        {"Octaves", "1e300", "range of -3 to +3"},
        {"Semitones", "1.5", "whole numbers"},
        {"Semitones", "two", "no value"},
        {"Semitones", "2 octaves", "unit \"octaves\""},
        {"Cents", "100.1", "range of -100.0 to +100.0"},
        {"Cents", "1,5", "unit \",5\""},
        {"Pitch", "25", "range of -24.00 semitones to +24.00 semitones"},
        {"Frequency", "25 kHz", "give the number in Hz"},
        {"Frequency", "15000 kHz", "give the number in Hz"},
        {"Frequency", "1.5k", "give the number in Hz"},
        {"Frequency", "19.9", "range of Disabled to 20.0 kHz"},
        {"Frequency", "20001 Hz", "range of Disabled to 20.0 kHz"},
        {"Frequency", "-440", "no value"},
        {"Frequency", "0", "no value"},
        {"Frequency", "nan", "no value"},
        {"Shape", "Square",
         "there are Exponencial, Triangle, Sine power 8, Sine power 4, Sine "
         "square, Sine, Harmonics, More harmonics, Disharmonics, Sine square "
         "root, Sine 4-root, Rectangle, Saw, Full saw, Noise, Mess"},
        {"Shape", "50% Sine, 50% Saw", "no value"},
        {"Shape", "5 Hz", "no value"},
        {"Shape", "16", "range of Exponencial to Mess"},
        {"Shape", "-1", "range of Exponencial to Mess"},
        {"Shape smoothness", "101%", "range of 0.00% to 100.0%"},
        {"Shape smoothness", "5 dB", "unit \"dB\""},
        {"Shape smoothness", "much", "no value"},
    };
    for (const Case& row : cases)
    {
        const double before = Value01(row.name);
        const std::string complaint = Set(row.name, row.text);
        EXPECT_NE(complaint.find(row.complaint), std::string::npos)
            << row.name << '=' << row.text << ": " << complaint;
        if (!std::isnan(before))
        {
            EXPECT_EQ(Value01(row.name), before) << row.name << '=' << row.text;
        }
    }
}

TEST_F(ParameterSettingsTest, TakesNormalisedValuesWithinTheirRange)
{
    settings.Set01("pitch", 0.75);
    EXPECT_EQ(Value("Pitch"), 12.0);
    settings.Set01("Octaves", 1.0);
    EXPECT_EQ(Value("Octaves"), 3.0);
    for (const double value01 : {-0.001, 1.001, std::nan("")})
    {
        EXPECT_THROW(settings.Set01("Pitch", value01), MException) << value01;
    }
    EXPECT_THROW(settings.Set01("Loudness", 0.5), MException);
    EXPECT_EQ(Value("Pitch"), 12.0);
}

TEST_F(ParameterSettingsTest, ListsThePresentValues)
{
    settings.SetText("Frequency", "440 Hz");
    settings.SetShape("30% Sine, 70% Harmonics");
    std::ostringstream stream;
    settings.List(stream);
    const std::string list = stream.str();
    const auto name = [](std::string text) { return text.append(43 - text.size(), ' '); };
    for (const std::string& row : {
             name("Wet") + "-6.02 dB                 0.8409      silence to 0.00 dB\n",
             name("Frequency") + "440 Hz                   0.4475      Disabled to 20.0 kHz\n",
             name("Shape") + "30% Sine, 70% Harmonics  0.3800      Exponencial to Mess\n",
         })
        EXPECT_NE(list.find(row), std::string::npos) << row << list;
}

} // namespace
