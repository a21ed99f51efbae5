#include "effect/MRampedGain.h"

#include <array>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "effect/MPluginParameterRecord.h"
#include "effect/StockValueTexts.h"

namespace
{

MPluginParameterRecord Gain(double value)
{
    MPluginParameterRecord record;
    record.SetFloat("Gain", 0.0, 4.0, value);
    return record;
}

TEST(MRampedGain, MapsByTextFunctionOrElseByLaw)
{
    struct Case
    {
        const char* what;
        MValueTextFunction valueText;
        MParameterLaw law;
        float expected; ///< of the value 0.5
    };
    constexpr Case Cases[] = {
        {"linear text before law", &valuetexts::LinearGain, MParameterLaw::FourthPower, 0.5f},
        {"squared text before law", &valuetexts::SquaredGain, MParameterLaw::Linear, 0.25f},
        {"fourth power", &valuetexts::FourthPowerGain, MParameterLaw::FourthPower, 0.0625f},
        {"plain", nullptr, MParameterLaw::Linear, 0.5f},
        {"squared law", nullptr, MParameterLaw::Squared, 0.25f},
    };
    for (const Case& row : Cases)
    {
        MPluginParameterRecord record = Gain(0.5);
        record.valueText = row.valueText;
        record.law = row.law;
        std::array<float, 3> block = {1.0f, -2.0f, 4.0f};
        MRampedGain(record, 2.0, 3).Apply(block.data());
        EXPECT_EQ(block[0], 2.0f * row.expected) << row.what;
        EXPECT_EQ(block[1], -4.0f * row.expected) << row.what;
    }
}

TEST(MRampedGain, RampsOverExactlyOneBlock)
{
    MPluginParameterRecord record = Gain(0.0);
    record.range.asFloat.value = 3.0;
    const std::vector<float> ones(6, 1.0f);
    std::vector<float> sum(6, 10.0f);
    const MRampedGain ramp(record, 1.0, 6);
    ramp.Add(sum.data(), ones.data());
    EXPECT_EQ(sum, (std::vector<float>{10.0f, 10.5f, 11.0f, 11.5f, 12.0f, 12.5f}));
    std::vector<float> scaled = ones;
    ramp.Apply(scaled.data());
    EXPECT_EQ(scaled, (std::vector<float>{0.0f, 0.5f, 1.0f, 1.5f, 2.0f, 2.5f}));

    scaled = ones;
    MRampedGain(record, 1.0, 6).Apply(scaled.data());
    EXPECT_EQ(scaled, std::vector<float>(6, 3.0f));
}

TEST(MRampedGain, MixesAsApplyAndAddDo)
{
    const std::vector<float> source = {1.0f, -3.0f, 0.3f, 7.0f, 0.1f, 2.0f, -0.7f};
    const std::vector<float> block = {0.9f, 0.2f, -5.0f, 1.0f, 0.6f, -0.4f, 3.0f};
    for (const bool blockMoves : {false, true})
        for (const bool sourceMoves : {false, true})
        {
            MPluginParameterRecord first = Gain(0.3);
            MPluginParameterRecord second = Gain(0.7);
            first.range.asFloat.value = blockMoves ? 0.9 : 0.3;
            second.range.asFloat.value = sourceMoves ? 0.1 : 0.7;
            const MRampedGain blockGain(first, 1.0, 7);
            const MRampedGain sourceGain(second, 1.0, 7);
            std::vector<float> expected = block;
            blockGain.Apply(expected.data());
            sourceGain.Add(expected.data(), source.data());
            std::vector<float> actual = block;
            MRampedGain::Mix(actual.data(), blockGain, source.data(), sourceGain);
            EXPECT_EQ(actual, expected) << blockMoves << sourceMoves;
        }
}

TEST(MRampedGain, AModulatedGainRampsBetweenAlternates)
{
    MPluginParameterRecord record = Gain(1.0);
    record.SetModulated(true);
    record.range.asFloat.alternate = 2.0;
    std::vector<float> block(4, 1.0f);
    MRampedGain(record, 1.0, 4).Apply(block.data());
    EXPECT_EQ(block, (std::vector<float>{1.0f, 1.25f, 1.5f, 1.75f}));
    EXPECT_EQ(record.range.asFloat.rampStart, 2.0);
}

TEST(MRampedGain, SilenceAddsNothingOfABrokenSource)
{
    MPluginParameterRecord record = Gain(0.0);
    const std::vector<float> broken(3, std::numeric_limits<float>::infinity());
    std::vector<float> sum(3, 1.0f);
    MRampedGain(record, 1.0, 3).Add(sum.data(), broken.data());
    EXPECT_EQ(sum, std::vector<float>(3, 1.0f));
}

} // namespace
