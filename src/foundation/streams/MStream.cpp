#include "foundation/streams/MStream.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

namespace
{

/// Bytes that are moved at once where a stream stands in for an operation of its own.
constexpr std::size_t PieceBytes = 1024;

[[noreturn]] void ThrowMissing(const char* service)
{
    throw MException(MStringFormatter("Service \"{0}\" is not implemented.").Add(service).Result(),
                     MException::UnimplementedService);
}

/// a + b, at the end of the range where that lies beyond it.
std::int64_t AddClamped(std::int64_t a, std::int64_t b) noexcept
{
    using Range = std::numeric_limits<std::int64_t>;
    if (b > 0)
        return a > Range::max() - b ? Range::max() : a + b;
    return a < Range::min() - b ? Range::min() : a + b;
}

} // namespace

MStream& MStream::GetSubStream()
{
    ThrowMissing("return substream");
}

void MStream::Write(std::span<const std::byte> /*bytes*/)
{
    ThrowMissing("write to stream");
}

void MStream::WritePad(std::int32_t count)
{
    static constexpr std::array<std::byte, PieceBytes> Zeros{};
    for (auto left = static_cast<std::size_t>(std::max(count, 0)); left > 0;)
    {
        const std::size_t piece = std::min(left, PieceBytes);
        Write({Zeros.data(), piece});
        left -= piece;
    }
}

std::size_t MStream::Read(std::span<std::byte> /*buffer*/)
{
    ThrowMissing("read from stream");
}

MStream::LineEnd MStream::ReadLine(std::span<char> buffer)
{
    std::size_t length = 0;
    bool isAnyRead = false;
    while (length + 1 < buffer.size())
    {
        char character = 0;
        const bool isRead = Read(std::as_writable_bytes(std::span(&character, 1))) == 1;
        if (!isRead || character == '\n' || character == '\0')
        {
            buffer[length] = '\0';
            return isRead || isAnyRead ? LineEnd::Line : LineEnd::NoMore;
        }
        isAnyRead = true;
        if (character != '\r')
            buffer[length++] = character;
    }
    if (!buffer.empty())
        buffer[length] = '\0';
    return LineEnd::Full;
}

void MStream::WriteString(const MString& text)
{
    std::array<char, PieceBytes> narrow;
    text.WithCharacters(
        [&](auto characters)
        {
            while (!characters.empty())
            {
                const auto piece = characters.first(std::min(characters.size(), narrow.size()));
                std::ranges::transform(piece, narrow.begin(),
                                       [](auto character) { return static_cast<char>(character); });
                Write(std::as_bytes(std::span(narrow).first(piece.size())));
                characters = characters.subspan(piece.size());
            }
        });
}

void MStream::WriteLine(const MString& text)
{
    WriteString(text);
    const std::byte lineFeed{'\n'};
    Write({&lineFeed, 1});
}

void MStream::Seek(std::int64_t offset, int origin)
{
    std::int64_t distance = offset;
    if (origin == FromEnd)
        distance = AddClamped(offset, GetSize() - GetPosition());
    else if (origin == FromStart)
        distance = AddClamped(offset, -GetPosition());
    else if (origin != FromCurrent)
        throw MException("Invalid seek origin.", MException::BadArgument);
    if (distance < 0)
        ThrowMissing("backward seek in a stream");

    std::array<std::byte, PieceBytes> dropped;
    while (distance > 0)
    {
        const auto piece =
            static_cast<std::size_t>(std::min(distance, static_cast<std::int64_t>(dropped.size())));
        if (Read({dropped.data(), piece}) < piece)
            return;
        distance -= static_cast<std::int64_t>(piece);
    }
}

std::int64_t MStream::GetPosition()
{
    ThrowMissing("get stream position");
}

void MStream::Flush()
{
    ThrowMissing("flush stream");
}

bool MStream::EndOfStream()
{
    ThrowMissing("end of stream test");
}

void MStream::Truncate()
{
    ThrowMissing("truncate stream");
}

std::int64_t MStream::GetSize()
{
    ThrowMissing("stream size detection");
}

void MStream::Close() {}

void ReadExactly(MStream& stream, std::span<std::byte> buffer)
{
    if (stream.Read(buffer) < buffer.size())
        throw MException("Could not read required data from stream.", MException::BadData);
}

MString ReadRequiredLine(MStream& stream)
{
    std::array<char, PieceBytes> buffer;
    MStream::LineEnd end = stream.ReadLine(buffer);
    if (end == MStream::LineEnd::NoMore)
        throw MException("Could not load a line from stream.", MException::BadData);
    MString line = MString::FromNarrow(buffer.data());
    while (end == MStream::LineEnd::Full)
    {
        end = stream.ReadLine(buffer);
        line.Append(MString::FromNarrow(buffer.data()));
    }
    return line;
}

void CopyTo(MStream& source, MStream& target)
{
    std::array<std::byte, PieceBytes> buffer;
    // Up to a read of nothing, not to the first short one: a filter tells of missing data only
    // when it has delivered what there was.
    while (const std::size_t count = source.Read(buffer))
        target.Write({buffer.data(), count});
}
