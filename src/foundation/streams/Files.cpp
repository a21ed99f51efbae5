#include "foundation/streams/Files.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
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

/// The new contents of a file, beside it until they take its place, or gone with this object.
class Replacement
{
public:
    explicit Replacement(const std::filesystem::path& replaced) : target(replaced), path(replaced)
    {
        // Those of a crash lie about and are in nobody's way.
        std::random_device random;
        path += std::string(".").append(std::to_string(random())).append(".tmp");
        file.reset(filesystem::OpenFile(filesystem::FromPath(path), "wb"));
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement()
    {
        std::error_code ignored;
        file.reset();
        std::filesystem::remove(path, ignored); // none, once it has the other name
    }

    bool IsOpen() const noexcept { return file != nullptr; }
    bool Write(std::span<const std::byte> contents)
    {
        const bool isWritten =
            std::fwrite(contents.data(), 1, contents.size(), file.get()) == contents.size() &&
            std::fflush(file.get()) == 0 && filesystem::FlushToDisk(file.get());
        return std::fclose(file.release()) == 0 && isWritten;
    }
    bool TakePlace() const
    {
        std::error_code failure;
        const std::filesystem::file_status old = std::filesystem::status(target, failure);
        if (std::filesystem::exists(old))
            std::filesystem::permissions(path, old.permissions(), failure);
        std::filesystem::rename(path, target, failure);
        if (!failure)
            filesystem::FlushFolder(target.parent_path());
        return !failure;
    }

private:
    struct Closing
    {
        void operator()(std::FILE* closed) const noexcept { std::fclose(closed); }
    };

    std::filesystem::path target;
    std::filesystem::path path;
    std::unique_ptr<std::FILE, Closing> file;
};

/// A file in whose place another one may come: the folder's rights alone would allow too much.
bool IsOpenToChange(const std::filesystem::path& path)
{
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored))
        return true;
    std::FILE* const file = filesystem::OpenFile(filesystem::FromPath(path), "r+b");
    return file != nullptr && std::fclose(file) == 0;
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

files::Stamp files::GetStamp(const MString& name) noexcept
{
    return filesystem::GetStamp(filesystem::ToPath(name));
}

void files::ReplaceContents(const MString& name, std::span<const std::byte> contents)
{
    std::error_code failure;
    std::filesystem::path target = filesystem::ToPath(name);
    if (std::filesystem::is_symlink(target, failure))
        target = std::filesystem::weakly_canonical(target, failure);
    const auto need = [&name](bool isPossible)
    {
        if (!isPossible)
            throw MException(
                MStringFormatter("File \"{0}\" could not be created. Make sure there is no "
                                 "write-protected file already existing.")
                    .Add(name)
                    .Result(),
                MException::SetUpFailure);
    };
    need(IsOpenToChange(target));
    Replacement replacement(target);
    need(replacement.IsOpen());
    if (!replacement.Write(contents) || !replacement.TakePlace())
        Fail("Error writing to file \"{0}\". Probably disk full.", name);
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
