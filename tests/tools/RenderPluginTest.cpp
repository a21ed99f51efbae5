// tonvale-render as a whole: what the plugin round the oscillator does.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/Signals.h"
#include "tests/tools/WavSound.h"
#include "tools/render/FrequencyMeter.h"

namespace
{

constexpr double Rate = 48000.0;
constexpr std::size_t Length = 24000;

using Arguments = std::vector<std::string>;
using Channel = std::vector<float>;

const Channel Left = MakeSine(Length, 300.0, Rate);
const Channel Right = MakeSine(Length, 700.0, Rate);

class RenderPlugin : public testing::Test
{
protected:
    RenderPlugin() { WavSound{48000, {Left, Right}}.Write(folder / "in.wav"); }

    /// The sound of the input under @p arguments. What the program tells is in report.
    std::vector<Channel> Render(Arguments arguments)
    {
        for (const char* const more : {"--input", "in.wav", "out.wav"})
            arguments.emplace_back(more);
        const auto result = RenderProgram::Run(folder.GetPath(), arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        report = result.output;
        const WavSound sound = WavSound::Read(folder / "out.wav");
        EXPECT_EQ(sound.GetFrames(), Length);
        return sound.channels;
    }

    bool Reports(const std::string& line) const { return report.find(line) != std::string::npos; }

    const TemporaryFolder folder;
    std::string report;
};

double Distance(const Channel& a, const Channel& b, std::size_t begin = 0, std::size_t end = Length)
{
    double distance = 0.0;
    for (std::size_t i = begin; i < end; ++i)
        distance = std::max(distance, std::abs(static_cast<double>(a[i]) - b[i]));
    return distance;
}

TEST_F(RenderPlugin, KeepsTheInputInItsPlace)
{
    struct Case
    {
        Arguments arguments;
        double tolerance; ///< 0.5 is the peak
    };
    const Arguments dry = {"--set", "Dry=0 dB", "--set", "Wet=silence"};
    const Case cases[] = {
        {{"--bypass"}, 0.0},
        {{"--bypass", "--upsampling", "2"}, 0.0},
        {{"--bypass", "--upsampling", "5", "--no-hq", "--block", "100000"}, 0.0},
        {{"--upsampling", "2"}, 1e-5},
        {{"--upsampling", "13", "--block", "7"}, 1e-5},
        {{"--upsampling", "4", "--no-hq"}, 1e-5}, // every fourth sample is one of the input
    };
    for (Case row : cases)
    {
        row.arguments.insert(row.arguments.end(), dry.begin(), dry.end());
        const auto sound = Render(row.arguments);
        // Where the input begins and ends at once, low-passes ring.
        const std::size_t edge = row.tolerance > 0.0 ? 100 : 0;
        EXPECT_LE(Distance(sound[0], Left, edge, Length - edge), row.tolerance) << row.arguments[1];
        EXPECT_LE(Distance(sound[1], Right, edge, Length - edge), row.tolerance);
    }
}

TEST_F(RenderPlugin, PlaysTheSameToneAtHigherRates)
{
    struct Case
    {
        const char* factor;
        const char* quality;
        std::size_t early; ///< samples that the way in would take
        const char* latency;
    };
    const Case cases[] = {
        {"2", "--hq", 32, "3072 samples, 64.000 ms\nUpsampling: 2, to 96000 Hz in high quality\n"},
        {"16", "--hq", 36, "384 samples, 8.000 ms\nUpsampling: 16, to 768000 Hz in high"},
        {"3", "--no-hq", 2, "512 samples, 10.667 ms\nUpsampling: 3, to 144000 Hz in standard"},
    };
    const Channel plain = Render({"--note", "81"})[0];
    for (const Case& row : cases)
    {
        const Channel tone =
            Render({"--note", "81", "--upsampling", row.factor, row.quality, "--stats"})[0];
        EXPECT_TRUE(Reports(std::string("Latency: ") + row.latency)) << report;
        const auto hz = FrequencyMeter().Measure(tone, Rate);
        EXPECT_NEAR(hz.value_or(0.0), 880.0, 1e-4) << row.factor;
        const Channel ahead(plain.begin() + static_cast<std::ptrdiff_t>(row.early), plain.end());
        EXPECT_LE(Distance(tone, ahead, 0, ahead.size()), 1e-5) << row.factor;
    }
}

TEST_F(RenderPlugin, MeasuresNotesAtHigherRatesAndInAllModes)
{
    const std::string melody = std::string(TONVALE_EXAMPLES) + "/melody.mid";
    for (const Arguments& arguments :
         std::vector<Arguments>{{"--rate", "8000", "--upsampling", "2"},
                                {"--upsampling", "16", "--no-hq"},
                                {"--channel-mode", "Right"},
                                {"--channel-mode", "Mono"},
                                {"--channel-mode", "Stereo"},
                                {"--channel-mode", "Mono + Stereo"}})
    {
        Arguments line = arguments;
        for (const char* const more : {"--midi", melody.c_str(), "--set", "Width=1", "out.wav"})
            line.emplace_back(more);
        const auto result = RenderProgram::Run(folder.GetPath(), line);
        const std::size_t worst = result.output.find("Worst error: 0.0000");
        ASSERT_NE(worst, std::string::npos) << arguments.back() << result.output;
        EXPECT_NE(result.output.find("29 of 29", worst), std::string::npos) << arguments.back();
    }
}

TEST_F(RenderPlugin, WorksOnTheChannelsOfItsMode)
{
    Channel middle(Length), side(Length);
    for (std::size_t i = 0; i < Length; ++i)
    {
        middle[i] = (Left[i] + Right[i]) / 2;
        side[i] = (Left[i] - Right[i]) / 2;
    }
    Channel inverted = side;
    for (float& sample : inverted)
        sample = -sample;
    Channel negative = Right;
    for (float& sample : negative)
        sample = -sample;
    const Channel silence(Length);
    struct Case
    {
        const char* mode;
        const Channel &left, &right; ///< while the effect silences all that it gets
        const Channel& passedRight;  ///< while it passes that
    };
    const Case cases[] = {
        {"left + right", silence, silence, Right},
        {"Left", silence, Right, Right},
        {"Right", Left, silence, Right},
        {"Mono", side, inverted, Right},
        {"Stereo", middle, middle, Right},
        {"Mono + Stereo", silence, silence, Right},
        {"Left + Right (neg)", silence, silence, negative},
    };
    for (const Case& row : cases)
    {
        const auto silenced = Render({"--channel-mode", row.mode, "--set", "Wet=silence"});
        EXPECT_LE(Distance(silenced[0], row.left), 1e-7) << row.mode;
        EXPECT_LE(Distance(silenced[1], row.right), 1e-7) << row.mode;
        const auto passed =
            Render({"--channel-mode", row.mode, "--set", "Wet=silence", "--set", "Dry=0 dB"});
        EXPECT_LE(Distance(passed[0], Left), 1e-7) << row.mode;
        EXPECT_LE(Distance(passed[1], row.passedRight), 1e-7) << row.mode;
    }
    // Of three channels all play, unless the mode says otherwise.
    for (const char* const mode : {"Surround", "Left + Right"})
    {
        Render({"--channels", "3", "--channel-mode", mode, "--save-state", "a.xml"});
        const double level = Distance(Render({"--channels", "3", "--state", "a.xml"})[2], silence);
        EXPECT_NEAR(level, mode[0] == 'S' ? 0.5 : 0.0, 1e-3) << mode;
    }
}

TEST_F(RenderPlugin, DrawsAutomationAsALine)
{
    constexpr std::size_t Block = 4800;
    constexpr double LongestStep = 256.0; // samples between two values on the line
    WavSound{48000, {Channel(Length, 0.5f)}}.Write(folder / "in.wav");
    // The point at 0.05 s is set where the next block begins.
    const Channel sound = Render({"--channels", "1", "--block", "4800", "--set", "Wet=silence",
                                  "--automate", "Dry:0=0.9,0.05=0.5"})[0];
    // "Dry" is half way up a quarter, which is a gain of a sixteenth.
    const auto value = [&](std::size_t i) { return std::pow(sound[i] / 0.5, 0.25); };
    const auto line = [](double samples)
    { return 0.9 - 0.4 * std::clamp(samples / Block, 0.0, 1.0); };
    for (std::size_t i = 0; i < Block; ++i)
        ASSERT_NEAR(value(i), 0.9, 1e-6) << i;
    for (std::size_t i = 0; i < Block; ++i)
    {
        ASSERT_GE(value(Block + i), line(static_cast<double>(i) + 1.0) - 1e-4) << i;
        ASSERT_LE(value(Block + i), line(static_cast<double>(i) - LongestStep) + 1e-4) << i;
    }
    ASSERT_NEAR(value(3 * Block), 0.5, 1e-6);
}

TEST_F(RenderPlugin, HearsAutomationInBlocksTooShortForALine)
{
    Channel sound =
        Render({"--note", "69", "--block", "64", "--automate", "Pitch:0=0.25,0.25=0.75"})[0];
    const Channel higher(sound.begin() + Length / 2, sound.end());
    sound.resize(Length / 2);
    EXPECT_NEAR(FrequencyMeter().Measure(sound, Rate).value_or(0.0), 220.0, 1e-3);
    EXPECT_NEAR(FrequencyMeter().Measure(higher, Rate).value_or(0.0), 880.0, 1e-3);
}

TEST_F(RenderPlugin, KeepsItsSettingsInTheStateUnlessToldOtherwise)
{
    Render({"--channel-mode", "Stereo", "--upsampling", "3", "--no-hq", "--bypass", "--save-state",
            "a.xml"});
    EXPECT_EQ(Render({"--state", "a.xml", "--stats", "--save-state", "b.xml"})[0], Left);
    EXPECT_TRUE(Reports("Upsampling: 3, to 144000 Hz in standard quality\n")) << report;
    EXPECT_EQ(folder.Read("b.xml"), folder.Read("a.xml"));

    // The side is heard no more, and what is given replaces what was stored.
    const Arguments change = {"--state", "a.xml", "--no-bypass", "--set", "Wet=silence", "--stats"};
    Channel middle = Left;
    std::ranges::transform(Left, Right, middle.begin(),
                           [](float left, float right) { return (left + right) / 2; });
    EXPECT_LE(Distance(Render(change)[1], middle), 1e-5);
    Arguments more = change;
    for (const char* const argument : {"--upsampling", "2", "--hq", "--channel-mode", "Left"})
        more.emplace_back(argument);
    EXPECT_LE(Distance(Render(more)[0], Channel(Length)), 1e-7);
    EXPECT_TRUE(Reports("Upsampling: 2, to 96000 Hz in high quality\n")) << report;
}

TEST_F(RenderPlugin, CountsItsBlocks)
{
    Render({"--block", "1000", "--stats"});
    EXPECT_TRUE(
        Reports("\nBlocks: 24 of 1000 samples\nSub-blocks: 24 of 1000 samples\nInterpolated "
                "blocks: 0\nSuspended blocks: 0\nLatency: 0 samples, 0.000 ms\nUpsampling: "
                "1, to 48000 Hz\n"))
        << report;
    Render({"--block", "1000", "--stats", "--upsampling", "16"}); // 384 samples more
    EXPECT_TRUE(Reports("\nBlocks: 25 of 384 to 1000 samples\nSub-blocks: 25 of 6144 to 16000 "
                        "samples\n"))
        << report;
    Render({"--block", "1000", "--stats", "--automate", "Wet:0.1=0.5"}); // one block in four pieces
    EXPECT_TRUE(Reports("\nSub-blocks: 27 of 250 to 1000 samples\nInterpolated blocks: 1\n"))
        << report;
}

} // namespace
