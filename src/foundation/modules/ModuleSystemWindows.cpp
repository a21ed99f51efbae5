#include "foundation/modules/ModuleSystem.h"

#include <cstdlib>
#include <string>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

#include "foundation/streams/FileSystem.h"

using std::filesystem::path;

namespace
{

/// The folders of Windows in the order of the kinds, up to the fonts.
const KNOWNFOLDERID* const KnownFolders[] = {
    &FOLDERID_ProgramData,     &FOLDERID_RoamingAppData, &FOLDERID_PublicDocuments,
    &FOLDERID_Documents,       &FOLDERID_ProgramFiles,   &FOLDERID_ProgramFilesCommon,
    &FOLDERID_CommonStartMenu, &FOLDERID_StartMenu,      &FOLDERID_CommonPrograms,
    &FOLDERID_Programs,        &FOLDERID_PublicDesktop,  &FOLDERID_Desktop,
    &FOLDERID_Windows,         &FOLDERID_Fonts,
};

path GetTempFolder()
{
    wchar_t folder[MAX_PATH + 1];
    const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    return std::wstring(folder, length);
}

MString GetLanguagePart(LANGID language, LCTYPE type)
{
    wchar_t part[16];
    const int size = GetLocaleInfoW(language, type, part, 16); // with the terminator
    return filesystem::FromPath(
        std::wstring(part, size > 0 ? static_cast<std::size_t>(size) - 1 : 0));
}

} // namespace

path modulesystem::GetLibraryPath()
{
    HMODULE library = nullptr;
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           reinterpret_cast<const wchar_t*>(&GetLibraryPath), &library) == 0)
        return {};
    // A name that does not fit is cut to the size, whatever that is.
    for (DWORD size = MAX_PATH; size <= 1 << 16; size *= 2)
    {
        std::wstring name(size, L'\0');
        name.resize(GetModuleFileNameW(library, name.data(), size));
        if (name.size() < size)
            return name;
    }
    return {};
}

path modulesystem::GetFolderVariable(const char* name)
{
    const wchar_t* const value = _wgetenv(path(name).c_str());
    path folder = value != nullptr ? value : L"";
    return folder.is_absolute() ? folder : path();
}

path modulesystem::FindFolder(systempaths::Kind kind)
{
    if (kind == systempaths::Kind::Temp)
        return GetTempFolder();
    wchar_t* folder = nullptr;
    const HRESULT result =
        SHGetKnownFolderPath(*KnownFolders[static_cast<std::size_t>(kind)], 0, nullptr, &folder);
    path found = SUCCEEDED(result) ? folder : L"";
    CoTaskMemFree(folder);
    if (FAILED(result))
        throw std::system_error(static_cast<int>(result), std::system_category());
    return found;
}

std::vector<path> modulesystem::GetFontFolders()
{
    std::vector<path> folders;
    for (const auto& [folder, below] :
         {std::pair(FOLDERID_LocalAppData, L"Microsoft/Windows/Fonts"),
          std::pair(FOLDERID_Fonts, L"")})
    {
        wchar_t* found = nullptr;
        if (SUCCEEDED(SHGetKnownFolderPath(folder, 0, nullptr, &found)))
            folders.push_back(path(found) / below);
        CoTaskMemFree(found);
    }
    return folders;
}

MString modulesystem::GetUserLanguage()
{
    const LANGID language = GetUserDefaultUILanguage();
    MString name = GetLanguagePart(language, LOCALE_SISO639LANGNAME);
    name.Append(u'_');
    name.Append(GetLanguagePart(language, LOCALE_SISO3166CTRYNAME));
    return name;
}
