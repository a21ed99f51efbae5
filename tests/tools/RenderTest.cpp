// tonvale-render as a whole: what it renders without files to read.

#include <csignal>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

#include <gtest/gtest.h>

#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/WavSound.h"
#include "tools/render/FrequencyMeter.h"

namespace
{

using Result = RenderProgram::Result;

double MeasureCents(const WavSound& sound, std::size_t channel, double reference)
{
    const auto hz = FrequencyMeter().Measure(sound.channels.at(channel), sound.rate);
    return hz ? 1200.0 * std::log2(*hz / reference) : std::nan("");
}

TEST(Render, PlaysTheLastNoteForFiveSeconds)
{
    const TemporaryFolder folder;
    const Result result =
        RenderProgram::Run(folder.GetPath(), {"--note", "60", "--note", "69", "a.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(folder.List(), "a.wav");
    const WavSound sound = WavSound::Read(folder / "a.wav");
    EXPECT_EQ(sound.rate, 48000);
    ASSERT_EQ(sound.channels.size(), 2u);
    EXPECT_EQ(sound.GetFrames(), 240000u);
    EXPECT_LT(std::abs(MeasureCents(sound, 0, 440.0)), 0.001);
    EXPECT_EQ(sound.channels[0], sound.channels[1]);

    EXPECT_EQ(result.output.find("Tonvale 5.03 as VST3\n"
                                 "a.wav: 48000 Hz, 2 channels, 240000 frames, 5.000 s\n"
                                 "Peak level: -6.02 dBFS\n"
                                 "Speed: "),
              0u)
        << result.output;
}

TEST(Render, ObeysRateLengthAndChannels)
{
    const TemporaryFolder folder;
    const Result result =
        RenderProgram::Run(folder.GetPath(), {"--rate", "22050", "--seconds", "0.50002",
                                              "--channels", "3", "--set", "width=12", "a.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const WavSound sound = WavSound::Read(folder / "a.wav");
    EXPECT_EQ(sound.rate, 22050);
    ASSERT_EQ(sound.channels.size(), 3u);
    EXPECT_EQ(sound.GetFrames(), 11025u);
    // A third of the width below the note, and half of it between neighbours.
    const double c5 = 440.0 * std::exp2(3.0 / 12.0);
    EXPECT_NEAR(MeasureCents(sound, 0, c5), -400.0, 0.001);
    EXPECT_NEAR(MeasureCents(sound, 1, c5), 200.0, 0.001);
    EXPECT_NEAR(MeasureCents(sound, 2, c5), 800.0, 0.001);
}

TEST(Render, AppliesSettingsInTheirOrder)
{
    const TemporaryFolder folder;
    const Result result = RenderProgram::Run(
        folder.GetPath(), {"--set", "Frequency=100 Hz", "--set01", "Semitones=1", "--set",
                           "FREQUENCY=250 Hz", "--set", "Wet=-20 dB", "a.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("Peak level: -20.0 dBFS\n"), std::string::npos) << result.output;
    EXPECT_LT(std::abs(MeasureCents(WavSound::Read(folder / "a.wav"), 0, 500.0)), 0.001);
}

TEST(Render, TellsOfSilence)
{
    const TemporaryFolder folder;
    const Result result = RenderProgram::Run(folder.GetPath(), {"--set", "Wet=silence", "a.wav"});
    EXPECT_NE(result.output.find("Peak level: silence\n"), std::string::npos) << result.output;
}

TEST(Render, MakesTheSameFileEachTimeAndReplacesAnOlderOne)
{
    const TemporaryFolder folder;
    folder.Write("b.wav", std::vector<std::uint8_t>(10));
    RenderProgram::Run(folder.GetPath(), {"--seconds", "0.1", "a.wav"});
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    RenderProgram::Run(folder.GetPath(), {"--seconds", "0.1", "b.wav"});
    EXPECT_EQ(folder.List(), "a.wav b.wav");
    EXPECT_EQ(folder.Read("a.wav"), folder.Read("b.wav"));
}

TEST(Render, ListsHelpsAndTellsItsVersion)
{
    const TemporaryFolder folder;
    const Result list = RenderProgram::Run(folder.GetPath(), {"--list", "--set", "octaves=2"});
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_NE(list.output.find("\nOctaves" + std::string(36, ' ') + "+2 "), std::string::npos)
        << list.output;

    const Result help = RenderProgram::Run(folder.GetPath(), {"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* const option :
         {"--note",       "--midi",       "--seconds",      "--rate",       "--block", "--channels",
          "--set ",       "--set01",      "--input",        "--list",       "--shape", "--state",
          "--save-state", "--table",      "--channel-mode", "--upsampling", "--hq",    "--no-hq",
          "--plugin",     "--in-process", "--bypass",       "--no-bypass",  "--tempo", "--automate",
          "--stats",      "OUT.wav"})
        EXPECT_NE(help.output.find(option), std::string::npos) << option;

    const Result version = RenderProgram::Run(folder.GetPath(), {"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.output, "Tonvale 5.03\n");
    EXPECT_EQ(list.errors + help.errors + version.errors, "");
    EXPECT_EQ(folder.List(), "");
}

TEST(Render, CleansUpWhenInterrupted)
{
    const TemporaryFolder folder;
    folder.Write("a.wav", std::vector<std::uint8_t>(10));
    RenderProgram program(folder.GetPath(), {"--seconds", "86400", "--rate", "12000", "--channels",
                                             "1", "--block", "16", "a.wav"});
    // The temporary file shows that it renders.
    for (int waits = 0; folder.List() == "a.wav" && waits < 10000; ++waits)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    program.Signal(SIGINT);
    const Result result = program.Wait();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.errors, "tonvale-render: interrupted; nothing was written\n");
    EXPECT_EQ(folder.List(), "a.wav");
    EXPECT_EQ(folder.Read("a.wav").size(), 10u);
}

} // namespace
