#include "foundation/strings/Codecs.h"

#include <algorithm>

#include "foundation/streams/MStream.h"
#include "foundation/threads/MException.h"

namespace
{

constexpr std::array<std::byte, 2> Mark = {std::byte{0xFF}, std::byte{0xFE}};

char16_t JoinBytes(std::uint32_t low, std::byte high) noexcept
{
    return static_cast<char16_t>(low | static_cast<std::uint32_t>(high) << 8);
}

} // namespace

const MEncoding::ASCIICodec& MEncoding::ASCIICodec::Get() noexcept
{
    static const ASCIICodec codec;
    return codec;
}

MCodecProgress MEncoding::ASCIICodec::DecodeSome(MCodecState& /*state*/,
                                                 std::span<const std::byte> source,
                                                 std::span<char16_t> target) const noexcept
{
    const std::size_t count = std::min(source.size(), target.size());
    std::transform(source.data(), source.data() + count, target.data(),
                   [](std::byte byte) { return static_cast<char16_t>(byte); });
    return {count, count};
}

MCodecProgress MEncoding::ASCIICodec::EncodeSome(MCodecState& /*state*/,
                                                 std::span<const char16_t> source,
                                                 std::span<std::byte> target) const noexcept
{
    const std::size_t count = std::min(source.size(), target.size());
    std::transform(source.data(), source.data() + count, target.data(),
                   [](char16_t unit) { return static_cast<std::byte>(unit); });
    return {count, count};
}

const MEncoding::UTF16Codec& MEncoding::UTF16Codec::Get() noexcept
{
    static const UTF16Codec codec;
    return codec;
}

void MEncoding::UTF16Codec::ReadHeader(MStream& stream) const
{
    std::array<std::byte, Mark.size()> header;
    if (stream.Read(header) != header.size() || header != Mark)
        throw MException("Invalid UTF8 header.", MException::BadData);
}

void MEncoding::UTF16Codec::WriteHeader(MStream& stream) const
{
    stream.Write(Mark);
}

MCodecProgress MEncoding::UTF16Codec::DecodeSome(MCodecState& state,
                                                 std::span<const std::byte> source,
                                                 std::span<char16_t> target) const noexcept
{
    std::size_t read = 0;
    std::size_t written = 0;
    if (state.pending != 0 && !source.empty())
    {
        target[written++] = JoinBytes(state.code, source[read++]);
        state = {};
    }
    for (; read + 2 <= source.size() && written < target.size(); read += 2)
        target[written++] = JoinBytes(static_cast<std::uint32_t>(source[read]), source[read + 1]);
    if (read + 1 == source.size())
        state = {.code = static_cast<std::uint32_t>(source[read++]), .pending = 1};
    return {read, written};
}

MCodecProgress MEncoding::UTF16Codec::EncodeSome(MCodecState& /*state*/,
                                                 std::span<const char16_t> source,
                                                 std::span<std::byte> target) const noexcept
{
    const std::size_t count = std::min(source.size(), target.size() / 2);
    for (std::size_t i = 0; i < count; ++i)
    {
        target[2 * i] = static_cast<std::byte>(source[i]);
        target[2 * i + 1] = static_cast<std::byte>(source[i] >> 8);
    }
    return {count, 2 * count};
}

std::size_t MEncoding::UTF16Codec::FindLineEnd(const MCodecState& state,
                                               std::span<const std::byte> bytes) const noexcept
{
    const auto endsLine = [](char16_t unit) { return unit == u'\n' || unit == u'\0'; };
    std::size_t at = 0;
    if (state.pending != 0 && !bytes.empty() && endsLine(JoinBytes(state.code, bytes[at++])))
        return at;
    for (; at + 2 <= bytes.size(); at += 2)
        if (endsLine(JoinBytes(static_cast<std::uint32_t>(bytes[at]), bytes[at + 1])))
            return at + 2;
    return 0;
}
