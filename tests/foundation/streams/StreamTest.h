#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/streams/MStream.h"
#include "foundation/threads/MException.h"

using Bytes = std::vector<std::byte>;

/// The characters as bytes; the view has to outlive the span.
inline std::span<const std::byte> BytesOf(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

inline std::string TextOf(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Numbers that do not repeat soon, some of them compressible.
Bytes RandomBytes(std::size_t size, std::mt19937::result_type seed = 1);

/// Reads up to the end in pieces of @p piece bytes.
Bytes ReadAll(MStream& stream, std::size_t piece = 4096);

/// The text and the code that @p action throws, as "text (code)"; "nothing" if it does not.
template <typename Action>
std::string Thrown(Action&& action)
{
    try
    {
        action();
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8() + " (" + std::to_string(failure.code) + ")";
    }
    return "nothing";
}
