#pragma once

#include <cstddef>
#include <vector>

#include "foundation/strings/MEncoding.h"

class MStream;

/// A stream as a codec sees it: bytes on their way to or from characters, through a buffer.
/// Either for reading or for writing, from its first use on. The stream is the caller's and has to
/// outlive this.
class MTextStream
{
public:
    explicit MTextStream(MStream& usedStream, std::size_t bufferCapacity = 1024);

    MStream& GetStream() const noexcept { return stream; }

    /// Reading: the bytes not yet taken, refilled from the stream when there are none; empty at
    /// the end of the data.
    std::span<const std::byte> Peek();
    void Skip(std::size_t count) noexcept;

    /// Writing: adds to the buffer, which goes to the stream when it is full.
    void Write(std::span<const std::byte> bytes);
    /// Sends what is buffered to the stream. To be called last; the destructor does not write.
    void Flush();

    /// What the codec left open at the end of the last piece.
    MCodecState state;

private:
    MStream& stream;
    std::vector<std::byte> buffer;
    std::size_t fill = 0;
    std::size_t readIndex = 0;
};
