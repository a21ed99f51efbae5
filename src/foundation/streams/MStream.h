#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "foundation/strings/MString.h"

/// The byte stream of the whole system: files, memory, and filters stacked on each other.
/// An operation that a stream cannot do throws MException (1) "Service \"{0}\" is not
/// implemented."; what a stream can do, its class tells. A stream stays usable after a failed
/// read, at whatever position the failure left. One thread at a time.
class MStream
{
public:
    static constexpr int FromStart = 0;
    static constexpr int FromCurrent = 1;
    static constexpr int FromEnd = 2;

    /// How ReadLine ended.
    enum class LineEnd
    {
        Line = 0,   ///< a whole line, perhaps an empty one
        Full = 1,   ///< the buffer is full and the line goes on
        NoMore = 2, ///< the data ended before the first byte
    };

    MStream() = default;
    virtual ~MStream() noexcept(false) = default;
    MStream(const MStream&) = default;
    MStream& operator=(const MStream&) = default;

    /// The stream that this one works on. Service "return substream".
    virtual MStream& GetSubStream();
    /// Writes all of @p bytes or throws. Service "write to stream".
    virtual void Write(std::span<const std::byte> bytes);
    /// Writes @p count zero bytes; nothing for a count below 1.
    virtual void WritePad(std::int32_t count);
    /// Fills @p buffer and returns the number of bytes read, which is less than asked for only at
    /// the end of the data. Service "read from stream".
    virtual std::size_t Read(std::span<std::byte> buffer);
    /// Reads a line of bytes into @p buffer, which must have room for 1, and terminates it. CR is
    /// dropped, LF or NUL ends the line.
    virtual LineEnd ReadLine(std::span<char> buffer);
    /// Writes the low byte of each character, without a terminator.
    virtual void WriteString(const MString& text);
    /// The same and a LF.
    virtual void WriteLine(const MString& text);
    /// Moves to @p offset bytes from @p origin. A stream that cannot do it by itself reads up to
    /// there. @throws MException (2) "Invalid seek origin."; service "backward seek in a stream".
    virtual void Seek(std::int64_t offset, int origin);
    /// Bytes from the start. Service "get stream position".
    virtual std::int64_t GetPosition();
    /// Service "flush stream".
    virtual void Flush();
    /// Service "end of stream test".
    virtual bool EndOfStream();
    /// Cuts the data behind the position. Service "truncate stream".
    virtual void Truncate();
    /// Bytes in all. Service "stream size detection".
    virtual std::int64_t GetSize();
    virtual void Close();
};

/// Fills @p buffer with the next bytes, for headers and numbers.
/// @throws MException (256) "Could not read required data from stream." if the data end first; the
/// position is then at their end.
void ReadExactly(MStream& stream, std::span<std::byte> buffer);

/// The next line whatever its length.
/// @throws MException (256) "Could not load a line from stream." if there is none.
MString ReadRequiredLine(MStream& stream);

/// Copies what remains of @p source.
void CopyTo(MStream& source, MStream& target);
