#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

/// An empty folder for the files of one test, which goes with them.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& GetPath() const noexcept { return path; }
    /// Names are UTF-8 here and below.
    std::filesystem::path operator/(const std::string& name) const
    {
        return path / std::u8string(name.begin(), name.end());
    }

    void Write(const std::string& name, std::span<const std::uint8_t> bytes) const;
    std::vector<std::uint8_t> Read(const std::string& name) const;
    /// The names in the folder, sorted, with a blank between them.
    std::string List() const;

private:
    std::filesystem::path path;
};
