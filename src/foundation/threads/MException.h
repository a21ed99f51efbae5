#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"

/// The one failure of the system, thrown by value. None leaves the plugin.
struct MException
{
    static constexpr std::int32_t General = 0;
    static constexpr std::int32_t UnimplementedService = 1;
    static constexpr std::int32_t BadArgument = 2;
    static constexpr std::int32_t BadData = 256;
    static constexpr std::int32_t SetUpFailure = 257;

    explicit MException(const MString& message, std::int32_t failureCode = General) noexcept;

    MString title; ///< as a rule empty
    MString text;
    std::int32_t code;
};
