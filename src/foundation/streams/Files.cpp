#include "foundation/streams/Files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "foundation/streams/FileSystem.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

namespace
{

constexpr auto Separator = static_cast<char16_t>(std::filesystem::path::preferred_separator);

bool IsSeparator(char16_t character) noexcept
{
    constexpr std::array Both = {u'/', Separator}; // on one platform they are the same
    return std::ranges::find(Both, character) != Both.end();
}

[[noreturn]] void Fail(const char* text, const MString& name)
{
    throw MException(MStringFormatter(text).Add(name).Result());
}

bool IsFolder(const std::filesystem::path& path) noexcept
{
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

/// A link to a folder is none.
bool IsTrueFolder(const std::filesystem::path& path) noexcept
{
    std::error_code ignored;
    return std::filesystem::is_directory(std::filesystem::symlink_status(path, ignored));
}

/// Whether @p target is an address of a kind that a browser or a mail program opens. None of them
/// contains blanks or control characters.
bool IsAddress(const MString& target) noexcept
{
    for (int i = 0; i < target.Length(); ++i)
        if (target.CharAt(i) <= u' ')
            return false;
    return std::ranges::any_of(std::to_array<const char*>({"http://", "https://", "mailto:"}),
                               [&](const MString& start) {
                                   return target.Length() > start.Length() &&
                                          target.Compare(0, start, 0, start.Length()) == 0;
                               });
}

} // namespace

bool files::FileExists(const MString& name)
{
    std::error_code ignored;
    const std::filesystem::file_status status =
        std::filesystem::status(filesystem::ToPath(name), ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}

void files::CreatePath(const MString& path)
{
    std::error_code ignored;
    const std::filesystem::path folder = filesystem::ToPath(path);
    std::filesystem::create_directories(folder, ignored);
    if (!IsFolder(folder))
        Fail("Could not create path \"{0}\".", path);
}

void files::RenameFile(const MString& name, const MString& newName)
{
    std::error_code failure;
    std::filesystem::rename(filesystem::ToPath(name), filesystem::ToPath(newName), failure);
    if (failure)
        throw MException(MStringFormatter("Could not rename file \"{0}\" to \"{1}\".")
                             .Add(name)
                             .Add(newName)
                             .Result());
}

void files::DeleteFile(const MString& name)
{
    std::error_code failure;
    const std::filesystem::path path = filesystem::ToPath(name);
    if (IsTrueFolder(path) || !std::filesystem::remove(path, failure))
        Fail("Could not delete file \"{0}\".", name);
}

void files::RemoveDirectory(const MString& path)
{
    std::error_code failure;
    const std::filesystem::path folder = filesystem::ToPath(path);
    if (!IsTrueFolder(folder) || !std::filesystem::remove(folder, failure))
        Fail("Could not remove directory \"{0}\".", path);
}

std::vector<files::Entry> files::ListDirectory(const MString& path)
{
    std::error_code failure;
    std::vector<std::filesystem::path> paths;
    std::filesystem::directory_iterator entry(filesystem::ToPath(path), failure);
    while (!failure && entry != std::filesystem::directory_iterator())
    {
        paths.push_back(entry->path());
        entry.increment(failure);
    }
    if (failure)
        Fail("Could not access path \"{0}\" to get file list.", path);

    std::ranges::sort(paths);
    std::vector<Entry> entries;
    entries.reserve(paths.size());
    for (const std::filesystem::path& each : paths)
        entries.push_back({filesystem::FromPath(each.filename()), IsFolder(each)});
    return entries;
}

MString files::PathJoin(const MString& path, const MString& name)
{
    if (path.IsEmpty() || name.IsEmpty())
        return path.IsEmpty() ? name : path;
    int end = path.Length();
    while (end > 0 && IsSeparator(path.CharAt(end - 1)))
        --end;
    int start = 0;
    while (start < name.Length() && IsSeparator(name.CharAt(start)))
        ++start;
    MString joined = path.Mid(0, end);
    joined.Append(Separator);
    joined.Append(name.Mid(start, name.Length()));
    return joined;
}

void files::Execute(const MString& target)
{
    std::error_code ignored;
    MString opened = target;
    if (!IsAddress(target))
    {
        const std::filesystem::path path = filesystem::ToPath(target);
        if (target.IsEmpty() || !std::filesystem::exists(path, ignored))
            Fail("Could not execute file \"{0}\".", target);
        // With its whole path no name looks like an option or an address.
        opened = filesystem::FromPath(std::filesystem::absolute(path, ignored));
    }
    if (!filesystem::OpenOnDesktop(opened))
        Fail("Could not execute file \"{0}\".", target);
}
