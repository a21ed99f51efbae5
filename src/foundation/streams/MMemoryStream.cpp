#include "foundation/streams/MMemoryStream.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "foundation/threads/MException.h"

MMemoryStream::MMemoryStream(std::span<const std::byte> bytes) : block(bytes), size(bytes.size()) {}

MMemoryStream MMemoryStream::Refer(std::span<const std::byte> bytes)
{
    MMemoryStream stream;
    stream.block = MMemoryBlock::Refer(bytes);
    stream.size = bytes.size();
    return stream;
}

void MMemoryStream::Write(std::span<const std::byte> bytes)
{
    if (bytes.empty())
        return;
    const std::size_t end = position + bytes.size();
    const std::byte* source = bytes.data();
    std::byte* data = block.GetWritable(end);
    if (data == nullptr)
    {
        const std::byte* const before = block.GetData();
        const std::less<const std::byte*> isBefore;
        const bool areOwn = !isBefore(source, before) && isBefore(source, before + size);
        data = block.MakeWritable(end, size);
        if (areOwn) // the block took them along
            source = data + (source - before);
    }
    std::memmove(data + position, source, bytes.size());
    position = end;
    size = std::max(size, end);
}

std::size_t MMemoryStream::Read(std::span<std::byte> buffer)
{
    const std::size_t count = std::min(buffer.size(), size - position);
    if (count > 0)
        std::memcpy(buffer.data(), block.GetData() + position, count);
    position += count;
    return count;
}

void MMemoryStream::Seek(std::int64_t offset, int origin)
{
    if (origin < FromStart || origin > FromEnd)
        throw MException("Invalid seek origin.", MException::BadArgument);
    const std::size_t base = origin == FromStart ? 0 : origin == FromCurrent ? position : size;
    const auto from = static_cast<std::int64_t>(base);
    position = base + static_cast<std::size_t>(
                          std::clamp(offset, -from, static_cast<std::int64_t>(size) - from));
}

std::span<const std::byte> MMemoryStream::GetData() const noexcept
{
    return {block.GetData() + position, size - position};
}
