#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

/// All bytes of a file; of one that has more than @p maxBytes, some more than that, so that it can
/// be told. @throws MException with the reason alone, for the caller to say what cannot be done.
std::vector<std::uint8_t> ReadFile(const std::filesystem::path& path, std::size_t maxBytes);
