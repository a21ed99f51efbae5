#include "foundation/streams/FileSystem.h"

#include <string>

#include <io.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <shellapi.h>

#include "foundation/streams/MConsole.h"

namespace
{

HANDLE HandleOf(std::FILE* file) noexcept
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
}

} // namespace

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

bool filesystem::FlushToDisk(std::FILE* file) noexcept
{
    return _commit(_fileno(file)) == 0;
}

void filesystem::FlushFolder(const std::filesystem::path& /*folder*/) noexcept
{
    // The journal of the file system keeps the order of renames.
}

files::Stamp filesystem::GetStamp(const std::filesystem::path& path) noexcept
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0)
        return {};
    const auto join = [](DWORD high, DWORD low)
    { return static_cast<std::int64_t>(std::uint64_t{high} << 32U | low); };
    return {.modified =
                join(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime),
            .size = join(data.nFileSizeHigh, data.nFileSizeLow)};
}

filesystem::LockResult filesystem::TryLockFile(std::FILE* file) noexcept
{
    OVERLAPPED place = {};
    if (LockFileEx(HandleOf(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                   &place) != 0)
        return LockResult::Taken;
    return GetLastError() == ERROR_LOCK_VIOLATION ? LockResult::Busy : LockResult::Failed;
}

void filesystem::UnlockFile(std::FILE* file) noexcept
{
    OVERLAPPED place = {};
    UnlockFileEx(HandleOf(file), 0, 1, 0, &place);
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
