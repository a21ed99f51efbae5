#include "foundation/modules/SystemPaths.h"

#include <list>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/EnvironmentVariable.h"
#include "tests/TemporaryFolder.h"

namespace
{

using enum systempaths::Kind;

/// "~" in names of folders is a temporary one.
struct Case
{
    const char* what;
    const char* variable;
    const char* value;
    systempaths::Kind kind;
    const char* path;
};

constexpr Case Cases[] = {
    {"default", "TMPDIR", nullptr, UserData, "~/.local/share"},
    {"of the desktop", "XDG_DATA_HOME", "~/data", UserData, "~/data"},
    {"not absolute", "XDG_DATA_HOME", "data", UserData, "~/.local/share"},
    {"empty", "XDG_DATA_HOME", "", UserData, "~/.local/share"},
    {"ours", "QUILLFERN_DATA", "~/ours", UserData, "~/ours"},
    {"ours, not absolute", "QUILLFERN_DATA", "ours", UserData, "~/.local/share"},
    {"default", "TMPDIR", nullptr, Data, "/usr/local/share"},
    {"the first absolute one", "XDG_DATA_DIRS", "a::~/b:~/c", Data, "~/b"},
    {"in Data", "XDG_DATA_DIRS", "~/b", StartMenu, "~/b/applications"},
    {"in UserData", "QUILLFERN_DATA", "~/ours", UserStartMenuPrograms, "~/ours/applications"},
    {"shared", "XDG_CONFIG_HOME", "~/settings", Documents, "~/Shared"},
    {"no settings, no share", "XDG_CONFIG_HOME", "~/none", Documents, "~"},
    {"named", "XDG_CONFIG_HOME", "~/settings", Desktop, "/screen"},
    {"not named", "XDG_CONFIG_HOME", "~/settings", UserDocuments, "~"},
    {"not named", "XDG_CONFIG_HOME", "~/none", UserDesktop, "~/Desktop"},
    {"with fonts", "XDG_DATA_DIRS", "~/none:~", Fonts, "~/fonts"},
    {"named", "TMPDIR", "~/fonts", Temp, "~/fonts"},
    {"a folder that is not there", "TMPDIR", "~/none", Temp, "/tmp"},
};

std::string InHome(const TemporaryFolder& home, std::string text)
{
    for (std::size_t at = 0; (at = text.find('~', at)) != std::string::npos;)
        text.replace(at, 1, home.GetPath().string());
    return text;
}

class SystemPaths : public testing::Test
{
protected:
    SystemPaths()
    {
        for (const char* name :
             {"QUILLFERN_DATA", "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "TMPDIR"})
            variables.emplace_back(name, nullptr);
        variables.emplace_back("HOME", home.GetPath().c_str());
    }

    TemporaryFolder home;
    std::list<EnvironmentVariable> variables;
};

TEST_F(SystemPaths, FollowTheEnvironment)
{
    std::filesystem::create_directory(home / "fonts");
    std::filesystem::create_directory(home / "settings");
    constexpr std::string_view Settings = "XDG_DESKTOP_DIR=\"/screen\"\n"
                                          "XDG_PUBLICSHARE_DIR=\"$HOME/Shared\"\n";
    home.Write("settings/user-dirs.dirs",
               std::span(reinterpret_cast<const std::uint8_t*>(Settings.data()), Settings.size()));
    for (const Case& row : Cases)
    {
        const std::string value = InHome(home, row.value != nullptr ? row.value : "");
        const EnvironmentVariable variable(row.variable, value.c_str());
        EXPECT_EQ(systempaths::Get(row.kind).ToUTF8(), InHome(home, row.path))
            << row.variable << " " << row.what;
    }
}

TEST_F(SystemPaths, NameTheFoldersOfFontsTheUsersFirst)
{
    const auto list = []
    {
        std::string names;
        for (const MString& folder : systempaths::GetFontFolders())
            names += folder.ToUTF8() + " ";
        return names;
    };
    EXPECT_EQ(list(), InHome(home, "~/.local/share/fonts /usr/local/share/fonts /usr/share/fonts "
                                   "~/.fonts "));
    const EnvironmentVariable user("XDG_DATA_HOME", "/u");
    const EnvironmentVariable system("XDG_DATA_DIRS", "/a:b:/c/");
    const EnvironmentVariable none("HOME", nullptr);
    EXPECT_EQ(list(), "/u/fonts /a/fonts /c/fonts ");
}

TEST_F(SystemPaths, TellWhyThereIsNone)
{
    const EnvironmentVariable none("HOME", nullptr);
    const EnvironmentVariable fontless("XDG_DATA_DIRS", home.GetPath().c_str());
    for (const systempaths::Kind kind : {UserData, UserDocuments, Documents, Desktop, Fonts})
        try
        {
            systempaths::Get(kind);
            ADD_FAILURE() << static_cast<int>(kind);
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(),
                      "Could not retrieve system path. No such file or directory");
        }
    EXPECT_EQ(systempaths::Get(Data).ToUTF8(), home.GetPath()) << "needs no home";
}

} // namespace
