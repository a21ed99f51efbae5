#pragma once

#include "foundation/streams/MMemoryBlock.h"
#include "foundation/streams/MStream.h"

/// Bytes in memory. Copying is cheap, both share the bytes until one of them writes.
/// The position never leaves the bytes written so far.
class MMemoryStream : public MStream
{
public:
    /// Empty.
    MMemoryStream() = default;
    /// A copy of @p bytes, to be read from the start.
    explicit MMemoryStream(std::span<const std::byte> bytes);
    /// Reads @p bytes where they are; they have to outlive this stream and its copies. The first
    /// write copies them.
    static MMemoryStream Refer(std::span<const std::byte> bytes);

    /// @p bytes may be part of this stream.
    void Write(std::span<const std::byte> bytes) override;
    std::size_t Read(std::span<std::byte> buffer) override;
    /// Stops at the first or behind the last byte.
    void Seek(std::int64_t offset, int origin) override;
    std::int64_t GetPosition() override { return static_cast<std::int64_t>(position); }
    void Flush() override {}
    bool EndOfStream() override { return position >= size; }
    std::int64_t GetSize() override { return static_cast<std::int64_t>(size); }

    /// From the position to the end, without a copy; valid until the next write.
    virtual std::span<const std::byte> GetData() const noexcept;

private:
    MMemoryBlock block;
    std::size_t size = 0; ///< bytes of the block that have been written
    std::size_t position = 0;
};
