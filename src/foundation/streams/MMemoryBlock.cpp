#include "foundation/streams/MMemoryBlock.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

struct MMemoryBlock::Block
{
    std::atomic<std::int32_t> holders;
    std::byte* data; ///< const in truth where it is not owned
    std::size_t allocated;
    bool isOwned;

    Block(std::byte* blockData, std::size_t size, bool isBlockOwned) noexcept
        : holders(1),
          data(blockData),
          allocated(size),
          isOwned(isBlockOwned)
    {
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block()
    {
        if (isOwned)
            std::free(data);
    }
};

namespace
{

constexpr std::size_t LeastCapacity = 64;

} // namespace

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

const std::byte* MMemoryBlock::GetData() const noexcept
{
    return block != nullptr ? block->data : nullptr;
}

std::size_t MMemoryBlock::GetCapacity() const noexcept
{
    return block != nullptr ? block->allocated : 0;
}

std::byte* MMemoryBlock::MakeWritable(std::size_t capacity, std::size_t kept)
{
    const std::size_t present = GetCapacity();
    const bool isOurs =
        block != nullptr && block->isOwned && block->holders.load(std::memory_order_acquire) == 1;
    if (isOurs && capacity <= present)
        return block->data;

    const std::size_t wanted =
        capacity <= present ? present : std::max({capacity, 2 * present, LeastCapacity});
    if (isOurs)
    {
        void* const grown = std::realloc(block->data, wanted);
        if (grown == nullptr)
            throw std::bad_alloc();
        block->data = static_cast<std::byte*>(grown);
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
