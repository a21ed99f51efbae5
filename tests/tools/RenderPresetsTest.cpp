// tonvale-render as a whole: presets that it lists, plays, installs, and morphs between.

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/EnvironmentVariable.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tests/tools/WavSound.h"

namespace
{

// Two presets of one parameter each, and one whose slots A to D have levels of their own.
constexpr std::string_view Presets = R"(<presets>
<preset name="Quiet" parameterWet="0.1"/>
<Directory Name="Notes"><preset name="An octave up" parameterOctaves="1"/></Directory>
<Directory Name="Notes/More"><preset name="Four" parameterWet="0"><Preset1 parameterWet="0.8"/>
<Preset2 parameterWet="0.4"/><Preset3 parameterWet="1"/></preset></Directory>
<Directory Name="Broken"><preset name="No digits" compressed="1">xyz</preset></Directory></presets>)";

class RenderPresets : public testing::Test
{
protected:
    RenderPresets() { Write("bank.xml", Presets); }

    void Write(const std::string& name, std::string_view text) const
    {
        folder.Write(name, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
    RenderProgram::Result Run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--presets-file", "bank.xml"});
        return RenderProgram::Run(folder.GetPath(), arguments);
    }
    /// The value of @p parameter, as shown, with @p arguments.
    std::string Show(const std::string& parameter, std::vector<std::string> arguments) const
    {
        arguments.emplace_back("--list");
        const RenderProgram::Result result = Run(std::move(arguments));
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        const std::size_t begin = result.output.find_first_not_of(
            ' ', result.output.find('\n' + parameter + ' ') + parameter.size() + 1);
        return result.output.substr(begin, result.output.find("  ", begin) - begin);
    }

    const TemporaryFolder folder;
};

TEST_F(RenderPresets, AreListedAndLoadedInAModuleAndWithout)
{
    const RenderProgram::Result list = Run({"--presets"});
    EXPECT_EQ(list.exitCode, 0) << list.errors;
    EXPECT_EQ(list.output, "Quiet\nNotes/An octave up\nNotes/More/Four\nBroken/No digits\n");
    for (const char* const way : {"--in-process", "--stats", "--tempo=120"})
    {
        EXPECT_EQ(Show("Wet", {"--preset", "Quiet", way}), "-40.0 dB");
        EXPECT_EQ(Show("Octaves", {"--preset", "notes/an OCTAVE up", way}), "+1");
        EXPECT_EQ(Show("Octaves", {"--preset", "Notes/An octave up", "--set", "Octaves=2", way}),
                  "+2");
    }
}

TEST_F(RenderPresets, MorphTheSlotsAfterTheSettings)
{
    // Wet is the square of what is blended, and its gain the square of that.
    struct Case
    {
        const char* place;
        double root; ///< of Wet, blended by hand; the slots have 0, sqrt(0.8), sqrt(0.4), 1
    };
    const Case cases[] = {{"0,0", 0.0},
                          {"1,0", std::sqrt(0.8)},
                          {"0,1", std::sqrt(0.4)},
                          {"1,1", 1.0},
                          {"0.5,0", std::sqrt(0.8) / 2.0},
                          {"0.5,0.5", (std::sqrt(0.8) + std::sqrt(0.4) + 1.0) / 4.0}};
    for (const auto& [place, root] : cases)
        for (const char* const way : {"--in-process", "--tempo=120"})
        {
            const auto result = Run({"--preset", "Notes/More/Four", "--morph", place, "--seconds",
                                     "0.5", way, "a.wav"});
            ASSERT_EQ(result.exitCode, 0) << result.errors;
            const WavSound sound = WavSound::Read(folder / "a.wav");
            EXPECT_NEAR(std::ranges::max(sound.channels.at(0)), std::pow(root, 4.0), 1e-3) << place;
        }
    EXPECT_EQ(Show("Wet", {"--preset", "Notes/More/Four", "--set01", "Wet=1", "--morph", "0,0"}),
              "0.00 dB");
}

TEST_F(RenderPresets, WalkBetweenTheSlotsInTime)
{
    for (const char* const way : {"--in-process", "--tempo=120"})
    {
        const auto result =
            Run({"--preset", "Notes/More/Four", "--morph-path", "0.5=1:0,1.5=1:1,2=0:0",
                 "--seconds", "2.5", "--block", "240", way, "a.wav"});
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        const WavSound sound = WavSound::Read(folder / "a.wav");
        const auto peakAt = [&sound](double seconds)
        {
            const auto begin = sound.channels.at(0).begin() + std::lround(seconds * sound.rate);
            return double{*std::max_element(begin, begin + sound.rate / 200)};
        };
        const double b = std::sqrt(0.8);
        EXPECT_EQ(peakAt(0.25), 0.0) << way;
        EXPECT_NEAR(peakAt(0.55), std::pow(b + (1.0 - b) * 0.05, 4.0), 0.01) << way;
        EXPECT_NEAR(peakAt(1.0), std::pow((b + 1.0) / 2.0, 4.0), 0.01) << way;
        EXPECT_NEAR(peakAt(1.75), std::pow((0.0 + b + std::sqrt(0.4) + 1.0) / 4.0, 4.0), 0.01)
            << way;
        EXPECT_EQ(peakAt(2.25), 0.0) << way;
    }
}

TEST_F(RenderPresets, TellWhatIsWrong)
{
    struct Case
    {
        std::vector<std::string> arguments;
        const char* complaint;
    };
    const Case cases[] = {
        {{"--preset", "Quite", "a.wav"},
         "there is no preset \"Quite\" in \"bank.xml\"; the nearest are \"Quiet\", "},
        {{"--preset", "four", "a.wav"}, "the nearest are \"Notes/More/Four\", "},
        {{"--preset", "", "a.wav"}, "--presets lists all"},
        {{"--preset", "Broken/No digits", "a.wav"}, "cannot load preset \"Broken/No digits\" of"},
        {{"--preset", "Quiet", "--state", "bank.xml", "a.wav"}, "exclude each other"},
        {{"--presets", "a.wav"}, "write no sound"},
        {{"--install-presets", "missing.xml"}, "cannot read presets from \"missing.xml\""},
        {{"--install-presets", "empty.xml"}, "it is empty"},
        {{"--morph", "1", "a.wav"}, "--morph 1: \"1\" is not of the form X,Y"},
        {{"--morph", "1,1.5", "a.wav"}, "the place 1.5 is outside the range of 0 to 1"},
        {{"--morph", "1,nan", "a.wav"}, "the place nan is not a number"},
        {{"--morph-path", "0=0:0,1", "a.wav"}, "\"1\" is not of the form T=X:Y"},
        {{"--morph-path", "1=0:0,1=1:1", "a.wav"}, "the times do not rise"},
        {{"--morph-path", "1=0,1", "a.wav"}, "\"0\" is not of the form X:Y"},
    };
    Write("empty.xml", "");
    for (const auto& [arguments, complaint] : cases)
    {
        const RenderProgram::Result result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2) << complaint;
        EXPECT_NE(result.errors.find(complaint), std::string::npos) << result.errors;
        EXPECT_EQ(result.output, "") << complaint;
    }
    const auto missing = RenderProgram::Run(folder.GetPath(), {"--presets", "--presets-file", "-"});
    EXPECT_NE(missing.errors.find("cannot read presets from \"-\""), std::string::npos);
    EXPECT_EQ(folder.List(), "bank.xml empty.xml");
}

TEST_F(RenderPresets, JoinThoseOfTheUser)
{
    const EnvironmentVariable data("QUILLFERN_DATA", folder.GetPath().c_str());
    const auto run = [this](const std::vector<std::string>& arguments)
    { return RenderProgram::Run(folder.GetPath(), arguments); };
    const std::string file = "Quillfern/Tonvale/Tonvalepresets.xml";

    // A file that cannot be read is no reason to begin a new one.
    std::filesystem::create_directories(folder / "Quillfern/Tonvale");
    for (const char* const damaged : {"<presets><preset name=\"a\"", "<other/>"})
    {
        Write(file, damaged);
        const auto refused = run({"--install-presets", "bank.xml"});
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_NE(refused.errors.find("cannot add presets to"), std::string::npos);
        const auto bytes = folder.Read(file);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), damaged);
    }

    Write(file, R"(<presets><Directory Name="Notes"><preset name="Mine"/></Directory></presets>)");
    const auto added = run({"--install-presets", "bank.xml"});
    EXPECT_EQ(added.exitCode, 0) << added.errors;
    EXPECT_NE(added.output.find("\"Notes\" is there already\n"), std::string::npos);
    EXPECT_NE(added.output.find("\"Notes/More\": added 1 preset to"), std::string::npos);
    EXPECT_EQ(run({"--presets"}).output, "Notes/Mine\nNotes/More/Four\nBroken/No digits\n");
}

} // namespace
