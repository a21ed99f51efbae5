// tonvale-render as a whole: playing MIDI files.

#include <cmath>

#include <gtest/gtest.h>

#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/TestMidiFile.h"
#include "tests/tools/WavSound.h"

namespace
{

using Result = RenderProgram::Result;
using namespace testmidi;

std::string Example(const char* name)
{
    return std::string(TONVALE_EXAMPLES) + name;
}

/// The first frame at which two sounds differ.
std::size_t FirstDifference(const std::vector<float>& a, const std::vector<float>& b)
{
    const auto end = static_cast<std::ptrdiff_t>(std::min(a.size(), b.size()));
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.begin() + end, b.begin()).first -
                                    a.begin());
}

TEST(RenderMidi, PlaysEachNoteAtItsSample)
{
    struct Case
    {
        const char* what;
        Bytes events;
        const char* rate;
        std::size_t frame; ///< from which the new pitch counts
    };
    const Case cases[] = {
        {"half a second", {96, 0x90, 84, 100}, "48000", 24000},
        {"rounded down", {1, 0x90, 84, 100}, "44100", 230}, // 229.6875 samples
        {"rounded up", {2, 0x90, 84, 100}, "44100", 459},   // 459.375
        {"in another tempo", Tempo(250000) + Bytes{7, 0x90, 84, 100}, "48000", 875},
        {"a wheel movement", {3, 0xE0, 0, 0}, "48000", 750},
    };
    const TemporaryFolder folder;
    for (const Case& row : cases)
    {
        folder.Write("a.mid", File(row.events, 96));
        const Result result = RenderProgram::Run(
            folder.GetPath(), {"--midi", "a.mid", "--rate", row.rate, "midi.wav"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        RenderProgram::Run(folder.GetPath(), {"--rate", row.rate, "plain.wav"});
        // The phase goes on, so the first sample to differ is the one behind.
        EXPECT_EQ(FirstDifference(WavSound::Read(folder / "midi.wav").channels[0],
                                  WavSound::Read(folder / "plain.wav").channels[0]),
                  row.frame + 1)
            << row.what;
    }
}

TEST(RenderMidi, SoundsTheSameWhateverTheBlockSize)
{
    const TemporaryFolder folder;
    const auto render = [&folder](const char* block)
    {
        const Result result = RenderProgram::Run(
            folder.GetPath(), {"--midi", Example("/melody.mid"), "--set", "Width=0.3", "--set",
                               "Wet=-3 dB", "--rate", "8000", "--block", block, "a.wav"});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return WavSound::Read(folder / "a.wav");
    };
    const WavSound reference = render("512");
    for (const char* const block : {"1", "7", "4096", "16777216"})
    {
        const WavSound sound = render(block);
        ASSERT_EQ(sound.GetFrames(), reference.GetFrames());
        for (std::size_t channel = 0; channel < 2; ++channel)
            for (std::size_t i = 0; i < sound.GetFrames(); ++i)
                ASSERT_NEAR(sound.channels[channel][i], reference.channels[channel][i], 1e-6)
                    << block << ", " << i;
    }
}

TEST(RenderMidi, TakesTheLengthOfTheFileAndOneSecond)
{
    const TemporaryFolder folder;
    folder.Write("a.mid", File({0, 0x90, 60, 100}, 96));
    RenderProgram::Run(folder.GetPath(), {"--midi", "a.mid", "a.wav"});
    EXPECT_EQ(WavSound::Read(folder / "a.wav").GetFrames(), 72000u);
    RenderProgram::Run(folder.GetPath(), {"--midi", "a.mid", "--seconds", "0.25", "a.wav"});
    EXPECT_EQ(WavSound::Read(folder / "a.wav").GetFrames(), 12000u);
}

/// What stands behind @p start in @p text, as a number.
double NumberBehind(const std::string& text, const std::string& start)
{
    const std::size_t at = text.find(start);
    return at == std::string::npos ? std::nan("") : std::stod(text.substr(at + start.size()));
}

TEST(RenderMidi, MeasuresEveryNoteOfTheExamples)
{
    const TemporaryFolder folder;
    struct Case
    {
        std::string file;
        const char* count;
    };
    for (const Case& row : {Case{Example("/melody.mid"), "29 of 29"},
                            Case{Example("/chromatic-scale.mid"), "37 of 37"}})
        for (const char* const setting : {"Width=0", "Width=-2.5", "Cents=44", "Frequency=777 Hz"})
        {
            const Result result = RenderProgram::Run(
                folder.GetPath(), {"--midi", row.file, "--set", setting, "a.wav"});
            EXPECT_EQ(result.exitCode, 0) << result.errors;
            EXPECT_LT(NumberBehind(result.output, "Worst error: "), 0.001)
                << row.file << ' ' << setting << '\n'
                << result.output;
            EXPECT_NE(result.output.find(row.count), std::string::npos) << result.output;
        }
}

TEST(RenderMidi, ShowsWhatItPlays)
{
    const TemporaryFolder folder;
    // A held note, then two at half a second, of which the first has no time to sound, the other
    // with the wheel all the way down for the longer part.
    folder.Write("a.mid", File({96, 0x90, 60, 1, 0, 0x92, 69, 1, 10, 0xE5, 0, 0}, 96));
    const Result result =
        RenderProgram::Run(folder.GetPath(), {"--note", "57", "--midi", "a.mid", "a.wav"});
    const std::string table = result.output.substr(result.output.find("\n\n") + 2);
    EXPECT_EQ(table, " Start (s)  Note        Expected (Hz) Measured (Hz) Error (cent)\n"
                     "    0.0000    57  A3         220.0000      220.0000      0.00000\n"
                     "    0.5000    60  C4         261.6256             -            -\n"
                     "    0.5000    69  A4         391.9954      391.9954      0.00000\n"
                     "Worst error: 0.00000 cent (" +
                         table.substr(table.rfind('(') + 1));
}

TEST(RenderMidi, TellsThatAFileHasNoNotes)
{
    const TemporaryFolder folder;
    folder.Write("a.mid", File({}));
    const Result result = RenderProgram::Run(folder.GetPath(), {"--midi", "a.mid", "a.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("\nNo notes.\n"), std::string::npos) << result.output;
}

} // namespace
