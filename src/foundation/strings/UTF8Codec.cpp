#include <algorithm>
#include <array>
#include <cstring>

#include "foundation/strings/Codecs.h"
#include "foundation/strings/UTF8.h"

namespace
{

/// What a broken sequence counts as.
constexpr char16_t Broken = 1;

/// Characters that the fast path takes at once.
constexpr std::size_t Round = 16;

/// All units of a round at once, in words that the compiler holds in registers.
template <typename Unit>
bool IsASCII(const Unit* units) noexcept
{
    constexpr std::uint64_t Others = sizeof(Unit) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
    std::array<std::uint64_t, Round * sizeof(Unit) / sizeof(std::uint64_t)> words;
    std::memcpy(words.data(), units, sizeof(words));
    std::uint64_t all = 0;
    for (const std::uint64_t word : words)
        all |= word;
    return (all & Others) == 0;
}

/// Copies the ASCII units that @p source begins with, up to @p room; returns their number.
template <typename From, typename To>
std::size_t CopyASCII(std::span<const From> source, To* target, std::size_t room) noexcept
{
    const std::size_t last = std::min(source.size(), room);
    std::size_t done = 0;
    for (; done + Round <= last && IsASCII(source.data() + done); done += Round)
    {
        // By way of locals, so that the compiler knows that nothing overlaps.
        std::array<From, Round> from;
        std::memcpy(from.data(), source.data() + done, sizeof(from));
        std::array<To, Round> to;
        for (std::size_t i = 0; i < Round; ++i)
            to[i] = static_cast<To>(from[i]);
        std::memcpy(target + done, to.data(), sizeof(to));
    }
    // Less than a round is left, or what is no ASCII stands in it.
    for (; done < last && static_cast<char16_t>(source[done]) < 0x80; ++done)
        target[done] = static_cast<To>(source[done]);
    return done;
}

/// The state of a decoder holds how many continuation bytes are still to come in the lower half of
/// pending, and of how many in the upper half.
constexpr std::uint8_t LeftMask = 0x0F;
constexpr int TotalShift = 4;

/// Writes @p value as one unit or two; returns their number.
std::size_t PutUnits(char32_t value, char16_t* target) noexcept
{
    if (value == utf8::ByteOrderMark)
        return 0;
    if (value <= 0xFFFF)
    {
        target[0] = static_cast<char16_t>(value);
        return 1;
    }
    target[0] = utf8::HighSurrogate(value);
    target[1] = utf8::LowSurrogate(value);
    return 2;
}

/// Writes @p value as up to four bytes; returns their number.
std::size_t PutBytes(char32_t value, std::byte* target) noexcept
{
    const bool isEscape = value >= utf8::FirstEscape && value <= utf8::LastEscape;
    if (value < 0x80 || isEscape)
    {
        target[0] = static_cast<std::byte>(value);
        return 1;
    }
    const std::size_t following = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    for (std::size_t i = following; i > 0; --i, value >>= 6)
        target[i] = static_cast<std::byte>(0x80 | (value & 0x3F));
    target[0] = static_cast<std::byte>((0xFF00u >> (following + 1)) | value);
    return following + 1;
}

} // namespace

const MEncoding::UTF8Codec& MEncoding::UTF8Codec::Get() noexcept
{
    static const UTF8Codec codec;
    return codec;
}

MCodecProgress MEncoding::UTF8Codec::DecodeSome(MCodecState& state,
                                                std::span<const std::byte> source,
                                                std::span<char16_t> target) const noexcept
{
    std::size_t read = 0;
    std::size_t written = 0;
    while (read < source.size() && written + 2 <= target.size())
    {
        const auto byte = static_cast<std::uint8_t>(source[read]);
        if (state.pending != 0)
        {
            if (!utf8::IsContinuation(byte))
            {
                target[written++] = Broken;
                state = {};
                continue; // with the byte as the next lead
            }
            ++read;
            state.code = state.code << 6 | (byte & 0x3Fu);
            --state.pending;
            if ((state.pending & LeftMask) == 0)
            {
                const bool isStandard = utf8::IsStandard(state.code, state.pending >> TotalShift);
                written += PutUnits(isStandard ? state.code : Broken, &target[written]);
                state = {};
            }
            continue;
        }
        if (byte < 0x80)
        {
            const std::size_t plain =
                CopyASCII(source.subspan(read), &target[written], target.size() - written);
            read += plain;
            written += plain;
            continue;
        }
        ++read;
        if (const int following = utf8::FollowingBytes(byte); following > 0)
            state = {.code = utf8::LeadBits(byte, following),
                     .pending = static_cast<std::uint8_t>(following << TotalShift | following)};
    }
    return {read, written};
}

MCodecProgress MEncoding::UTF8Codec::EncodeSome(MCodecState& state,
                                                std::span<const char16_t> source,
                                                std::span<std::byte> target) const noexcept
{
    std::size_t read = 0;
    std::size_t written = 0;
    while (read < source.size() && written + 4 <= target.size())
    {
        const char16_t unit = source[read];
        if (state.pending != 0)
        {
            if (utf8::IsLowSurrogate(unit))
                written += PutBytes(utf8::Join(state.code, unit), &target[written]);
            ++read;
            state = {};
            continue;
        }
        if (unit < 0x80)
        {
            const std::size_t plain =
                CopyASCII(source.subspan(read), &target[written], target.size() - written);
            read += plain;
            written += plain;
            continue;
        }
        ++read;
        if (utf8::IsHighSurrogate(unit))
            state = {.code = unit, .pending = 1};
        else if (!utf8::IsLowSurrogate(unit))
            written += PutBytes(unit, &target[written]);
    }
    return {read, written};
}
