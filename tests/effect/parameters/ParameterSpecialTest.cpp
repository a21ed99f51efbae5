#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "ParametersUnderTest.h"
#include "curves/MADSR.h"
#include "effect/MSignalGenerator.h"
#include "effect/parameters/ParameterADSR.h"
#include "effect/parameters/ParameterSignalGenerator.h"
#include "foundation/values/MRandom.h"

namespace
{

using GeneratorParameter =
    ParameterSignalGeneratorT<ParameterSpecialBase<MSignalGenerator, MSignalGeneratorEditor>>;
using CustomGeneratorParameter =
    ParameterSignalGeneratorT<ParameterSpecialBaseCustom<MSignalGenerator, MSignalGeneratorEditor>>;
using ADSRParameter = ParameterADSRT<ParameterSpecialBase<MADSR, MADSREditor>>;

struct Value
{
    const char* name;
    double default01;
    double x, number; ///< x sets the number, which answers x
    const char* text;
    const char* typed;
    double typed01; ///< x for what cannot be read
};

/// @p number reads the field behind an index.
template <typename Rows, typename Number>
void ExpectValues(MAutomationAdapter& parameter, FakeOwner& owner, const Rows& rows,
                  Number&& number)
{
    ASSERT_EQ(parameter.GetCount(), static_cast<int>(std::size(rows)));
    for (int i = 0; i < parameter.GetCount(); ++i)
    {
        const Value& row = rows[i];
        EXPECT_EQ(parameter.GetParameterName(i).ToUTF8(), row.name);
        EXPECT_EQ(parameter.GetParameterID(i).ToUTF8(), row.name);
        EXPECT_DOUBLE_EQ(parameter.GetParameterDefaultValue(i), row.default01) << row.name;
        EXPECT_EQ(parameter.GetParameterType(i), MAutomationType::Float) << row.name;
        EXPECT_EQ(parameter.GetParameterValueNameFrom01(i, row.x).ToUTF8(), row.text);
        owner.log.clear();
        parameter.SetParameter(i, row.x, false);
        EXPECT_EQ(owner.log, parameter.IsModulatable(i) ? "editor " : "") << row.name;
        EXPECT_DOUBLE_EQ(number(i), row.number) << row.name;
        EXPECT_DOUBLE_EQ(parameter.GetParameter(i), row.x) << row.name;
        EXPECT_EQ(parameter.GetParameterValueName(i).ToUTF8(), row.text);
        EXPECT_NEAR(parameter.ParseParameterValueName(i, row.typed), row.typed01, 1e-12)
            << row.name;
        EXPECT_EQ(parameter.ParseParameterValueName(i, " "), parameter.GetParameter(i));
        parameter.SetParameter(i, std::nan(""), false);
        EXPECT_DOUBLE_EQ(parameter.GetParameter(i), row.x) << row.name;
    }
    for (const int outside : {-1, parameter.GetCount()})
    {
        parameter.SetParameter(outside, 0.5, false);
        EXPECT_EQ(parameter.GetParameter(outside), 0.0);
        EXPECT_TRUE(parameter.GetParameterName(outside).IsEmpty());
        EXPECT_TRUE(parameter.GetParameterValueName(outside).IsEmpty());
        EXPECT_FALSE(parameter.IsModulatable(outside));
    }
}

struct GeneratorUnderTest
{
    /// As a generator of its own with these fields would sound.
    bool IsRebuilt() const
    {
        MSignalGenerator other;
        other.Shape = generator.Shape;
        other.EnvelopeDepth = generator.EnvelopeDepth;
        other.StepDepth = generator.StepDepth;
        other.Smoothness = generator.Smoothness;
        other.Rebuild();
        return std::ranges::equal(generator.GetTable(), other.GetTable());
    }

    MSignalGenerator generator;
    MPluginSpecialRecord record{MSpecialKind::SignalGenerator, "Shape", "", &generator, nullptr, 0};
    FakeOwner owner;
    GeneratorParameter parameter{record, &owner};
};

TEST(ParameterSignalGenerator, ShowsFourValuesOfAGenerator)
{
    constexpr Value Rows[] = {
        {"Shape", 1.0 / 3.0, 0.35, 5.25, "75% Sine, 25% Harmonics", "70% harmonics, 30% sine",
         5.7 / 15.0},
        {"Shape custom morph", 0.0, 0.005, 0.005, "0.50%", "50%", 0.5},
        {"Shape step sequencer", 0.0, 0.25, 0.25, "25.0%", "250", 2.5},
        {"Shape smoothness", 0.0, 1.0, 1.0, "100.0%", "none", 1.0},
    };
    GeneratorUnderTest test;
    MSignalGenerator& g = test.generator;
    const double* const numbers[] = {&g.Shape, &g.EnvelopeDepth, &g.StepDepth, &g.Smoothness};
    EXPECT_EQ(test.parameter.GetParameterValueName(0).ToUTF8(), "Sine");
    ExpectValues(test.parameter, test.owner, Rows, [&](int i) { return *numbers[i]; });
    EXPECT_TRUE(test.IsRebuilt());
    struct Case
    {
        const char* typed;
        double expected;
    };
    constexpr Case Typed[] = {{"Saw", 0.8}, {"12", 0.8}, {"30", 2.0}, {"30% Sine, 70% Saw", 0.35}};
    for (const Case& row : Typed)
        EXPECT_DOUBLE_EQ(test.parameter.ParseParameterValueName(0, row.typed), row.expected);
}

TEST(ParameterSignalGenerator, WritesUnderTheProcessingLockAndTellsUnlessQuiet)
{
    GeneratorUnderTest test;
    test.parameter.SetParameter(0, 0.8, true);
    EXPECT_EQ(test.owner.log, "");
    EXPECT_EQ(test.owner.lock.taken, 1);
    EXPECT_EQ(test.owner.lock.depth, 0);
    EXPECT_TRUE(test.IsRebuilt()) << "also when quiet";

    CustomGeneratorParameter custom(test.record, nullptr);
    custom.SetParameter(2, 1.0, false);
    EXPECT_TRUE(test.IsRebuilt()) << "also before it is wired";
    EXPECT_EQ(test.owner.log, "");
    custom.SetOwner(&test.owner);
    custom.SetParameter(0, 0.1, false);
    EXPECT_EQ(test.owner.log, "custom editor ");
}

TEST(ParameterSignalGenerator, RandomisesByItsAmount)
{
    for (const double amount : {0.0, 0.1, 0.999, 1.0})
        for (std::uint32_t seed = 1; seed < 9; ++seed)
        {
            GeneratorUnderTest test;
            test.generator.Shape = 14.9;
            test.generator.StepDepth = 0.25;
            test.generator.Smoothness = 0.125;
            MRandom::SetState(seed * 40503u);
            test.parameter.Randomize(amount);
            MRandom::SetState(seed * 40503u);
            const double shape01 = 14.9 / 15.0 + 2.0 * amount * (MRandom::DrawUniform() - 0.5);
            EXPECT_NEAR(test.generator.Shape, std::clamp(shape01 * 15.0, 0.0, 15.0), 1e-12);
            EXPECT_EQ(test.generator.EnvelopeDepth, MRandom::DrawUniform());
            const double draw = MRandom::DrawUniform();
            EXPECT_NEAR(test.generator.StepDepth,
                        amount < 1.0 ? 0.25 + amount * (draw - 0.5) * 0.5 : std::pow(draw, 20.0),
                        1e-12);
            EXPECT_EQ(test.generator.Smoothness, 0.125);
            EXPECT_TRUE(test.IsRebuilt());
            EXPECT_EQ(test.owner.log, "editor ");
            EXPECT_EQ(test.owner.lock.taken, 1);
        }
}

TEST(ParameterADSR, ShowsElevenValuesOfAnEnvelope)
{
    constexpr Value Rows[] = {
        {"Env delay", 0.5, 0.5, 2.5, "2500 ms", "100 ms", 0.1},
        {"Env attack", 0.5, 0.1, 0.1, "100 ms", "0.4", 0.00632455532033676},
        {"Env hold", 0.5, 1.0, 10.0, "10000 ms", "40000", 2.0},
        {"Env decay", 0.5, 0.02, 0.004, "4.0 ms", "long", 0.02},
        {"Env release", 0.5, 0.2, 0.4, "400 ms", "-5 ms", 0.2},
        {"Env sustain", 0.5, 0.75, 0.75, "75.0%", "50%", 0.5},
        {"Env smoothing", 0.5, 0.125, 0.125, "12.5%", "25", 0.25},
        {"Env attack shape", 0.5, 0.75, 0.5, "50.0%", "-100%", 0.0},
        {"Env decay shape", 0.5, 0.0, -1.0, "-100.0%", "0", 0.5},
        {"Env release shape", 0.5, 0.5, 0.0, "0.00%", "100", 1.0},
        {"Env reserved", 0.5, 0.5, 0.5, "50.0%", "100%", 0.5},
    };
    MADSR adsr;
    const double* const numbers[] = {
        &adsr.Delay,   &adsr.Attack,    &adsr.Hold,        &adsr.Decay,      &adsr.Release,
        &adsr.Sustain, &adsr.Smoothing, &adsr.AttackShape, &adsr.DecayShape, &adsr.ReleaseShape};
    const MPluginSpecialRecord record{MSpecialKind::ADSR, "Env", "", &adsr, nullptr, 0};
    FakeOwner owner;
    ADSRParameter parameter(record, &owner);
    ExpectValues(parameter, owner, Rows, [&](int i) { return i < 10 ? *numbers[i] : 0.5; });
    parameter.SetParameter(10, 0.9, false);
    EXPECT_EQ(parameter.GetParameter(10), 0.5) << "never changes";
}

} // namespace
