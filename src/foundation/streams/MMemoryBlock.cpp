#include "foundation/streams/MMemoryBlock.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace
{

constexpr std::size_t LeastCapacity = 64;

} // namespace

MMemoryBlock::Block::Block(std::byte* blockData, std::size_t size, bool isBlockOwned) noexcept
    : data(blockData),
      allocated(size),
      isOwned(isBlockOwned)
{
}

MMemoryBlock::Block::~Block()
{
    if (isOwned)
        std::free(data);
}

MMemoryBlock::MMemoryBlock(std::span<const std::byte> bytes)
{
    if (!bytes.empty())
        std::memcpy(MakeWritable(bytes.size(), 0), bytes.data(), bytes.size());
}

MMemoryBlock MMemoryBlock::Refer(std::span<const std::byte> bytes)
{
    MMemoryBlock handle;
    handle.block = new Block(const_cast<std::byte*>(bytes.data()), bytes.size(), false);
    return handle;
}

MMemoryBlock::MMemoryBlock(const MMemoryBlock& other) noexcept : block(other.block)
{
    if (block != nullptr)
        block->holders.fetch_add(1, std::memory_order_relaxed);
}

MMemoryBlock::MMemoryBlock(MMemoryBlock&& other) noexcept
    : block(std::exchange(other.block, nullptr))
{
}

MMemoryBlock& MMemoryBlock::operator=(MMemoryBlock other) noexcept
{
    std::swap(block, other.block);
    return *this;
}

MMemoryBlock::~MMemoryBlock()
{
    // The last holder has to see what the others wrote before they let go.
    if (block != nullptr && block->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete block;
}

std::byte* MMemoryBlock::MakeWritable(std::size_t capacity, std::size_t kept)
{
    if (std::byte* const present = GetWritable(capacity))
        return present;
    const std::size_t present = GetCapacity();
    const std::size_t grown = capacity > present ? 2 * present : present;
    const std::size_t wanted = std::max({capacity, grown, LeastCapacity});
    if (IsOurs())
    {
        void* const moved = std::realloc(block->data, wanted);
        if (moved == nullptr)
            throw std::bad_alloc();
        block->data = static_cast<std::byte*>(moved);
        block->allocated = wanted;
        return block->data;
    }

    auto* const data = static_cast<std::byte*>(std::malloc(wanted));
    if (data == nullptr)
        throw std::bad_alloc();
    MMemoryBlock copy;
    copy.block = new (std::nothrow) Block(data, wanted, true);
    if (copy.block == nullptr)
    {
        std::free(data);
        throw std::bad_alloc();
    }
    if (kept > 0)
        std::memcpy(data, block->data, kept);
    std::swap(block, copy.block);
    return data;
}
