#include "foundation/streams/MTextStream.h"

#include <algorithm>

#include "foundation/streams/MStream.h"

MTextStream::MTextStream(MStream& usedStream, std::size_t bufferCapacity)
    : stream(usedStream),
      buffer(std::max<std::size_t>(bufferCapacity, 1))
{
}

std::span<const std::byte> MTextStream::Peek()
{
    if (readIndex == fill)
    {
        readIndex = fill = 0; // also if reading throws
        fill = stream.Read(buffer);
    }
    return std::span(buffer).subspan(readIndex, fill - readIndex);
}

void MTextStream::Skip(std::size_t count) noexcept
{
    readIndex += std::min(count, fill - readIndex);
}

void MTextStream::Write(std::span<const std::byte> bytes)
{
    while (!bytes.empty())
    {
        if (fill == buffer.size())
            Flush();
        const std::size_t count = std::min(bytes.size(), buffer.size() - fill);
        std::ranges::copy(bytes.first(count), buffer.begin() + static_cast<std::ptrdiff_t>(fill));
        fill += count;
        bytes = bytes.subspan(count);
    }
}

void MTextStream::Flush()
{
    stream.Write(std::span(buffer).first(fill));
    fill = 0;
}
