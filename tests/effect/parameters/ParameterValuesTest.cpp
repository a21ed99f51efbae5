#include "effect/parameters/ParameterValues.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "ParametersUnderTest.h"
#include "effect/TonvaleAudioEffectPlugin.h"

namespace
{

using Effect = TonvaleAudioEffectPlugin;

/// The parameters of the real effect.
struct Oscillator
{
    Oscillator() { list.Wire(effect, owner); }
    MAutomationAdapter& operator[](int index) { return *list.FindAdapter(index); }
    double Value(int index) { return effect.GetInfo().FindParameter(index)->Effective(); }

    Effect effect;
    FakeOwner owner;
    MParameterList list;
};

TEST(ParameterValues, OfTheOscillatorMapBothWaysAndShow)
{
    struct Case
    {
        int index;
        const char* name;
        double default01, startsAt;
        const char* firstText;
        double x, value; ///< x sets the value, which answers x
        const char* text;
    };
    constexpr double WetDefault = 0.7071067811865476;
    const double middle = (std::log10(20.0) + std::log10(20000.0)) / 2.0;
    const Case Cases[] = {
        {Effect::Dry, "Dry", 0.0, 0.0, "silence", 1.0, 1.0, "0.00 dB"},
        {Effect::Wet, "Wet", WetDefault, std::sqrt(WetDefault), "-6.02 dB", 0.5, 0.25, "-24.1 dB"},
        {Effect::Octaves, "Octaves", 0.5, 0.5, "0", 1.0, 3.0, "+3"},
        {Effect::Semitones, "Semitones", 0.5, 0.5, "0", 0.25, -6.0, "-6"},
        {Effect::Cents, "Cents", 0.5, 0.5, "0.0", 0.75, 50.0, "+50.0"},
        {Effect::Pitch, "Pitch", 0.5, 0.5, "0.00 semitones", 0.25, -12.0, "-12.00 semitones"},
        {Effect::Width, "Width", 0.5, 0.5, "0.00 semitones", 1.0, 12.0, "12.00 semitones"},
        {Effect::Frequency, "Frequency", 0.0, 0.0, "Disabled", 0.5, middle, "632 Hz"},
    };
    Oscillator oscillator;
    for (const Case& row : Cases)
    {
        MAutomationAdapter& parameter = oscillator[row.index];
        EXPECT_EQ(parameter.GetParameterName(0).ToUTF8(), row.name);
        EXPECT_EQ(parameter.GetParameterID(0).ToUTF8(), row.name);
        const bool isInt = row.index == Effect::Octaves || row.index == Effect::Semitones;
        EXPECT_EQ(parameter.GetParameterType(0),
                  isInt ? MAutomationType::Int : MAutomationType::Float);
        EXPECT_EQ(parameter.GetParameterValueName(0).ToUTF8(), row.firstText) << row.name;
        EXPECT_DOUBLE_EQ(parameter.GetParameterDefaultValue(0), row.default01) << row.name;
        EXPECT_DOUBLE_EQ(parameter.GetParameter(0), row.startsAt) << row.name;
        EXPECT_EQ(parameter.IsModulatable(0), row.index >= Effect::Cents) << row.name;
        EXPECT_FALSE(parameter.IsRandomisable(0)) << row.name;

        EXPECT_EQ(parameter.GetParameterValueNameFrom01(0, row.x).ToUTF8(), row.text);
        EXPECT_DOUBLE_EQ(parameter.GetParameter(0), row.startsAt) << row.name << " only asked";
        parameter.SetParameter(0, row.x, false);
        EXPECT_DOUBLE_EQ(oscillator.Value(row.index), row.value) << row.name;
        EXPECT_DOUBLE_EQ(parameter.GetParameter(0), row.x) << row.name;
        EXPECT_EQ(parameter.GetParameterValueName(0).ToUTF8(), row.text);
        EXPECT_NEAR(parameter.ParseParameterValueName(0, row.text), row.x, 1e-3) << row.name;

        for (const int outside : {-1, 1})
        {
            parameter.SetParameter(outside, 0.1, false);
            EXPECT_DOUBLE_EQ(parameter.GetParameter(0), row.x) << row.name;
            EXPECT_EQ(parameter.GetParameter(outside), 0.0) << row.name;
            EXPECT_TRUE(parameter.GetParameterValueName(outside).IsEmpty()) << row.name;
        }
        parameter.SetParameter(0, std::nan(""), false);
        EXPECT_DOUBLE_EQ(parameter.GetParameter(0), row.x) << row.name << " without a number";
    }
}

TEST(ParameterValues, TypedTextsGiveWhatTheFormulaGives)
{
    constexpr double Present = 0.3;
    struct Case
    {
        int index;
        const char* typed;
        double expected;
    };
    const Case Cases[] = {
        {Effect::Wet, "-6 dB", std::pow(10.0, -6.0 / 80.0)},
        {Effect::Wet, "+20 dB", std::pow(10.0, 20.0 / 80.0)},
        {Effect::Wet, "silence", Present},
        {Effect::Wet, "loud", Present},
        {Effect::Cents, "-12.5 cents", 0.4375},
        {Effect::Cents, "300", 2.0},
        {Effect::Pitch, "", Present},
        {Effect::Pitch, " \t", Present},
        {Effect::Pitch, "up", Present},
        {Effect::Frequency, "100000 Hz", (5.0 - std::log10(20.0)) / 3.0},
        {Effect::Frequency, "-5 Hz", Present},
        {Effect::Octaves, "+2.7", 5.0 / 6.0},
        {Effect::Semitones, "-20", -1.0 / 3.0},
    };
    Oscillator oscillator;
    for (const Case& row : Cases)
    {
        MAutomationAdapter& parameter = oscillator[row.index];
        parameter.SetParameter(0, Present, true);
        const double before = parameter.GetParameter(0);
        EXPECT_NEAR(parameter.ParseParameterValueName(0, row.typed), row.expected, 1e-7)
            << row.typed;
        EXPECT_EQ(parameter.GetParameter(0), before) << row.typed << " is only read";
    }
}

TEST(ParameterValues, WholeNumbersComeBackThroughEveryWayOut)
{
    Oscillator oscillator;
    int plainlyLost = 0;
    for (const int index : {int{Effect::Octaves}, int{Effect::Semitones}})
    {
        MAutomationAdapter& parameter = oscillator[index];
        MPluginParameterRecord& record = *oscillator.effect.GetInfo().FindParameter(index);
        auto& range = record.range.asInt;
        for (std::int32_t value = range.min; value <= range.max; ++value)
        {
            range.value = value;
            const double plain = parameter.GetParameter(0);
            const double restorable = parameter.GetRestorableParameter(0);
            const double typed = parameter.ParseParameterValueName(0, MString::FromInteger(value));
            EXPECT_NEAR(plain, restorable, 1.3e-7) << "a single step of 32 bits at most";
            for (const double x : {restorable, double{static_cast<float>(restorable)}, typed})
            {
                parameter.SetParameter(0, x, true);
                EXPECT_EQ(range.value, value) << x;
            }
            parameter.SetParameter(0, static_cast<float>(plain), true);
            plainlyLost += index == Effect::Semitones && range.value != value;
        }
    }
    EXPECT_EQ(plainlyLost, 9) << "in 32 bits, as values are cut, not rounded";
}

TEST(ParameterValues, WholeNumbersReachTheirTopOnlyAtOne)
{
    Oscillator oscillator;
    struct Case
    {
        double x;
        double expected;
    };
    constexpr Case Cases[] = {{0.0, -3},  {0.1, -2}, {0.5, 0}, {0.9, 2},
                              {0.999, 2}, {1.0, 3},  {1.5, 6}, {1e30, 6}};
    for (const Case& row : Cases)
    {
        oscillator[Effect::Octaves].SetParameter(0, row.x, true);
        EXPECT_EQ(oscillator.Value(Effect::Octaves), row.expected) << row.x;
    }
}

/// A record of its own, which no effect knows.
template <template <typename> typename Parameter>
struct Single
{
    explicit Single(const MPluginParameterRecord& published) : record(published) {}

    FakePlugin plugin;
    MPluginParameterRecord record;
    Parameter<ParameterBase> parameter{plugin, record, plugin.owner, 4};
};

MPluginParameterRecord Float(MParameterLaw law, double min, double max)
{
    MPluginParameterRecord record;
    record.SetFloat("Level", min, max, max);
    record.law = law;
    return record;
}

TEST(ParameterValues, FloatsBendByTheirLaw)
{
    struct Case
    {
        MParameterLaw law;
        double expected; ///< of 0.5, over 0 to 16
    };
    constexpr Case Cases[] = {{MParameterLaw::Linear, 8.0},
                              {MParameterLaw::Squared, 4.0},
                              {MParameterLaw::FourthPower, 1.0}};
    for (const Case& row : Cases)
    {
        Single<ParameterFloatT> single(Float(row.law, 0.0, 16.0));
        single.record.range.asFloat.defaultValue = 4.0;
        EXPECT_EQ(single.parameter.GetParameterDefaultValue(0), 0.25) << "never bent";
        single.parameter.SetParameter(0, 0.5, true);
        EXPECT_EQ(single.record.range.asFloat.value, row.expected);
        for (const double x : {0.0, 0.125, 0.7, 1.0})
        {
            single.parameter.SetParameter(0, x, true);
            EXPECT_NEAR(single.parameter.GetParameter(0), x, 1e-12);
        }
        single.record.range.asFloat.value = 16.0;
        EXPECT_NEAR(
            single.parameter.ParseParameterValueName(0, MString::FromDouble(row.expected, 1)), 0.5,
            1e-12);
        EXPECT_EQ(single.parameter.GetParameterValueName(0).ToUTF8(), "16.000000");
    }
}

TEST(ParameterValues, BlankTextsNeverReachATextFunction)
{
    MPluginParameterRecord record = Float(MParameterLaw::Linear, 0.0, 1.0);
    record.valueText = [](MString& /*result*/, MPluginParameterRecord& to, const MString& /*input*/,
                          const MString& /*format*/) { to.range.asFloat.value = 0.25; };
    Single<ParameterFloatT> single(record);
    for (const char* const blank : {"", "  ", "\t\n"})
        EXPECT_EQ(single.parameter.ParseParameterValueName(0, blank), 1.0);
    EXPECT_EQ(single.parameter.ParseParameterValueName(0, "x"), 0.25);
}

TEST(ParameterValues, EnumsFallIntoEqualPiecesAndReadAsEnds)
{
    static constexpr const char* Names[] = {"a", "b", "c", "d"};
    MPluginParameterRecord record;
    record.type = MParameterType::Enum;
    record.range.asEnum = {Names, 4, 1, 0, false};
    Single<ParameterEnumT> single(record);
    MAutomationAdapter& parameter = single.parameter;
    EXPECT_EQ(parameter.GetParameterType(0), MAutomationType::Enum);
    EXPECT_DOUBLE_EQ(parameter.GetParameterDefaultValue(0), 1.0 / 3.0);
    struct Case
    {
        double x;
        int expected;
    };
    constexpr Case Cases[] = {{-1.0, 0}, {0.0, 0},  {0.24, 0}, {0.25, 1},
                              {0.5, 2},  {0.76, 3}, {9.0, 3},  {1e300, 3}};
    for (const Case& row : Cases)
    {
        EXPECT_EQ(parameter.GetParameterValueNameFrom01(0, row.x).ToUTF8(), Names[row.expected]);
        parameter.SetParameter(0, row.x, true);
        EXPECT_EQ(single.record.range.asEnum.value, row.expected) << row.x;
        EXPECT_DOUBLE_EQ(parameter.GetParameter(0), row.expected / 3.0);
        parameter.SetParameter(0, static_cast<float>(parameter.GetRestorableParameter(0)), true);
        EXPECT_EQ(single.record.range.asEnum.value, row.expected) << row.x;
    }
    EXPECT_DOUBLE_EQ(parameter.ParseParameterValueName(0, "B"), 1.0 / 3.0);
    EXPECT_EQ(parameter.ParseParameterValueName(0, "unknown"), 1.0) << "still d";
}

TEST(ParameterValues, SwitchesTurnOnAtAHalf)
{
    MPluginParameterRecord own;
    own.type = MParameterType::Bool;
    own.range.asBool = {true, false};
    std::uint8_t byte = 0;
    MPluginParameterRecord elsewhere;
    elsewhere.type = MParameterType::BoolElsewhere;
    elsewhere.range.elsewhere = &byte;
    Single<ParameterBoolT> bools(own);
    Single<ParameterGroupT> groups(elsewhere);
    const auto isOn = [&](const MAutomationAdapter& parameter)
    { return &parameter == &bools.parameter ? bool{bools.record.range.asBool.value} : byte == 1; };
    for (MAutomationAdapter* const parameter :
         {static_cast<MAutomationAdapter*>(&bools.parameter),
          static_cast<MAutomationAdapter*>(&groups.parameter)})
    {
        EXPECT_EQ(parameter->GetParameterType(0), MAutomationType::Bool);
        for (const double x : {0.5, 0.49, 7.0, 0.0})
        {
            const bool before = isOn(*parameter);
            EXPECT_EQ(parameter->GetParameterValueNameFrom01(0, x).ToUTF8(), x < 0.5 ? "0" : "1");
            EXPECT_EQ(parameter->ParseParameterValueName(0, before ? "0" : "1"),
                      before ? 0.0 : 1.0);
            EXPECT_EQ(isOn(*parameter), before) << "only asked";
            parameter->SetParameter(0, x, true);
            EXPECT_EQ(isOn(*parameter), x >= 0.5);
            EXPECT_EQ(parameter->GetParameter(0), x < 0.5 ? 0.0 : 1.0);
        }
    }
    EXPECT_EQ(bools.parameter.GetParameterDefaultValue(0), 1.0);
    groups.record.range.elsewhere = nullptr;
    groups.parameter.SetParameter(0, 1.0, true);
    EXPECT_EQ(groups.parameter.GetParameter(0), 0.0);
}

TEST(ParameterValues, ModulationKeepsWhatTheUserSet)
{
    Single<ParameterFloatT> single(Float(MParameterLaw::Linear, 0.0, 1.0));
    MAutomationAdapter& parameter = single.parameter;
    parameter.SetParameter(0, 0.25, true);
    parameter.SetModulated(0, true);
    parameter.SetParameter(0, 0.75, true);
    EXPECT_EQ(single.record.Effective(), 0.75);
    EXPECT_EQ(parameter.GetParameter(0), 0.25);
    EXPECT_EQ(parameter.GetParameterValueName(0).ToUTF8(), "0.250000");
    EXPECT_EQ(parameter.GetParameterValueNameFrom01(0, 0.5).ToUTF8(), "0.500000");
    EXPECT_EQ(parameter.ParseParameterValueName(0, "0.125"), 0.125);
    parameter.SetModulated(0, false);
    EXPECT_EQ(single.record.Effective(), 0.25);
}

TEST(ParameterBase, TellsOfChangesInOrder)
{
    struct Case
    {
        const char* what;
        bool isQuiet, isRecalculated, isInforming;
        const char* expected;
    };
    constexpr Case Cases[] = {
        {"all", false, true, true, "changed4 update editor "},
        {"without recalculation", false, false, true, "changed4 editor "},
        {"without an editor", false, true, false, "changed4 update "},
        {"quiet", true, true, true, ""},
    };
    for (const Case& row : Cases)
    {
        MPluginParameterRecord record = Float(MParameterLaw::Linear, 0.0, 1.0);
        if (!row.isRecalculated)
            record.flags = record.flags & ~MPluginParameterRecord::Recalculate;
        Single<ParameterFloatT> single(record);
        single.parameter.SetInformEditor(row.isInforming);
        single.parameter.SetParameter(0, 0.5, row.isQuiet);
        EXPECT_EQ(single.record.range.asFloat.value, 0.5) << row.what;
        EXPECT_EQ(single.plugin.owner.log, row.expected) << row.what;
    }
}

TEST(ParameterBaseCustom, TellsTheOwnerInsteadOfTheEffect)
{
    FakeOwner owner;
    MPluginParameterRecord record = Float(MParameterLaw::Linear, 0.0, 1.0);
    record.section = "Modulator 1";
    ParameterFloatT<ParameterBaseCustom> parameter(record, owner);
    parameter.SetParameter(0, 0.25, false);
    EXPECT_EQ(owner.log, "custom editor ");
    parameter.SetParameter(0, 0.5, true);
    EXPECT_EQ(owner.log, "custom editor ");
    EXPECT_EQ(record.range.asFloat.value, 0.5);
    EXPECT_EQ(parameter.GetParameterName(0).ToUTF8(), "Level (Modulator 1)");
    EXPECT_EQ(parameter.GetParameterNameWithoutSection(0).ToUTF8(), "Level");
    EXPECT_EQ(parameter.GetParameterID(0).ToUTF8(), "Modulator 1.Level");
}

} // namespace
