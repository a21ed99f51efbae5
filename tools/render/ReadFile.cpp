#include "tools/render/ReadFile.h"

#include <array>
#include <cerrno>
#include <fstream>

#include "tools/render/Failure.h"

std::vector<std::uint8_t> ReadFile(const std::filesystem::path& path, std::size_t maxBytes)
{
    if (std::filesystem::is_directory(path))
        throw Failure("it is a folder");
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw Failure(SystemReason(errno));
    std::vector<std::uint8_t> bytes;
    std::array<char, 1 << 16> piece{};
    while (bytes.size() <= maxBytes && stream.good())
    {
        stream.read(piece.data(), piece.size());
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + stream.gcount());
    }
    if (stream.bad())
        throw Failure("it cannot be read");
    return bytes;
}
