// tonvale-render as a whole: one clear line and no trace when something is wrong.

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/Signals.h"
#include "tests/tools/TestMidiFile.h"
#include "tests/tools/WavSound.h"

namespace
{

using Result = RenderProgram::Result;

void ExpectRefusal(const Result& result, const std::string& complaint, const std::string& what)
{
    EXPECT_EQ(result.exitCode, 2) << what;
    EXPECT_EQ(result.output, "") << what;
    EXPECT_EQ(result.errors.find("tonvale-render: "), 0u) << what << ": " << result.errors;
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << what << ": " << result.errors;
    EXPECT_NE(result.errors.find(complaint), std::string::npos) << what << ": " << result.errors;
}

TEST(RenderRefusal, TellsWhatIsWrongWithTheCommandLine)
{
    struct Case
    {
        std::vector<std::string> arguments; ///< the file to write follows
        const char* complaint;              ///< part of it
    };
    const Case cases[] = {
        {{"--volume", "1"}, "--volume"},
        {{"-x"}, "-x"},
        {{"other.wav"}, "not expected"},
        {{"--note", "128"}, "--note 128: it is not a whole number from 0 to 127"},
        {{"--note", "-1"}, "--note -1"},
        {{"--note", "A4"}, "--note A4"},
        {{"--note", "60.5"}, "--note 60.5"},
        {{"--rate", "100"}, "--rate 100: it is not a whole number from 101 to 6144000"},
        {{"--rate", "6144001"}, "--rate 6144001"},
        {{"--rate", "48k"}, "--rate 48k"},
        {{"--channels", "0"}, "--channels 0"},
        {{"--channels", "9"}, "--channels 9: it is not a whole number from 1 to 8"},
        {{"--block", "0"}, "--block 0"},
        {{"--block", "16777217"}, "--block 16777217"},
        {{"--block", "99999999999999999999"}, "--block"},
        {{"--seconds", "0"}, "--seconds 0: it is not a number above 0"},
        {{"--seconds", "-1"}, "--seconds -1"},
        {{"--seconds", "nan"}, "--seconds nan"},
        {{"--seconds", "86401"}, "--seconds 86401"},
        {{"--seconds", "86400"}, "4 GiB"},
        {{"--set", "Frequency"}, "NAME=VALUE"},
        {{"--set", "=1"}, "NAME=VALUE"},
        {{"--set", "Wet="}, "NAME=VALUE"},
        {{"--set", "Loudness=1"}, "\"Loudness\""},
        {{"--set", "Frequency=25 kHz"}, "--set Frequency=25 kHz"},
        {{"--set", "Octaves=1.5"}, "whole numbers"},
        {{"--set", "Cents=\n"}, "--set Cents=?: it is no value"},
        {{"--set01", "Wet=1.5"}, "range of 0 to 1"},
        {{"--set01", "Wet=loud"}, "not a number"},
        {{"--midi", "missing.mid"}, "cannot play \"missing.mid\": No such file"},
        {{"--midi", "."}, "it is a folder"},
        {{"--midi", "in.wav"}, "not a MIDI file"},
        {{"--midi", "cut.mid"}, "track 1 should have"},
        {{"--midi", "endless.mid"}, "--seconds"},
        {{"--input", "missing.wav"}, "cannot read \"missing.wav\": No such file"},
        {{"--input", "cut.mid"}, "not a WAV file"},
        {{"--input", "in.wav", "--rate", "44100"}, "is 48000 Hz, not 44100 Hz"},
        {{"--input", "in.wav", "--channels", "1"}, "--channels 2"},
        {{"--input", "slow.wav"}, "sample rate, 100 Hz"},
        {{"--input", "empty.wav"}, "it is empty"},
        {{"--shape", "Square"}, "--shape Square: it is no value; one looks like"},
        {{"--state", "missing.xml"}, "cannot load \"missing.xml\": No such file"},
        {{"--state", "in.wav"}, "cannot load \"in.wav\": "},
        {{"--state", "preset.xml"}, "its root is \"preset\", not \"settings\""},
        {{"--state", "points.xml"}, "Too many points in a curve."},
        {{"--save-state", "missing/a.xml"}, "cannot write \"missing/a.xml\": No such file"},
        {{"--save-state", "./out.wav"}, "two things cannot be written to \"out.wav\""},
        {{"--table", "."}, "it is a folder"},
        {{"--plugin", "missing.so"}, "cannot load \"missing.so\": No such file"},
        {{"--plugin", "in.wav"}, "cannot load \"in.wav\": "},
        {{"--plugin", "a.vst3", "--in-process"}, "exclude each other"},
        {{"--plugin", "a.vst3", "--stats"}, "--stats: hosts cannot do that; leave out --plugin"},
        {{"--plugin", "a.vst3", "--no-hq"}, "--no-hq: hosts cannot do that"},
        {{"--channel-mode", "Middle"},
         "there are \"Left + Right\", \"Left\", \"Right\", \"Mono\", \"Stereo\", \"Mono + "
         "Stereo\", "
         "\"Left + Right (neg)\", \"Surround\""},
        {{"--channel-mode", "Surround"}, "it takes 3 --channels or more"},
        {{"--upsampling", "0"}, "--upsampling 0: it is not a whole number from 1 to 16"},
        {{"--upsampling", "17"}, "from 1 to 16"},
        {{"--upsampling", "9", "--rate", "768000"}, "at 768000 Hz it can be 8 at most"},
        {{"--hq", "--no-hq"}, "exclude each other"},
        {{"--bypass", "--no-bypass"}, "exclude each other"},
        {{"--tempo", "0"}, "--tempo 0: it is not a number above 0, at most 1000"},
        {{"--tempo", "1001"}, "at most 1000"},
        {{"--automate", "Wet"}, "NAME:T=V"},
        {{"--automate", "Wet:"}, "NAME:T=V"},
        {{"--automate", "Loud:0=1"}, "there is no parameter \"Loud\"; there are Dry, "},
        {{"--automate", "Wet:1"}, "--automate Wet:1: \"1\" is not of the form T=V"},
        {{"--automate", "Wet:0=1,"}, "\"\" is not of the form T=V"},
        {{"--automate", "Wet:0=1,1=x"}, "the value x is not a number"},
        {{"--automate", "Wet:0=1,0=0"}, "the times do not rise"},
        {{"--automate", "Wet:-1=1"}, "the time -1 is outside the range of 0 to 86400"},
        {{"--automate", "Wet:0=1.01"}, "the value 1.01 is outside the range of 0 to 1"},
    };
    const TemporaryFolder folder;
    WavSound{48000, {MakeSine(100, 440.0, 48000.0), MakeSine(100, 440.0, 48000.0)}}.Write(folder /
                                                                                          "in.wav");
    WavSound{100, {std::vector<float>(10)}}.Write(folder / "slow.wav");
    WavSound{48000, {{}}}.Write(folder / "empty.wav");
    testmidi::Bytes cut = testmidi::File({0, 0x90, 60, 100});
    cut.pop_back();
    folder.Write("cut.mid", cut);
    folder.Write("endless.mid", testmidi::File({0xFF, 0xFF, 0xFF, 0x7F, 0x90, 1, 1}));
    const auto write = [&folder](const char* name, const std::string& text)
    { folder.Write(name, std::vector<std::uint8_t>(text.begin(), text.end())); };
    write("preset.xml", "<preset/>");
    std::string points = "<settings><Shape><Envelope>";
    for (int i = 0; i <= 65536; ++i)
        points += "<Point/>";
    write("points.xml", points);
    const std::string before = folder.List();

    for (Case row : cases)
    {
        const std::string what = row.arguments[0] + " " + row.arguments.back();
        row.arguments.emplace_back("out.wav");
        ExpectRefusal(RenderProgram::Run(folder.GetPath(), row.arguments), row.complaint, what);
        EXPECT_EQ(folder.List(), before) << what;
    }
    ExpectRefusal(RenderProgram::Run(folder.GetPath(), {}), "is missing", "no arguments");
    ExpectRefusal(RenderProgram::Run(folder.GetPath(), {"a.wav", "--note"}), "--note", "no value");
    ExpectRefusal(RenderProgram::Run(folder.GetPath(), {"missing/a.wav"}),
                  "cannot write \"missing/a.wav\": No such file", "no folder");
    ExpectRefusal(RenderProgram::Run(folder.GetPath(), {"."}), "it is a folder", "a folder");
    EXPECT_EQ(folder.List(), before);
}

TEST(RenderRefusal, KeepsAnOlderFileWhenItFailsHalfWay)
{
    const TemporaryFolder folder;
    WavSound input{48000, {MakeSine(200000, 440.0, 48000.0)}};
    input.channels[0][199999] = std::numeric_limits<float>::quiet_NaN();
    input.Write(folder / "in.wav");
    const std::vector<std::uint8_t> older = {'o', 'l', 'd'};
    folder.Write("out.wav", older);

    ExpectRefusal(RenderProgram::Run(folder.GetPath(), {"--input", "in.wav", "out.wav"}),
                  "samples that are no numbers", "bad input");
    EXPECT_EQ(folder.Read("out.wav"), older);
    constexpr std::string_view Steps =
        R"(<settings><Shape><Step StepItemCount="32"/></Shape></settings>)"; // long when saved
    folder.Write("steps.xml", std::vector<std::uint8_t>(Steps.begin(), Steps.end()));
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"out.wav"},
                                               {"--table", "out.wav"},
                                               {"--save-state", "out.wav", "--state", "steps.xml"}})
    {
        ExpectRefusal(RenderProgram::RunLimited(folder.GetPath(), 1, arguments), "File too large",
                      "full disk, " + arguments[0]);
        EXPECT_EQ(folder.Read("out.wav"), older) << arguments[0];
    }
    EXPECT_EQ(folder.List(), "in.wav out.wav steps.xml");
}

} // namespace
