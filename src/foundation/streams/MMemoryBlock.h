#pragma once

#include <cstddef>
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
    const std::byte* GetData() const noexcept;
    /// Bytes allocated; how many of them have a value, the owner has to know.
    std::size_t GetCapacity() const noexcept;

    /// Memory for at least @p capacity bytes that nobody else holds, with the first @p kept bytes
    /// of the present one, at most @p capacity. Grows to twice the size at least, so that many
    /// small writes cost little. @throws std::bad_alloc, with everything as it was.
    std::byte* MakeWritable(std::size_t capacity, std::size_t kept);

private:
    struct Block;

    Block* block = nullptr;
};
