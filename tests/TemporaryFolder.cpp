#include "tests/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

TemporaryFolder::TemporaryFolder()
{
    // Tests run side by side, so a name may be taken.
    std::random_device random;
    do
    {
        std::string name = "tonvale-test-";
        name += std::to_string(random());
        path = std::filesystem::temp_directory_path() / name;
    } while (!std::filesystem::create_directory(path));
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

void TemporaryFolder::Write(const std::string& name, std::span<const std::uint8_t> bytes) const
{
    std::ofstream stream(*this / name, std::ios::binary);
    std::ranges::copy(bytes, std::ostreambuf_iterator(stream));
}

std::vector<std::uint8_t> TemporaryFolder::Read(const std::string& name) const
{
    std::ifstream stream(*this / name, std::ios::binary);
    return {std::istreambuf_iterator(stream), {}};
}

std::string TemporaryFolder::List() const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : " ") + name;
    return list;
}
