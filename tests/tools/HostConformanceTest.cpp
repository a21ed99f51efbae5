// What hosts expect of a plugin whatever its standard, of both built modules.

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "persistence/MPluginConfiguration.h"
#include "tests/tools/ModuleUnderTest.h"
#include "tools/render/FrequencyMeter.h"
#include "tools/render/InProcessPlugin.h"

namespace
{

class HostConformance : public testing::TestWithParam<const char*>
{
};

INSTANTIATE_TEST_SUITE_P(Both, HostConformance, testing::ValuesIn(ModulePaths),
                         [](const auto& path) { return NameStandard(path.param); });

float FindDistance(const Sound& a, const Sound& b)
{
    Sound difference;
    std::ranges::transform(a, b, std::back_inserter(difference), std::minus());
    return difference.size() == a.size() ? FindPeak(difference) : HUGE_VALF;
}

// Cuts

constexpr int LongestCut = 1100;         ///< samples, more than the plugin was told
constexpr int Settling = 2 * LongestCut; ///< the line to a level, and the last step of it

/// The input and three notes, each at another level; without the way to these levels, which takes
/// the block that it begins with and the next one.
SoundPair PlayScene(const std::string& path, const std::vector<int>& blocks, bool isInPlace)
{
    ModuleUnderTest module(path);
    module.Start(0.25, 0.75);
    SoundPair scene;
    for (const auto& [note, wet] : {std::pair{57, 0.75}, {69, 0.1}, {50, 1.0}})
    {
        module.StartNote(note);
        module.SetGain("Wet", wet);
        const SoundPair piece = module.Play(MakeInput(4000), blocks, isInPlace);
        for (std::size_t channel = 0; channel < 2; ++channel)
            scene[channel].insert(scene[channel].end(), piece[channel].begin() + Settling,
                                  piece[channel].end());
    }
    return scene;
}

TEST_P(HostConformance, BlocksMayBeCutInAnyWay)
{
    const SoundPair expected = PlayScene(GetParam(), {ModuleUnderTest::MaxBlock}, false);
    EXPECT_GT(FindPeak(expected[0]), 1.0f); // all of the tone and a quarter of the input
    const std::vector<int> cases[] = {{1}, {2, 0, 3, 7, 0, 64, 1}, {512, 0, 1, 64}, {LongestCut}};
    for (const std::vector<int>& blocks : cases)
    {
        const SoundPair sound = PlayScene(GetParam(), blocks, false);
        for (std::size_t channel = 0; channel < 2; ++channel)
            EXPECT_LT(FindDistance(sound[channel], expected[channel]), 1e-6f) << blocks[0];
        EXPECT_EQ(PlayScene(GetParam(), blocks, true), sound) << "in place, " << blocks[0];
    }
}

// Blocks that lack something

TEST_P(HostConformance, MissingInputsAreSilent)
{
    Sound silence(ModuleUnderTest::MaxBlock);
    Sound heard = MakeInput(ModuleUnderTest::MaxBlock)[0];
    const auto play = [&](float** inputs)
    {
        ModuleUnderTest module(GetParam());
        module.Start(1.0, 0.25);
        SoundPair sound = {silence, silence};
        float* outputs[] = {sound[0].data(), sound[1].data()};
        module.Call(inputs, outputs, ModuleUnderTest::MaxBlock);
        return sound;
    };
    float* silent[] = {silence.data(), silence.data()};
    float* missing[] = {nullptr, nullptr};
    float* halfSilent[] = {silence.data(), heard.data()};
    float* halfMissing[] = {nullptr, heard.data()};
    EXPECT_NEAR(FindPeak(play(silent)[0]), 0.25f, 1e-3f);
    EXPECT_EQ(play(missing), play(silent));
    EXPECT_EQ(play(nullptr), play(silent));
    EXPECT_EQ(play(halfMissing), play(halfSilent));
}

TEST_P(HostConformance, MissingOutputsDoNotMatter)
{
    constexpr float Untouched = 77.0f;
    constexpr int Length = ModuleUnderTest::MaxBlock;
    ModuleUnderTest plain(GetParam());
    plain.Start(1.0, 0.25);
    const SoundPair expected = plain.Play(MakeInput(Length), {Length});

    ModuleUnderTest module(GetParam());
    SoundPair input = MakeInput(Length);
    const SoundPair before = {Sound(Length, Untouched), Sound(Length, Untouched)};
    SoundPair sound = before;
    float* inputs[] = {input[0].data(), input[1].data()};
    float* outputs[] = {sound[0].data(), sound[1].data()};
    float* left[] = {outputs[0], nullptr};
    float* right[] = {nullptr, outputs[1]};
    float* none[] = {nullptr, nullptr};

    module.Start(1.0, 0.25);
    module.Call(inputs, outputs, 0);
    EXPECT_EQ(sound, before);
    module.Call(inputs, left, Length);
    EXPECT_EQ(sound, (SoundPair{expected[0], before[1]}));
    for (float** const row : {right, none, static_cast<float**>(nullptr)})
    {
        sound = before;
        module.Call(inputs, row, Length);
        EXPECT_EQ(sound[0], before[0]);
        module.Call(inputs, outputs, Length); // as if nothing had been
        EXPECT_NEAR(FindPeak(sound[0]), FindPeak(expected[0]), 0.01f);
    }
}

// Settings

TEST_P(HostConformance, PlaysTheNoteAtAnyRate)
{
    ModuleUnderTest module(GetParam());
    module.Start(0.0, 1.0);
    module.StartNote(81);
    FrequencyMeter meter;
    for (const bool isPlaying : {true, false})
        for (const int rate : {8000, 192000, 11025, 176400, 22050, 96000, 44100, 88200, 48000})
        {
            if (isPlaying)
                module.SetUp(rate);
            else
                module->Start(2, rate, ModuleUnderTest::MaxBlock);
            const Sound sound = module.PlayLeft(rate / 5);
            EXPECT_NEAR(meter.Measure(sound, rate).value_or(0.0), 880.0, 1e-4) << rate;
            EXPECT_NEAR(FindPeak(sound), 1.0f, 1e-3f) << rate;
        }
}

TEST_P(HostConformance, OffLineSoundsAsInTime)
{
    constexpr int Length = ModuleUnderTest::MaxBlock;
    const SoundPair input = MakeInput(Length);
    SoundPair expected = {Sound(Length), Sound(Length)};
    ModuleUnderTest offline(GetParam()); // as all plugins are that do not get calls of our own
    offline.Start(0.5, 0.5);
    const std::array<const float*, 2> inputs = {input[0].data(), input[1].data()};
    const std::array<float*, 2> outputs = {expected[0].data(), expected[1].data()};
    offline->Process(inputs, outputs, Length);
    for (const std::int32_t mode : {Vst3::kRealtime, Vst3::kPrefetch})
    {
        ModuleUnderTest module(GetParam());
        module.Start(0.5, 0.5);
        module.SetUp(ModuleUnderTest::Rate, mode);
        EXPECT_EQ(module.Play(input, {Length}), expected) << mode;
    }
}

/// As the user sets it; off again at the end.
struct SurroundSwitch
{
    SurroundSwitch() = default;
    SurroundSwitch(const SurroundSwitch&) = delete;
    SurroundSwitch& operator=(const SurroundSwitch&) = delete;
    ~SurroundSwitch() { Set(false); }
    static void Set(bool on)
    {
        MPluginConfiguration::Get().Set(MPluginConfiguration::SurroundActivated, on);
    }
};

TEST_P(HostConformance, HasTheChannelsThatTheUserAllows)
{
    constexpr int Length = ModuleUnderTest::MaxBlock;
    const SurroundSwitch surround;
    for (const int widest : {2, HostedPlugin::MaxChannels})
    {
        SurroundSwitch::Set(widest > 2);
        const ModuleUnderTest module(GetParam());
        module.Start(1.0, 0.25);
        for (const int channels : {2, 1, 8, 3, 1, 6, 2, 5, 4, 7})
        {
            if (channels > widest)
            {
                EXPECT_THROW(module->Start(channels, ModuleUnderTest::Rate, Length), MException);
                continue;
            }
            module->Start(channels, ModuleUnderTest::Rate, Length);
            const auto count = static_cast<std::size_t>(channels);
            std::vector<Sound> input(count);
            std::vector<Sound> output(count, Sound(Length));
            std::vector<const float*> inputs(count);
            std::vector<float*> outputs(count);
            for (std::size_t i = 0; i < count; ++i)
            {
                input[i].assign(Length, 0.1f * static_cast<float>(i + 1));
                inputs[i] = input[i].data();
                outputs[i] = output[i].data();
            }
            module->Process(inputs, outputs, Length);
            // The tone is on the first pair; the others go by.
            for (std::size_t i = 0; i < count; ++i)
                EXPECT_NEAR(FindDistance(output[i], input[i]), i < 2 ? 0.25f : 0.0f,
                            i < 2 ? 1e-3f : 0.0f)
                    << i << " of " << channels;
        }
    }
}

TEST_P(HostConformance, BypassIsTheInputByTheLatencyLate)
{
    constexpr int Length = 5000;
    const SoundPair input = MakeInput(Length);
    for (const int upsampling : {1, 2, 5})
        for (const bool isInPlace : {false, true})
        {
            InProcessPlugin source;
            source.GetShell().SetUpsampling(upsampling, true);
            ModuleUnderTest module(GetParam());
            // VST2 has no bypass but that of the state.
            const auto bypass = [&](bool on)
            {
                source.SetBypassed(on);
                if (!module->SetBypassed(on))
                    module->LoadState(source.SaveState());
            };
            module->LoadState(source.SaveState());
            bypass(true);
            module->Start(2, ModuleUnderTest::Rate, ModuleUnderTest::MaxBlock);
            const auto latency = static_cast<std::size_t>(module->GetLatency());
            EXPECT_EQ(latency > 0, upsampling > 1);
            const SoundPair sound = module.Play(input, {7, 0, 64, 512}, isInPlace);
            for (std::size_t channel = 0; channel < 2; ++channel)
            {
                Sound expected(latency);
                expected.insert(expected.end(), input[channel].begin(),
                                input[channel].end() - static_cast<std::ptrdiff_t>(latency));
                EXPECT_EQ(sound[channel], expected) << upsampling;
            }
            bypass(false);
            EXPECT_GT(FindPeak(module.PlayLeft(Length)), 0.4f); // half by default
        }
}

/// As the plugin shows it in full, at each of Steps + 1 places.
TEST_P(HostConformance, TextsOfValuesLeadBackToThemselves)
{
    constexpr int Steps = 64;
    InProcessPlugin whole;
    const ModuleUnderTest module(GetParam());
    for (int index = 0; index < module->GetParameterCount(); ++index)
        for (int step = 0; step <= Steps; ++step)
        {
            const std::string text = whole.GetTextAt(index, static_cast<double>(step) / Steps);
            const auto value = module->Parse(index, text);
            ASSERT_TRUE(value && *value >= 0.0 && *value <= 1.0) << text;
            const std::string again = module->GetTextAt(index, *value);
            std::string expected = text;
            if (text == "silence") // no number leaves all as it is
                expected = module->GetText(index);
            else if (index == 7 && text.ends_with("kHz")) // read in Hz, from 20 Hz on
                expected = "Disabled";
            if (module->CutsTexts())
                expected.resize(std::min<std::size_t>(expected.size(), 7));
            // -9.996 dB are shown as "-10.00 dB" and read as "-10.0 dB".
            if (again != expected && text.ends_with("dB"))
                EXPECT_EQ(std::stod(again), std::stod(text));
            else
                EXPECT_EQ(again, expected) << module->GetParameterName(index) << " at " << step;
        }
}

} // namespace
