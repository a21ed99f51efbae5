#include "foundation/streams/BlockModificationProcessor.h"

#include <algorithm>

namespace
{

/// Combines as many bytes as @p block has.
void Combine(std::span<std::byte> block, std::span<const std::byte> other) noexcept
{
    for (std::size_t i = 0; i < block.size(); ++i)
        block[i] ^= other[i];
}

} // namespace

void BlockModificationProcessor::Initialize(std::size_t writeSize, std::size_t readSize)
{
    writeBlockSize = writeSize;
    readBlockSize = readSize;
}

bool BlockModificationProcessor::ProcessForWrite(std::span<std::byte> block, std::size_t count)
{
    std::ranges::fill(block.subspan(count), std::byte{0});
    return true;
}

void BlockModificationProcessor::ProcessForRead(std::span<std::byte> /*block*/,
                                                std::span<const std::byte> /*source*/)
{
}

void BlockModificationProcessor::BlockWritten(std::span<const std::byte> /*output*/) {}

void CBCBlockModification::Initialize(std::size_t writeSize, std::size_t readSize)
{
    BlockModificationProcessor::Initialize(writeSize, readSize);
    previousPlain.assign(writeSize, std::byte{0});
    previousOutput.assign(readSize, std::byte{0});
}

bool CBCBlockModification::ProcessForWrite(std::span<std::byte> block, std::size_t count)
{
    if (count < block.size())
    {
        Combine(block.first(count), previousPlain);
        return false;
    }
    std::ranges::copy(block, previousPlain.begin());
    Combine(block, previousOutput);
    return true;
}

void CBCBlockModification::ProcessForRead(std::span<std::byte> block,
                                          std::span<const std::byte> source)
{
    if (block.size() < GetReadBlockSize())
    {
        Combine(block, previousPlain);
        return;
    }
    Combine(block, previousOutput);
    std::ranges::copy(block, previousPlain.begin());
    std::ranges::copy(source, previousOutput.begin());
}

void CBCBlockModification::BlockWritten(std::span<const std::byte> output)
{
    std::ranges::copy(output, previousOutput.begin());
}
