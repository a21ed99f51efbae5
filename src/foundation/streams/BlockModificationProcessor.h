#pragma once

#include <cstddef>
#include <span>
#include <vector>

/// What is done to blocks around the block operation of an MBufferingStream, of which it is a part.
/// This one, the plain processor, fills up the last block with zero bytes and changes nothing else;
/// a reader gets the zeros too.
class BlockModificationProcessor
{
public:
    BlockModificationProcessor() = default;
    virtual ~BlockModificationProcessor() = default;
    BlockModificationProcessor(const BlockModificationProcessor&) = delete;
    BlockModificationProcessor& operator=(const BlockModificationProcessor&) = delete;

    /// Bytes of a block before the operation and behind it. Called first, and forgets the past.
    virtual void Initialize(std::size_t writeSize, std::size_t readSize);
    /// Changes a whole @p block of which the first @p count bytes are to be written; there are less
    /// than a block only at the end. Whether it is to go through the block operation; otherwise
    /// those bytes go out as they are.
    virtual bool ProcessForWrite(std::span<std::byte> block, std::size_t count);
    virtual std::size_t GetWriteBlockSize() const noexcept { return writeBlockSize; }
    /// Changes @p block back, which the reverse operation made of @p source; the two are the same
    /// bytes where less than a block was left at the end.
    virtual void ProcessForRead(std::span<std::byte> block, std::span<const std::byte> source);
    virtual std::size_t GetReadBlockSize() const noexcept { return readBlockSize; }
    /// Tells what the block operation made of the last block that went through it.
    virtual void BlockWritten(std::span<const std::byte> output);

private:
    std::size_t writeBlockSize = 0;
    std::size_t readBlockSize = 0;
};

/// Cipher block chaining: equal blocks do not look equal. Each block is combined (exclusive or)
/// with the output of the one before, the first with zeros. A last block that is not full keeps its
/// length: it is combined with the plain bytes of the block before and skips the block operation.
/// For block operations that keep the size.
class CBCBlockModification : public BlockModificationProcessor
{
public:
    void Initialize(std::size_t writeSize, std::size_t readSize) override;
    bool ProcessForWrite(std::span<std::byte> block, std::size_t count) override;
    void ProcessForRead(std::span<std::byte> block, std::span<const std::byte> source) override;
    void BlockWritten(std::span<const std::byte> output) override;

private:
    std::vector<std::byte> previousPlain;
    std::vector<std::byte> previousOutput;
};
