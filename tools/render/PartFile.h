#pragma once

#include <filesystem>
#include <string>

/// The name of a file that is about to be written. It grows under a temporary name in the same
/// folder, so until Commit, and after any failure, a file that was there before stays as it was.
/// Links stay, and what they lead to is replaced.
class PartFile
{
public:
    /// @throws MException naming @p path, if it is anything but a plain file or free.
    explicit PartFile(const std::filesystem::path& path);
    /// Removes what was written, unless it was committed.
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    /// Where to write, until Commit.
    const std::filesystem::path& GetPath() const noexcept { return temporary; }
    /// Gives the file its name; it is closed by now. @throws MException if that fails.
    void Commit();
    /// Throws MException: the file cannot be written, and @p reason why.
    [[noreturn]] void Fail(const std::string& reason) const;

private:
    std::filesystem::path target;
    std::filesystem::path temporary;
    bool isCommitted = false;
};
