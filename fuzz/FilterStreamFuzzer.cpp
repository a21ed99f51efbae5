// Inflates strangers' data and reads their hexadecimal text. What is accepted comes back the same
// through the way there and back, in whatever pieces; all else is refused as bad data.

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

#include "foundation/streams/MHexaStream.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MZLibStream.h"
#include "foundation/threads/MException.h"

namespace
{

using Bytes = std::vector<std::byte>;

constexpr std::int64_t MostPlainBytes = 1 << 20;

void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

Bytes ContentsOf(MMemoryStream& stream)
{
    stream.Seek(0, MStream::FromStart);
    const auto data = stream.GetData();
    return {data.begin(), data.end()};
}

/// What @p read returns; nothing if it refuses the data.
template <typename Reader>
std::optional<Bytes> Try(Reader&& read)
{
    try
    {
        return read();
    }
    catch (const MException& failure)
    {
        Require(failure.code == MException::BadData);
        return std::nullopt;
    }
}

Bytes ReadAll(MStream& stream, std::size_t piece)
{
    Bytes all;
    Bytes buffer(piece);
    while (const std::size_t count = stream.Read(buffer))
        all.insert(all.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
    return all;
}

std::optional<Bytes> Inflate(std::span<const std::byte> compressed, std::size_t piece)
{
    return Try(
        [&]
        {
            MMemoryStream source = MMemoryStream::Refer(compressed);
            MZLibStream reader(source, MZLibStream::Direction::Read);
            reader.LimitOutput(MostPlainBytes);
            return ReadAll(reader, piece);
        });
}

/// Reads @p start bytes and passes over the rest; whether that was accepted.
bool PassOver(std::span<const std::byte> compressed, std::size_t start)
{
    return Try(
               [&]
               {
                   MMemoryStream source = MMemoryStream::Refer(compressed);
                   MZLibStream reader(source, MZLibStream::Direction::Read);
                   reader.LimitOutput(MostPlainBytes);
                   Bytes buffer(start);
                   reader.Read(buffer);
                   reader.ReadToEnd();
                   return Bytes();
               })
        .has_value();
}

Bytes Deflate(std::span<const std::byte> plain, std::size_t piece, int quality)
{
    MMemoryStream target;
    MZLibStream writer(target, MZLibStream::Direction::Write, quality);
    while (!plain.empty())
    {
        const auto part = plain.first(std::min(piece, plain.size()));
        writer.Write(part);
        plain = plain.subspan(part.size());
    }
    writer.Finish();
    return ContentsOf(target);
}

std::optional<Bytes> ReadHexadecimal(std::span<const std::byte> text, std::size_t piece)
{
    return Try(
        [&]
        {
            MMemoryStream source = MMemoryStream::Refer(text);
            MHexaStream reader(source);
            return ReadAll(reader, piece);
        });
}

Bytes WriteHexadecimal(std::span<const std::byte> plain)
{
    MMemoryStream text;
    MHexaStream(text).Write(plain);
    return ContentsOf(text);
}

/// @p text as we write it: without white space and in upper case.
Bytes Normalized(std::span<const std::byte> text)
{
    Bytes result;
    for (const std::byte byte : text)
    {
        const auto character = std::to_integer<char>(byte);
        if (character >= 'a')
            result.push_back(static_cast<std::byte>(character - 'a' + 'A'));
        else if (character > ' ')
            result.push_back(byte);
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::size_t piece = data[0] + std::size_t{1};
    const auto input = std::as_bytes(std::span(data, size)).subspan(1);

    const std::optional<Bytes> inflated = Inflate(input, piece);
    Require(Inflate(input, 65536) == inflated);
    if (inflated)
    {
        Require(PassOver(input, piece));
        const Bytes compressed = Deflate(*inflated, piece, data[0]);
        Require(Inflate(compressed, 1000) == inflated);
    }
    else
        PassOver(input, piece);
    const Bytes deflated = Deflate(input, piece, data[0]);
    const std::optional<Bytes> restored = Inflate(deflated, piece);
    Require(restored && std::ranges::equal(*restored, input));

    if (const std::optional<Bytes> bytes = ReadHexadecimal(input, piece))
    {
        Require(ReadHexadecimal(input, 1) == bytes);
        Require(WriteHexadecimal(*bytes) == Normalized(input));
    }
    const Bytes text = WriteHexadecimal(input);
    const std::optional<Bytes> read = ReadHexadecimal(text, piece);
    Require(read && std::ranges::equal(*read, input));
    return 0;
}
