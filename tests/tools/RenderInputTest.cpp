// tonvale-render as a whole: mixing in a WAV file.

#include <gtest/gtest.h>

#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/Signals.h"
#include "tests/tools/WavSound.h"

namespace
{

using Result = RenderProgram::Result;

const WavSound Stereo{32000, {MakeSine(9001, 300.0, 32000.0), MakeSine(9001, 700.0, 32000.0)}};

TEST(RenderInput, IsHeardUnderDryAlone)
{
    const TemporaryFolder folder;
    Stereo.Write(folder / "in.wav");
    const Result result =
        RenderProgram::Run(folder.GetPath(), {"--input", "in.wav", "--set", "Dry=0 dB", "--set",
                                              "Wet=silence", "--block", "77", "out.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    const WavSound sound = WavSound::Read(folder / "out.wav");
    EXPECT_EQ(sound.rate, 32000) << "that of the file";
    EXPECT_EQ(sound.GetFrames(), 9001u) << "that of the file";
    EXPECT_EQ(sound.channels, Stereo.channels);

    RenderProgram::Run(folder.GetPath(), {"--input", "in.wav", "plain.wav"});
    RenderProgram::Run(folder.GetPath(), {"--rate", "32000", "--seconds", "0.28128125", "wet.wav"});
    EXPECT_EQ(WavSound::Read(folder / "plain.wav").channels,
              WavSound::Read(folder / "wet.wav").channels)
        << "Dry is silent unless set";
}

TEST(RenderInput, IsMixedWithTheTone)
{
    const TemporaryFolder folder;
    Stereo.Write(folder / "in.wav");
    RenderProgram::Run(folder.GetPath(), {"--input", "in.wav", "--set01", "Dry=0.5", "mix.wav"});
    RenderProgram::Run(folder.GetPath(), {"--rate", "32000", "--seconds", "0.28128125", "wet.wav"});
    const WavSound mix = WavSound::Read(folder / "mix.wav");
    const WavSound wet = WavSound::Read(folder / "wet.wav");
    ASSERT_EQ(mix.GetFrames(), wet.GetFrames());
    // Half way up, "Dry" is a quarter, which is a gain of a sixteenth.
    for (std::size_t channel = 0; channel < 2; ++channel)
        for (std::size_t i = 0; i < mix.GetFrames(); ++i)
            ASSERT_NEAR(mix.channels[channel][i],
                        wet.channels[channel][i] + Stereo.channels[channel][i] / 16.0f, 1e-6)
                << i;
}

TEST(RenderInput, FillsTheChannelsThatItHas)
{
    const TemporaryFolder folder;
    Stereo.Write(folder / "stereo.wav");
    WavSound{32000, {Stereo.channels[0]}}.Write(folder / "mono.wav");
    const auto play = [&folder](const char* input)
    {
        RenderProgram::Run(folder.GetPath(),
                           {"--input", input, "--set", "Dry=0 dB", "--set", "Wet=silence",
                            "--channels", "4", "--seconds", "0.3", "out.wav"});
        return WavSound::Read(folder / "out.wav").channels;
    };
    std::vector<float> first = Stereo.channels[0];
    std::vector<float> second = Stereo.channels[1];
    // Silence behind the end of the file; the plugin keeps it off denormal numbers.
    const float silent = 1e-15f;
    const std::vector<float> silence(9600, silent);
    first.resize(9600, silent);
    second.resize(9600, silent);
    using Channels = std::vector<std::vector<float>>;
    EXPECT_EQ(play("mono.wav"), (Channels{first, first, first, first}));
    EXPECT_EQ(play("stereo.wav"), (Channels{first, second, silence, silence}));
}

TEST(RenderInput, MayBeTheFileThatIsWritten)
{
    const TemporaryFolder folder;
    Stereo.Write(folder / "a.wav");
    const Result result =
        RenderProgram::Run(folder.GetPath(), {"--input", "a.wav", "--set", "Dry=0 dB", "--set",
                                              "Wet=silence", "a.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(WavSound::Read(folder / "a.wav").channels, Stereo.channels);
}

} // namespace
