// tonvale-render as a whole: states that it loads and saves, and the cycle that it shows.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/xml/MXMLItem.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/WavSound.h"
#include "tools/render/Text.h"

namespace
{

const std::string Example = std::string(TONVALE_EXAMPLES) + "/organ.xml";

void RunWell(const TemporaryFolder& folder, const std::vector<std::string>& arguments)
{
    const RenderProgram::Result result = RenderProgram::Run(folder.GetPath(), arguments);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

void Load(const std::filesystem::path& path, MXMLItem& root)
{
    MStdFileStream file(MString::FromUTF8(path.string()), MStdFileStream::Opening::Existing);
    root.Load(file);
}

/// Whether all of @p given is in @p saved, which may hold more and leaves out what is 0.
void ExpectAllOf(const MXMLItem& given, const MXMLItem& saved)
{
    for (const auto& [name, value] : given.GetAttributes())
    {
        const MString kept = saved.GetAttribute(name, "0");
        if (const auto number = text::ReadNumber(value.ToUTF8()))
            EXPECT_NEAR(kept.ToDouble(), *number, 1e-11) << name.ToUTF8();
        else
            EXPECT_EQ(kept, value) << name.ToUTF8();
    }
    auto next = saved.GetSubItems().begin();
    for (const auto& item : given.GetSubItems())
    {
        next = std::find_if(next, saved.GetSubItems().end(),
                            [&item](const auto& candidate)
                            { return candidate->GetName() == item->GetName(); });
        ASSERT_NE(next, saved.GetSubItems().end()) << item->GetName().ToUTF8();
        ExpectAllOf(*item, **next++);
    }
}

TEST(RenderState, ComesBackFromAFilePlainOrCompressed)
{
    const TemporaryFolder folder;
    RunWell(folder, {"--state", Example, "--set", "Semitones=3", "--set", "Wet=-12 dB", "--shape",
                     "30% Sine, 70% Harmonics", "--save-state", "a.xml"});
    MXMLItem saved("");
    Load(folder / "a.xml", saved);
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
    EXPECT_NE(result.output.find("\nOctaves" + std::string(36, ' ') + "+2 "), std::string::npos)
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

TEST(RenderState, TakesOverAllOfTheExample)
{
    const TemporaryFolder folder;
    RunWell(folder, {"--state", Example, "--save-state", "a.xml", "--table", "t.wav"});
    MXMLItem given(""), saved("");
    Load(Example, given);
    Load(folder / "a.xml", saved);
    ExpectAllOf(given, saved);

    const std::vector<float> cycle = WavSound::Read(folder / "t.wav").channels.at(0);
    EXPECT_NEAR(std::accumulate(cycle.begin(), cycle.end(), 0.0) / 8192.0, 0.0, 0.002);
}

} // namespace
