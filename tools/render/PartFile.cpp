#include "tools/render/PartFile.h"

#include <random>
#include <system_error>

#include "tools/render/Failure.h"

namespace
{

/// Where the file really goes. Renaming would replace links, and devices, by a plain file.
std::filesystem::path FindTarget(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return path;
    if (std::filesystem::is_directory(status))
        throw Failure("cannot write " + Quoted(path), "it is a folder");
    if (!std::filesystem::is_regular_file(status))
        throw Failure("cannot write " + Quoted(path), "it is not a plain file");
    return std::filesystem::canonical(path);
}

} // namespace

PartFile::PartFile(const std::filesystem::path& path) : target(FindTarget(path)), temporary(target)
{
    // Two programs that write to one name do not write into each other's file.
    temporary += '.';
    temporary += std::to_string(std::random_device()());
    temporary += ".part";
}

PartFile::~PartFile()
{
    if (isCommitted)
        return;
    std::error_code error; // there is nobody to tell, and nothing else to do
    std::filesystem::remove(temporary, error);
}

void PartFile::Commit()
{
    std::error_code error;
    std::filesystem::rename(temporary, target, error);
    if (error)
        Fail(error.message());
    isCommitted = true;
}

void PartFile::Fail(const std::string& reason) const
{
    throw Failure("cannot write " + Quoted(target), reason);
}
