#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "foundation/Platform.h"

// What every VST3 interface is made of. An interface is a table of functions: the order of its
// virtual functions is the binary form, and a virtual destructor would shift it. So interfaces have
// a protected plain one, and only objects behind them one of their own.

namespace Vst3
{

/// Answer of an operation. The numbers differ between systems: never store or print them.
using Result = std::int32_t;
/// Zero is false, anything else true.
using Bool = std::uint8_t;
using ParamID = std::uint32_t;
/// Zero ended, in the byte order of the machine.
using String128 = char16_t[128];
/// Sixteen bytes that name an interface or a class. Operations take a pointer to the first.
using Uid = std::array<std::uint8_t, 16>;

constexpr Result SystemResult(std::uint32_t windows, std::int32_t others) noexcept
{
    return IsWindows ? static_cast<Result>(windows) : others;
}

inline constexpr Result kNoInterface = SystemResult(0x80004002, -1);
inline constexpr Result kResultOk = 0;
inline constexpr Result kResultTrue = kResultOk;
inline constexpr Result kResultFalse = 1;
inline constexpr Result kInvalidArgument = SystemResult(0x80070057, 2);
inline constexpr Result kNotImplemented = SystemResult(0x80004001, 3);
inline constexpr Result kInternalError = SystemResult(0x80004005, 4);
inline constexpr Result kNotInitialized = SystemResult(0x8000FFFF, 5);
inline constexpr Result kOutOfMemory = SystemResult(0x8007000E, 6);

/// The bytes of four words: all of them most significant first, but on Windows as COM has them.
constexpr Uid MakeUid(std::uint32_t word1, std::uint32_t word2, std::uint32_t word3,
                      std::uint32_t word4) noexcept
{
    const std::array<std::uint32_t, 4> words = {word1, word2, word3, word4};
    constexpr std::array<std::size_t, 16> ComOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                      8, 9, 10, 11, 12, 13, 14, 15};
    Uid uid{};
    for (std::size_t i = 0; i < uid.size(); ++i)
    {
        const std::size_t from = IsWindows ? ComOrder[i] : i;
        uid[i] = static_cast<std::uint8_t>(words[from / 4] >> (24 - from % 4 * 8));
    }
    return uid;
}

/// Whether @p id, sixteen bytes, is @p uid.
constexpr bool IsUid(const std::uint8_t* id, const Uid& uid) noexcept
{
    for (std::size_t i = 0; i < uid.size(); ++i)
        if (id[i] != uid[i])
            return false;
    return true;
}

/// Base of all interfaces. References are counted by any thread.
class FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x00000000, 0x00000000, 0xC0000000, 0x00000046);

    /// Gives another interface of the object, with one reference more; else null and kNoInterface.
    virtual Result queryInterface(const std::uint8_t* id, void** object) = 0;
    virtual std::uint32_t addRef() = 0;
    /// The object ends with its last reference.
    virtual std::uint32_t release() = 0;

protected:
    ~FUnknown() = default;
};

class IPluginBase : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0x22888DDB, 0x156E45AE, 0x8358B348, 0x08190625);

    /// @p context is the host, and may be null.
    virtual Result initialize(FUnknown* context) = 0;
    /// Gives up all that came from the host; initialize may follow again.
    virtual Result terminate() = 0;

protected:
    ~IPluginBase() = default;
};

/// A stream of the host.
class IBStream : public FUnknown
{
public:
    static constexpr Uid Id = MakeUid(0xC3BF6EA2, 0x30994752, 0x9B6BF990, 0x1EE33E9B);

    enum SeekMode : std::int32_t
    {
        kIBSeekSet = 0,
        kIBSeekCur = 1,
        kIBSeekEnd = 2,
    };

    /// @p bytesRead may be null. At the end 0 bytes, with or without kResultFalse.
    virtual Result read(void* buffer, std::int32_t bytes, std::int32_t* bytesRead) = 0;
    virtual Result write(void* buffer, std::int32_t bytes, std::int32_t* bytesWritten) = 0;
    /// @p position, where it ends up, may be null.
    virtual Result seek(std::int64_t offset, std::int32_t mode, std::int64_t* position) = 0;
    virtual Result tell(std::int64_t* position) = 0;

protected:
    ~IBStream() = default;
};

} // namespace Vst3
