#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

/// A handle to a block of memory that its copies share, each of them free to change it: who writes
/// to a block that others hold too gets a copy of its own first (copy on write).
/// Copies may live on different threads (the count of holders is atomic); one handle may not be
/// used by two threads at once. Copying never allocates, the last holder frees.
class MMemoryBlock
{
public:
    /// No memory at all.
    MMemoryBlock() noexcept = default;
    /// A copy of @p bytes.
    explicit MMemoryBlock(std::span<const std::byte> bytes);
    /// Points at @p bytes, which have to outlive all holders and are never written to.
    static MMemoryBlock Refer(std::span<const std::byte> bytes);
    MMemoryBlock(const MMemoryBlock& other) noexcept;
    MMemoryBlock(MMemoryBlock&& other) noexcept;
    MMemoryBlock& operator=(MMemoryBlock other) noexcept;
    ~MMemoryBlock();

    /// Valid until this handle writes or goes; null without memory.
    const std::byte* GetData() const noexcept { return block != nullptr ? block->data : nullptr; }
    /// Bytes allocated; how many of them have a value, the owner has to know.
    std::size_t GetCapacity() const noexcept { return block != nullptr ? block->allocated : 0; }

    /// The memory, if it can be written to as it is: nobody else holds it and it has at least
    /// @p capacity bytes; else null.
    std::byte* GetWritable(std::size_t capacity) noexcept
    {
        return IsOurs() && capacity <= block->allocated ? block->data : nullptr;
    }
    /// Memory for at least @p capacity bytes that nobody else holds, with the first @p kept bytes
    /// of the present one, at most @p capacity. Grows to twice the size at least, so that many
    /// small writes cost little. @throws std::bad_alloc, with everything as it was.
    std::byte* MakeWritable(std::size_t capacity, std::size_t kept);

private:
    struct Block
    {
        Block(std::byte* blockData, std::size_t size, bool isBlockOwned) noexcept;
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        ~Block();

        std::atomic<std::int32_t> holders = 1;
        std::byte* data; ///< not to be written to unless it is owned
        std::size_t allocated;
        bool isOwned;
    };

    bool IsOurs() const noexcept
    {
        // What other holders read before they let go has to be behind us.
        return block != nullptr && block->isOwned &&
               block->holders.load(std::memory_order_acquire) == 1;
    }

    Block* block = nullptr;
};
