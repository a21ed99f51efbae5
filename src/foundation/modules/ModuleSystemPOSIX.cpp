#include "foundation/modules/ModuleSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include <dlfcn.h>
#include <link.h>

#include "foundation/modules/UserFolders.h"
#include "foundation/streams/FileSystem.h"

using std::filesystem::path;

namespace
{

[[noreturn]] void FailNotFound()
{
    throw std::system_error(ENOENT, std::system_category());
}

/// Empty if it is not set.
std::string GetVariable(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): only read here
    return value != nullptr ? value : "";
}

path GetHome()
{
    path home = modulesystem::GetFolderVariable("HOME");
    if (home.empty())
        FailNotFound();
    return home;
}

/// The folder of the variable, or one below home.
path GetBaseFolder(const char* variable, const char* nameInHome)
{
    path folder = modulesystem::GetFolderVariable(variable);
    return folder.empty() ? GetHome() / nameInHome : folder;
}

std::vector<path> GetDataFolders()
{
    std::vector<path> folders;
    const std::string list = GetVariable("XDG_DATA_DIRS");
    for (std::size_t start = 0; start < list.size();)
    {
        const std::size_t end = std::min(list.find(':', start), list.size());
        if (list[start] == '/')
            folders.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    if (folders.empty())
        folders = {"/usr/local/share", "/usr/share"};
    return folders;
}

/// What the user has named in the desktop's settings; empty if nothing.
path GetUserFolder(const char* name)
{
    constexpr std::size_t MaxFileBytes = 1 << 16;
    const path fileName = GetBaseFolder("XDG_CONFIG_HOME", ".config") / "user-dirs.dirs";
    std::error_code ignored;
    if (!is_regular_file(fileName, ignored))
        return {};
    std::ifstream file(fileName, std::ios::binary);
    std::string text(MaxFileBytes, '\0');
    file.read(text.data(), MaxFileBytes);
    text.resize(static_cast<std::size_t>(file.gcount()));
    return FindUserFolder(text, name, GetHome().native());
}

/// What stands above the folder "lib" or "bin" that holds this library.
path GetPrefix()
{
    const path library = modulesystem::GetLibraryPath();
    for (path folder = library.parent_path(); folder.has_relative_path();
         folder = folder.parent_path())
        if (folder.filename() == "lib" || folder.filename() == "bin")
            return folder.parent_path();
    return "/usr";
}

path GetFontsFolder()
{
    std::error_code ignored;
    for (const path& folder : GetDataFolders())
        if (is_directory(folder / "fonts", ignored))
            return folder / "fonts";
    FailNotFound();
}

path GetTempFolder()
{
    std::error_code ignored;
    path folder = modulesystem::GetFolderVariable("TMPDIR");
    return is_directory(folder, ignored) ? folder : path("/tmp");
}

} // namespace

path modulesystem::GetLibraryPath()
{
    Dl_info ignored{};
    link_map* library = nullptr;
    if (dladdr1(reinterpret_cast<const void*>(&GetLibraryPath), &ignored,
                reinterpret_cast<void**>(&library), RTLD_DL_LINKMAP) == 0)
        return {};
    // Only the program itself has no name there.
    const path name = library->l_name[0] != '\0' ? library->l_name : "/proc/self/exe";
    std::error_code failure;
    path whole = canonical(name, failure);
    return failure ? name : whole;
}

path modulesystem::GetFolderVariable(const char* name)
{
    path folder = GetVariable(name);
    return folder.is_absolute() ? folder : path();
}

path modulesystem::FindFolder(systempaths::Kind kind)
{
    switch (kind)
    {
        using enum systempaths::Kind;
    case Data:
        return GetDataFolders().front();
    case UserData:
        return GetBaseFolder("XDG_DATA_HOME", ".local/share");
    case Documents:
        if (path folder = GetUserFolder("PUBLICSHARE"); !folder.empty())
            return folder;
        FailNotFound();
    case UserDocuments:
    {
        path folder = GetUserFolder("DOCUMENTS");
        return folder.empty() ? GetHome() : folder;
    }
    case ProgramFiles:
        return GetPrefix() / "lib";
    case Components:
        return GetPrefix() / "share";
    case StartMenu:
    case StartMenuPrograms:
        return FindFolder(Data) / "applications";
    case UserStartMenu:
    case UserStartMenuPrograms:
        return filesystem::ToPath(systempaths::Get(UserData)) / "applications";
    case Desktop:
    case UserDesktop:
    {
        path folder = GetUserFolder("DESKTOP");
        return folder.empty() ? GetHome() / "Desktop" : folder;
    }
    case System:
        return "/etc";
    case Fonts:
        return GetFontsFolder();
    case Temp:
        return GetTempFolder();
    }
    FailNotFound();
}

std::vector<path> modulesystem::GetFontFolders()
{
    std::vector<path> folders;
    const path home = GetFolderVariable("HOME");
    const path userData = GetFolderVariable("XDG_DATA_HOME");
    if (!userData.empty() || !home.empty())
        folders.push_back((userData.empty() ? home / ".local/share" : userData) / "fonts");
    for (const path& folder : GetDataFolders())
        folders.push_back(folder / "fonts");
    if (!home.empty())
        folders.push_back(home / ".fonts");
    return folders;
}

MString modulesystem::GetUserLanguage()
{
    // The first one that is set decides, also if it says "C".
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const std::string value = GetVariable(variable); !value.empty())
            return MString::FromUTF8(value);
    return {};
}
