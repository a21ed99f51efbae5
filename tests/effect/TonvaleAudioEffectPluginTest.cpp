#include "effect/TonvaleAudioEffectPlugin.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "OscillatorUnderTest.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

using Effect = TonvaleAudioEffectPlugin;

constexpr double C5 = 523.2511306011972; ///< the note of a new effect, Hz

double Log(double hz)
{
    return std::log10(hz);
}

double Semitones(double count)
{
    return std::pow(2.0, count / 12.0);
}

TEST(TonvaleAudioEffectPlugin, PublishesItsParametersAsTold)
{
    struct Row
    {
        const char* name;
        double min, max, defaultValue;
        unsigned flags;
    };
    constexpr Row Rows[] = {
        {"Dry", 0.0, 1.0, 0.0, 0x0501},
        {"Wet", 0.0, 1.0, 0.7071067811865476, 0x0501},
        {"Octaves", -3, 3, 0, 0x0521},
        {"Semitones", -12, 12, 0, 0x0521},
        {"Cents", -100.0, 100.0, 0.0, 0x0529},
        {"Pitch", -24.0, 24.0, 0.0, 0x0529},
        {"Width", -12.0, 12.0, 0.0, 0x0529},
        {"Frequency", 1.3010299956639813, 4.301029995663981, 1.3010299956639813, 0x0529},
    };
    Effect effect;
    const MPluginInfo& info = effect.GetInfo();
    ASSERT_EQ(info.CountParameters(), 8);
    EXPECT_EQ(info.flags, (1u << 1 | 1u << 5 | 1u << 2));
    for (int i = 0; i < 8; ++i)
    {
        const Row& row = Rows[i];
        MPluginParameterRecord& record = *info.FindParameter(i);
        EXPECT_EQ(record.name.ToUTF8(), row.name);
        EXPECT_EQ(record.key.ToUTF8(), row.name);
        EXPECT_EQ(record.flags, row.flags) << row.name;
        EXPECT_EQ(record.help.ToUTF8().find(std::string("<name>") + row.name + "</name> "), 0u);
        EXPECT_EQ(record.tag, i == 0 ? 51 : 0);
        if (record.type == MParameterType::Int)
        {
            EXPECT_EQ(record.range.asInt.min, row.min) << row.name;
            EXPECT_EQ(record.range.asInt.max, row.max) << row.name;
            EXPECT_EQ(record.range.asInt.value, row.defaultValue) << row.name;
        }
        else
        {
            EXPECT_EQ(record.range.asFloat.min, row.min) << row.name;
            EXPECT_EQ(record.range.asFloat.max, row.max) << row.name;
            EXPECT_EQ(record.range.asFloat.defaultValue, row.defaultValue) << row.name;
            EXPECT_EQ(record.range.asFloat.value, row.defaultValue) << row.name;
        }
    }
    ASSERT_EQ(info.specialCount, 1);
    EXPECT_EQ(info.specials[0].name.ToUTF8(), "Shape");
    EXPECT_EQ(*static_cast<void**>(info.specials[0].editorSlot), nullptr);
}

TEST(TonvaleAudioEffectPlugin, PlaysThePitchOfNoteAndParameters)
{
    struct Case
    {
        const char* what;
        int note;
        std::vector<std::pair<int, double>> settings;
        double wheel;
        double expected;
    };
    const std::vector<Case> cases = {
        {"A4", 69, {}, 0.0, 440.0},
        {"middle C", 60, {}, 0.0, C5 / 2.0},
        {"the default note", 72, {}, 0.0, C5},
        {"octave up", 69, {{Effect::Octaves, 1}}, 0.0, 880.0},
        {"three octaves down", 69, {{Effect::Octaves, -3}}, 0.0, 55.0},
        {"semitones", 69, {{Effect::Semitones, -12}}, 0.0, 220.0},
        {"cents against pitch", 69, {{Effect::Cents, 100.0}, {Effect::Pitch, -1.0}}, 0.0, 440.0},
        {"a fifth by pitch", 69, {{Effect::Pitch, 7.0}}, 0.0, 440.0 * Semitones(7.0)},
        {"wheel up", 69, {}, 1.0, 440.0 * Semitones(2.0)},
        {"wheel down a semitone", 69, {}, -0.5, 440.0 * Semitones(-1.0)},
        {"frequency instead of the note", 30, {{Effect::Frequency, Log(1000.0)}}, 0.0, 1000.0},
        {"offsets on top of the frequency",
         30,
         {{Effect::Frequency, Log(1000.0)}, {Effect::Octaves, -1}},
         0.0,
         500.0},
        {"frequency within 1e-6 of off",
         69,
         {{Effect::Frequency, 1.3010299956639813 + 9e-7}},
         0.0,
         440.0},
        {"frequency just on",
         69,
         {{Effect::Frequency, 1.3010299956639813 + 2e-6}},
         0.0,
         20.0 * std::pow(10.0, 2e-6)},
    };
    for (const Case& row : cases)
        for (const int rate : {44100, 96000})
        {
            OscillatorUnderTest oscillator(1, rate);
            oscillator.MIDI().ProcessNote(0, 0.0, 7, row.note, 0.0, true);
            oscillator.MIDI().ProcessPitchWheel(0, 0.0, 3, row.wheel);
            for (const auto& [index, value] : row.settings)
                oscillator.Set(index, value);
            EXPECT_NEAR(oscillator.MeasureFrequency(), row.expected, 1e-5) << row.what;
        }
}

TEST(TonvaleAudioEffectPlugin, WidthSpreadsTheChannelsInAGeometricRow)
{
    struct Case
    {
        int channels;
        double width;
        double lowest; ///< semitones of channel 0 from the nominal pitch
        double step;   ///< semitones from channel to channel
    };
    constexpr Case Cases[] = {
        {1, 12.0, 0.0, 0.0},  {2, 12.0, -6.0, 12.0}, {2, -3.0, 1.5, -3.0},
        {3, 12.0, -4.0, 6.0}, {8, 7.0, -3.5, 1.0},
    };
    for (const Case& row : Cases)
        for (int channel = 0; channel < row.channels; ++channel)
        {
            OscillatorUnderTest oscillator(row.channels);
            oscillator.Set(Effect::Width, row.width);
            EXPECT_NEAR(oscillator.MeasureFrequency(channel),
                        C5 * Semitones(row.lowest + channel * row.step), 1e-5)
                << row.channels << " channels, width " << row.width << ", channel " << channel;
        }
}

TEST(TonvaleAudioEffectPlugin, WidthBackAtZeroMakesTheSoundMonoAgain)
{
    OscillatorUnderTest oscillator(3);
    oscillator.Set(Effect::Width, 5.0);
    auto blocks = oscillator.Play(1000);
    EXPECT_NE(blocks[0], blocks[1]);
    oscillator.Set(Effect::Width, 0.0);
    for (int i = 0; i < 3; ++i)
    {
        blocks = oscillator.Play(333);
        EXPECT_EQ(blocks[0], blocks[1]);
        EXPECT_EQ(blocks[0], blocks[2]);
    }
}

TEST(TonvaleAudioEffectPlugin, AModulatedParameterSoundsByItsAlternateValue)
{
    OscillatorUnderTest oscillator;
    oscillator.MIDI().ProcessNote(0, 0.0, 0, 69, 1.0, true);
    MPluginParameterRecord& pitch = oscillator.Record(Effect::Pitch);
    pitch.range.asFloat.value = 1.0;
    pitch.SetModulated(true);
    pitch.range.asFloat.alternate = 12.0;
    oscillator.Call(MPluginCommand::ParameterChanged, Effect::Pitch);
    EXPECT_NEAR(oscillator.MeasureFrequency(), 880.0, 1e-5);
    pitch.SetModulated(false);
    oscillator.Call(MPluginCommand::ParameterChanged, Effect::Pitch);
    EXPECT_NEAR(oscillator.MeasureFrequency(), 440.0 * Semitones(1.0), 1e-5);
}

TEST(TonvaleAudioEffectPlugin, ThePhaseRunsOnWhateverTheBlocks)
{
    OscillatorUnderTest whole;
    const std::vector<float> expected = whole.Play(5000)[0];
    OscillatorUnderTest pieces;
    std::vector<float> actual;
    for (int size = 1; actual.size() < expected.size(); size = size * 3 % 257)
    {
        const std::vector<float> block =
            pieces.Play(std::min(size, static_cast<int>(expected.size() - actual.size())))[0];
        actual.insert(actual.end(), block.begin(), block.end());
    }
    for (std::size_t i = 0; i < expected.size(); ++i)
        ASSERT_NEAR(actual[i], expected[i], 1e-6) << i;
    EXPECT_NEAR(expected[1], std::sin(2.0 * std::numbers::pi * C5 / 48000.0), 1e-6)
        << "from phase 0 on";
}

TEST(TonvaleAudioEffectPlugin, AGainChangeIsALineOverOneBlock)
{
    OscillatorUnderTest oscillator(2);
    oscillator.Generator().StepValues.fill(1.0f);
    oscillator.Generator().StepDepth = 1.0;
    oscillator.Generator().Rebuild(); // the signal is 1, so the output is the gain of "Wet"

    const auto steady = oscillator.Play(9);
    for (const float sample : steady[0])
        EXPECT_EQ(sample, 1.0f) << "no ramp after InitProcessing";
    oscillator.Set(Effect::Wet, 0.5); // a gain of 1/4
    const auto ramp = oscillator.Play(12);
    for (std::size_t i = 0; i < 12; ++i)
        EXPECT_EQ(ramp[1][i], 1.0f - 0.0625f * static_cast<float>(i)) << i;
    const auto after = oscillator.Play(5);
    for (const float sample : after[0])
        EXPECT_EQ(sample, 0.25f);
}

TEST(TonvaleAudioEffectPlugin, DryAddsTheInputByItsOwnLine)
{
    OscillatorUnderTest oscillator(2);
    oscillator.Set(Effect::Wet, 0.0);
    oscillator.Init(2, 48000);
    const OscillatorUnderTest::Blocks inputs = {{8.0f, 8.0f, 8.0f, 8.0f, 8.0f, 8.0f},
                                                {-8.0f, -8.0f, -8.0f, -8.0f, -8.0f, -8.0f}};
    EXPECT_EQ(oscillator.Play(6, inputs)[0], std::vector<float>(6, 0.0f)) << "silent by default";
    oscillator.Set(Effect::Dry, std::sqrt(0.75));
    const auto ramp = oscillator.Play(6, inputs);
    for (std::size_t i = 0; i < 6; ++i)
    {
        EXPECT_FLOAT_EQ(ramp[0][i], static_cast<float>(i)) << i;
        EXPECT_EQ(ramp[1][i], -ramp[0][i]) << i;
    }
    oscillator.Set(Effect::Dry, 1.0);
    oscillator.Play(6, inputs);
    EXPECT_EQ(oscillator.Play(6, inputs), inputs);
}

TEST(TonvaleAudioEffectPlugin, ASilentDryKeepsBrokenInputsOut)
{
    OscillatorUnderTest oscillator;
    const std::vector<float> broken = {std::numeric_limits<float>::quiet_NaN(),
                                       std::numeric_limits<float>::infinity(), 1e-42f};
    const auto output = oscillator.Play(3, {broken});
    for (const float sample : output[0])
        EXPECT_TRUE(std::isfinite(sample));
}

TEST(TonvaleAudioEffectPlugin, HostileBlocksAreNeutral)
{
    Effect effect;
    float sample = 5.0f;
    float* outputs[] = {&sample, nullptr};
    effect.Process(nullptr, nullptr, outputs, 1);
    EXPECT_EQ(sample, 5.0f) << "before InitProcessing there are no channels";

    effect.InitProcessing(2, 48000);
    effect.Update();
    effect.ResetParameterRamps();
    effect.Process(nullptr, nullptr, nullptr, 16);
    effect.Process(nullptr, nullptr, outputs, 0);
    effect.Process(nullptr, nullptr, outputs, -3);
    EXPECT_EQ(sample, 5.0f);
    effect.Process(nullptr, nullptr, outputs, 1);
    EXPECT_EQ(sample, 0.0f) << "the first sample of a sine";

    EXPECT_EQ(effect.InitProcessing(9, 48000), 0);
    EXPECT_EQ(effect.InitProcessing(-1, -5), 0);
    effect.Update();
    effect.Process(nullptr, nullptr, outputs, 1);
}

TEST(TonvaleAudioEffectPlugin, ANoteOnEndsHereAndANoteOffGoesOn)
{
    class Counter : public MMIDIProcessorBase
    {
    public:
        void ProcessNote(int, double, int, int, double, bool on) override { ++(on ? ons : offs); }
        void ProcessPitchWheel(int, double, int, double) override { ++wheels; }
        int ons = 0;
        int offs = 0;
        int wheels = 0;
    };
    Counter counter;
    OscillatorUnderTest oscillator;
    oscillator.MIDI().AddListener(counter, MMIDIProcessorBase::AllChannels);
    oscillator.MIDI().ProcessNote(0, 0.0, 0, 57, 1.0, true);
    oscillator.MIDI().ProcessNote(0, 0.0, 0, 57, 0.0, false);
    oscillator.MIDI().ProcessPitchWheel(0, 0.0, 0, 0.0);
    EXPECT_EQ(counter.ons, 0);
    EXPECT_EQ(counter.offs, 1);
    EXPECT_EQ(counter.wheels, 1);
    EXPECT_NEAR(oscillator.MeasureFrequency(), 220.0, 1e-5) << "the note sounds on";
}

TEST(TonvaleAudioEffectPlugin, StoresAndLoadsItsState)
{
    MXMLItem item("settings");
    OscillatorUnderTest first;
    first.MIDI().ProcessNote(0, 0.0, 0, 57, 1.0, true);
    first.Set(Effect::Cents, 50.0);
    first.Set(Effect::Octaves, 1);
    first.PlayShape(12.25);
    EXPECT_EQ(first.Call(MPluginCommand::Store, reinterpret_cast<std::intptr_t>(&item)), 1);
    EXPECT_EQ(item.GetAttribute("NoteIndex", "").ToUTF8(), "57");
    EXPECT_EQ(item.GetAttribute("parameterCents", "").ToUTF8(), "50.000000000000");

    OscillatorUnderTest second;
    EXPECT_EQ(second.Call(MPluginCommand::Load, reinterpret_cast<std::intptr_t>(&item)), 1);
    EXPECT_EQ(second.Play(100), first.Play(100));
    EXPECT_NEAR(second.MeasureFrequency(), 440.0 * Semitones(0.5), 1e-5);
}

TEST(TonvaleAudioEffectPlugin, LoadsTolerantly)
{
    struct Case
    {
        const char* key;
        const char* value;
        double expected; ///< Hz
    };
    const Case Cases[] = {
        {"NoteIndex", "200", 440.0 * Semitones(131.0)},
        {"NoteIndex", "-12", 440.0 * Semitones(-81.0)},
        {"NoteIndex", "x", 440.0 * Semitones(-69.0)},
        {"parameterOctaves", "99", C5 * 8.0},
        {"parameterCents", "nonsense", C5},
        {"parameterPitch", "-1e9", C5 / 4.0},
        {"parameterFrequency", "inf", C5}, // reads as 0, which is limited to off
        {"unknown", "7", C5},
    };
    for (const Case& row : Cases)
    {
        MXMLItem item("settings");
        item.SetAttribute(row.key, MString(row.value));
        OscillatorUnderTest oscillator(1, static_cast<int>(row.expected * 64.0));
        oscillator.MIDI().ProcessNote(0, 0.0, 0, 40, 1.0, true); // a missing key brings 72 back
        oscillator.Set(Effect::Semitones, 3);
        oscillator.Call(MPluginCommand::Load, reinterpret_cast<std::intptr_t>(&item));
        oscillator.Set(Effect::Wet, 1.0);
        oscillator.Play(1); // ends the ramp
        EXPECT_NEAR(oscillator.MeasureFrequency() / row.expected, 1.0, 1e-6)
            << row.key << row.value;
    }
}

TEST(TonvaleAudioEffectPlugin, EndlessPitchesStandStillInsteadOfBreaking)
{
    for (const char* const note : {"2147483647", "-2147483648", "99999999999999999999", "5000"})
    {
        MXMLItem item("settings");
        item.SetAttribute("NoteIndex", MString(note));
        OscillatorUnderTest oscillator(2);
        oscillator.Call(MPluginCommand::Load, reinterpret_cast<std::intptr_t>(&item));
        for (int i = 0; i < 3; ++i)
            for (const auto& block : oscillator.Play(700))
                for (const float sample : block)
                    ASSERT_LE(std::abs(sample), 1.0f) << note;
    }
}

} // namespace
