// tonvale-render as a whole: states that it loads and saves, and the cycle that it shows.

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/xml/MXMLItem.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/WavSound.h"

namespace
{

void RunWell(const TemporaryFolder& folder, const std::vector<std::string>& arguments)
{
    const RenderProgram::Result result = RenderProgram::Run(folder.GetPath(), arguments);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

TEST(RenderState, ComesBackFromAFilePlainOrCompressed)
{
    const TemporaryFolder folder;
    RunWell(folder, {"--set", "Semitones=3", "--set", "Wet=-12 dB", "--save-state", "a.xml"});
    MXMLItem saved("");
    MStdFileStream file(MString::FromUTF8((folder / "a.xml").string()),
                        MStdFileStream::Opening::Existing);
    saved.Load(file);
    EXPECT_EQ(saved.GetName(), "settings");
    EXPECT_EQ(saved.GetAttribute("parameterSemitones", ""), "3");
    EXPECT_NEAR(saved.GetAttribute("parameterWet", "").ToDouble(), std::pow(10.0, -12.0 / 40.0),
                1e-12);

    MMemoryStream packed;
    saved.SaveCompressed(packed, "utf-16");
    packed.Seek(0, MStream::FromStart);
    const auto bytes = packed.GetData();
    folder.Write("packed", {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    for (const char* const source : {"a.xml", "packed"})
    {
        RunWell(folder, {"--state", source, "--save-state", "b.xml"});
        EXPECT_EQ(folder.Read("b.xml"), folder.Read("a.xml")) << source;
    }
    EXPECT_EQ(folder.List(), "a.xml b.xml packed");
}

TEST(RenderState, IsSetBeforeAllElseAndHeard)
{
    const TemporaryFolder folder;
    RunWell(folder, {"--set", "Octaves=1", "--set", "Wet=-20 dB", "--save-state", "a.xml"});
    const auto result = RenderProgram::Run(folder.GetPath(),
                                           {"--set", "Octaves=2", "--state", "a.xml", "--list",
                                            "--table", "t.wav", "--save-state", "a.xml", "a.wav"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_NE(result.output.find("\nOctaves               +2 "), std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("\n\na.wav: 48000 Hz"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Peak level: -20.0 dBFS\n"), std::string::npos) << result.output;
    EXPECT_EQ(folder.List(), "a.wav a.xml t.wav");
}

TEST(RenderState, ShowsOneCycle)
{
    const TemporaryFolder folder;
    struct Case
    {
        std::vector<std::string> arguments;
        double (*sample)(double phase);
    };
    const Case cases[] = {
        {{}, [](double phase) { return std::sin(2.0 * std::numbers::pi * phase); }},
        {{"--shape", "Saw"}, [](double phase) { return 1.0 - phase; }},
        // The later one counts, whichever option it has.
        {{"--shape", "Noise", "--set", "Shape=Full saw"},
         [](double phase) { return 1.0 - 2.0 * phase; }},
        {{"--set01", "Shape=0", "--shape", "50% Saw, 50% Full saw"},
         [](double phase) { return 1.0 - 1.5 * phase; }},
    };
    for (Case row : cases)
    {
        for (const char* const argument : {"--table", "t.wav", "--rate", "96000"})
            row.arguments.emplace_back(argument);
        RunWell(folder, row.arguments);
        const WavSound sound = WavSound::Read(folder / "t.wav");
        EXPECT_EQ(sound.rate, 96000);
        ASSERT_EQ(sound.channels.size(), 1u);
        ASSERT_EQ(sound.GetFrames(), 8192u);
        for (std::size_t i = 0; i < 8192; ++i)
            ASSERT_NEAR(sound.channels[0][i], row.sample(static_cast<double>(i) / 8192.0), 1e-6)
                << row.arguments[1] << ", " << i;
    }
}

} // namespace
