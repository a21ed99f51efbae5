#pragma once

#include <array>
#include <cstdint>

#include "foundation/strings/MString.h"

/// How the channels of the host go through an effect; stored by name.
enum class MChannelMode : std::int32_t
{
    LeftRight = 0,
    Left = 1,
    Right = 2,
    Mono = 3,
    Stereo = 4,
    MonoStereo = 5,
    LeftRightNegative = 6,
    Surround = 7,
};

/// What a mode is called and how many channels it works on.
struct MChannelModeInfo
{
    static constexpr int Count = 8;

    const char* name;
    const char* help;
    int processedChannels;
    int outputChannels;
    bool isTransformed; ///< works on a pair that is turned into middle and side, or inverted

    /// @p mode is one of the enumerators.
    static const MChannelModeInfo& Get(MChannelMode mode) noexcept;
    /// Returns false, and leaves @p mode, for a name of none.
    static bool Find(const MString& name, MChannelMode& mode) noexcept;
};
