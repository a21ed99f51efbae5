// The built modules, driven as hosts drive them, against the same plugin in process.

#include <cmath>
#include <fstream>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/TemporaryFolder.h"
#include "tests/tools/RenderProgram.h"
#include "tools/hosting/HostedVst2.h"
#include "tools/hosting/HostedVst3.h"
#include "tools/hosting/LoadPlugin.h"
#include "tools/hosting/PluginModule.h"
#include "tools/render/InProcessPlugin.h"

namespace
{

using Arguments = std::vector<std::string>;

const std::string Example = std::string(TONVALE_EXAMPLES) + "/organ.xml";

/// See BrokenPlugin.cpp.
std::string Broken(int fault)
{
    return TONVALE_BROKEN_PLUGINS + std::to_string(fault) + ".so";
}

std::vector<std::unique_ptr<HostedPlugin>> MakeAll()
{
    std::vector<std::unique_ptr<HostedPlugin>> plugins;
    plugins.push_back(std::make_unique<InProcessPlugin>());
    for (const char* const path : {TONVALE_VST2_MODULE, TONVALE_VST3_MODULE})
        plugins.push_back(LoadPlugin(path));
    return plugins;
}

TEST(Hosting, GivesTheSameBitsThroughEachStandard)
{
    const std::string melody = std::string(TONVALE_EXAMPLES) + "/melody.mid"; // bends its last note
    const Arguments cases[] = {
        {"--midi", melody, "--block", "333"},
        {"--state", Example, "--note", "50", "--seconds", "0.5"},
        {"--automate", "Wet:0=0.25,0.1=0.75", "--automate", "Pitch:0.2=0.625", "--seconds", "0.4"},
        {"--automate", "Cents:0.1=0.25", "--tempo", "90", "--block", "16", "--seconds", "0.3"},
        {"--channels", "1", "--rate", "44100", "--set01", "Width=0.75", "--seconds", "0.2"},
    };
    const TemporaryFolder folder;
    const auto play = [&folder](Arguments line, const Arguments& plugin)
    {
        line.insert(line.end(), plugin.begin(), plugin.end());
        line.emplace_back("a.wav");
        const auto result = RenderProgram::Run(folder.GetPath(), line);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return std::pair(folder.Read("a.wav"), result.output.substr(0, result.output.find('\n')));
    };
    for (const Arguments& row : cases)
    {
        const auto [sound, origin] = play(row, {"--in-process"});
        EXPECT_EQ(origin, "Tonvale 5.03 in process");
        const auto [vst2Sound, vst2Origin] = play(row, {"--plugin", TONVALE_VST2_MODULE});
        EXPECT_EQ(vst2Origin, "Tonvale 503 as VST2");
        const auto [vst3Sound, vst3Origin] = play(row, {}); // ours unless told
        EXPECT_EQ(vst3Origin, "Tonvale 5.03 as VST3");
        EXPECT_TRUE(vst2Sound == sound) << row[0] << ' ' << row[1];
        EXPECT_TRUE(vst3Sound == sound) << row[0] << ' ' << row[1];
    }
}

TEST(Hosting, MovesStatesBetweenStandards)
{
    const auto plugins = MakeAll();
    for (const auto& from : plugins)
        for (const auto& to : plugins)
        {
            const int count = from->GetParameterCount();
            ASSERT_EQ(to->GetParameterCount(), count);
            for (int i = 0; i < count; ++i)
            {
                // Of whole numbers the ends alone are hit for certain.
                const bool isWhole = plugins[0]->CountSteps(i) > 0;
                const bool isFixed = plugins[0]->GetTextAt(i, 0.0) == plugins[0]->GetTextAt(i, 1.0);
                from->Set01(i, isWhole ? 1.0 : isFixed ? 0.5 : 0.125 + 0.75 * i / count);
                to->Set01(i, isFixed ? 0.5 : 0.0);
            }
            to->LoadState(from->SaveState());
            for (int i = 0; i < count; ++i)
                EXPECT_NEAR(to->Get01(i), from->Get01(i), 1e-7)
                    << from->GetFormat() << " to " << to->GetFormat() << ": "
                    << to->GetParameterName(i);
            EXPECT_EQ(to->SaveState(), from->SaveState());
        }
}

TEST(Hosting, RefusesForeignStatesAndKeepsItsOwn)
{
    const std::vector<std::byte> noise(100, std::byte{0x5A});
    for (const auto& plugin : MakeAll())
    {
        plugin->Set01(1, 0.5);
        const auto before = plugin->SaveState();
        EXPECT_THROW(plugin->LoadState(noise), MException) << plugin->GetFormat();
        EXPECT_THROW(plugin->LoadState({}), MException) << plugin->GetFormat();
        EXPECT_EQ(plugin->SaveState(), before) << plugin->GetFormat();
    }
}

TEST(Hosting, TellsAlikeWhoPlaysAndWhatItShows)
{
    const auto plugins = MakeAll();
    for (const auto& plugin : plugins)
    {
        EXPECT_EQ(plugin->GetName(), "Tonvale");
        EXPECT_EQ(plugin->GetMaker(), "Quillfern");
        for (int i = 0; i < plugin->GetParameterCount(); ++i)
            for (const double value01 : {0.0, 0.375, 1.0})
            {
                std::string expected = plugins[0]->GetTextAt(i, value01);
                if (plugin->CutsTexts())
                    expected.resize(std::min<std::size_t>(expected.size(), 7));
                EXPECT_EQ(plugin->GetTextAt(i, value01), expected) << plugin->GetFormat() << i;
            }
    }
}

TEST(Hosting, LeavesTheModuleWithTheLastInstance)
{
    const auto pluginModule = PluginModule::Open(TONVALE_VST3_MODULE);
    auto first = MakePlugin(pluginModule);
    auto second = std::make_unique<HostedVst3>(pluginModule);
    EXPECT_EQ(pluginModule.use_count(), 3);
    first.reset();
    second->Start(2, 48000, 64);
    EXPECT_GT(second->GetHandler().CountReferences(), 0u);
    second.reset();
    EXPECT_EQ(pluginModule.use_count(), 1);
}

TEST(Hosting, TellsWhatIsNoPlugin)
{
    const TemporaryFolder folder;
    const auto write = [&](const std::filesystem::path& name, std::string_view text)
    {
        std::filesystem::create_directories((folder / name.string()).parent_path());
        std::ofstream(folder / name.string()) << text;
    };
    write("text.so", std::string(1000, 'x'));
    write("empty.so", "");
    write("other.vst3/Contents/x86_64-linux/another.so", "");
    struct Case
    {
        std::string path;
        const char* complaint; ///< part of it
    };
    const Case cases[] = {
        {folder / "missing.vst3", "missing.vst3\": No such file or directory"},
        {folder / "text.so", "text.so\": invalid ELF header"},
        {folder / "empty.so", "empty.so\": file too short"},
        {folder / "other.vst3", "it is a folder without \"Contents/"},
        {folder.GetPath(), "it is a folder without"},
        {Broken(6), "it is neither a VST2 nor a VST3 plugin"},
        {Broken(1), "the plugin refuses to be made"},
        {Broken(2), "what it makes is no VST2 effect"},
        {Broken(3), "it has no \"ModuleEntry\" and \"ModuleExit\""},
        {Broken(4), "the plugin refuses to be opened"},
        {Broken(5), "the plugin has no factory"},
    };
    for (const Case& row : cases)
        try
        {
            LoadPlugin(row.path);
            ADD_FAILURE() << row.path;
        }
        catch (const MException& failure)
        {
            EXPECT_NE(failure.text.ToUTF8().find(row.complaint), std::string::npos)
                << failure.text.ToUTF8();
        }
}

} // namespace
