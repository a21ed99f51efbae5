#pragma once

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

    /// How many of @p channels the effect gets.
    int CountEffectChannels(int channels) const noexcept;
};

/// Turns a stereo pair into what an effect of one or two channels should work on, and back. The
/// blocks trade places by their pointers, so that the effect always finds its channel first.
/// Audio thread, one object a block.
class ChannelModeTransform
{
public:
    using Operation = void (ChannelModeTransform::*)(float**, float**, int) const noexcept;

    /// @p mode with any pair, or none: then all stays as it is.
    ChannelModeTransform(MChannelMode mode, bool isPair) noexcept;

    /// Before the effect. The first two blocks of @p inputs are written to.
    void Forward(float** inputs, float** outputs, int samples) const noexcept;
    /// After the effect; its outputs and the channel that went round it, which is already in its
    /// output block, become left and right.
    void Back(float** inputs, float** outputs, int samples) const noexcept;

private:
    bool SwapsChannels() const noexcept;
    bool IsMidSide() const noexcept;

    MChannelMode mode;
};
