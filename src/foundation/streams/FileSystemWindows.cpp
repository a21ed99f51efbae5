#include "foundation/streams/FileSystem.h"

#include <string>

#include <io.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <shellapi.h>

#include "foundation/streams/MConsole.h"

// Names are UTF-16, unpaired surrogates included, so no conversion can lose anything.

std::filesystem::path filesystem::ToPath(const MString& name)
{
    std::wstring wide;
    wide.reserve(static_cast<std::size_t>(name.Length()));
    for (int i = 0; i < name.Length(); ++i)
        wide += static_cast<wchar_t>(name.CharAt(i));
    return wide;
}

MString filesystem::FromPath(const std::filesystem::path& path)
{
    MString name;
    for (const wchar_t character : path.native())
        name.Append(static_cast<char16_t>(character));
    return name;
}

std::FILE* filesystem::OpenFile(const MString& name, const char* mode)
{
    std::wstring wideMode;
    for (const char* character = mode; *character != '\0'; ++character)
        wideMode += static_cast<wchar_t>(*character);
    wideMode += L'N'; // not inherited
    return _wfopen(ToPath(name).c_str(), wideMode.c_str());
}

bool filesystem::SeekFile(std::FILE* file, std::int64_t offset, int origin) noexcept
{
    constexpr int Origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    return _fseeki64(file, offset, Origins[origin]) == 0;
}

std::int64_t filesystem::GetFilePosition(std::FILE* file) noexcept
{
    return _ftelli64(file);
}

bool filesystem::TruncateFile(std::FILE* file, std::int64_t size) noexcept
{
    return _chsize_s(_fileno(file), size) == 0;
}

bool filesystem::OpenOnDesktop(const MString& target)
{
    const std::wstring wide = ToPath(target).native();
    const HINSTANCE result =
        ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    // The return value is a number in the guise of a handle: up to 32 it is an error.
    return reinterpret_cast<INT_PTR>(result) > 32;
}

bool MConsole::IsErrorRead() noexcept
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}
