#pragma once

#include <array>
#include <limits>
#include <memory>

#include "foundation/streams/MStream.h"

struct z_stream_s;

/// Deflated data in another stream, with the zlib header and checksum; every chunk and preset
/// rests on it. Either writes or reads. No call allocates.
///
/// Reading refuses what does not inflate, also data that stop before their end, with MException
/// (256) "Source compressed stream has invalid content."; only a source without a single byte is
/// the empty stream. Data whose last block is whole and of which merely the checksum behind it is
/// cut off are delivered to the last byte; the read behind that throws. Who has all that is needed
/// by then calls ReadToEnd instead, which forgives this one fault.
class MZLibStream : public MStream
{
public:
    enum class Direction : bool
    {
        Read,
        Write
    };

    /// @p compressedTarget holds the compressed data; it has to outlive this stream. @p quality is
    /// 1 (stored) to 100 (smallest), for writing.
    /// @throws MException (257) "Could not initialize deflating." or "... inflating.".
    MZLibStream(MStream& compressedTarget, Direction usedDirection, int quality = 100);
    /// Throws as Close does, unless another exception is on its way.
    ~MZLibStream() noexcept(false) override; // NOLINT(bugprone-exception-escape)
    MZLibStream(const MZLibStream&) = delete;
    MZLibStream& operator=(const MZLibStream&) = delete;

    void Write(std::span<const std::byte> bytes) override;
    /// The end of the compressed data is the end of the stream, whatever follows in the target, of
    /// which up to 4,095 bytes more may have been read.
    std::size_t Read(std::span<std::byte> buffer) override;
    /// Bytes that went through, on the plain side.
    std::int64_t GetPosition() override { return position; }
    /// Of the target; what the compressor still holds stays there until Finish.
    void Flush() override { target.Flush(); }
    bool EndOfStream() override { return target.EndOfStream(); }
    /// Ends reading. @throws MException (256) "ZLIB stream has not been terminated." for a writer
    /// before Finish.
    void Close() override;
    /// Writes what is left and ends the data; nothing more can be written. A reader and a finished
    /// writer ignore it.
    virtual void Finish();

    /// Reading more than @p bytes in all throws MException (256) "Source compressed stream is too
    /// long.".
    void LimitOutput(std::int64_t bytes) noexcept { limit = bytes; }
    /// Reads and drops the rest, so that wrong data and a wrong checksum behind what has been read
    /// show. Throws as Read does, but not if merely the checksum is missing or incomplete.
    void ReadToEnd();

private:
    static constexpr std::size_t BufferBytes = 4096;

    /// Frees the state as its direction demands.
    struct StateEnd
    {
        Direction direction;
        void operator()(z_stream_s* ended) const noexcept;
    };

    /// How far the data behind the header have been read.
    enum class Progress
    {
        Data,     ///< within them
        Checksum, ///< the last block is done
        End,      ///< the checksum is right
    };

    /// Compresses what the state holds with the flush mode @p flush, until it wants more.
    void Deflate(int flush);
    /// Inflates until @p buffer is full or no more comes; returns the number of bytes.
    std::size_t Inflate(std::span<std::byte> buffer);
    /// Whether there is still something to inflate.
    bool FillCompressed();

    MStream& target;
    std::unique_ptr<z_stream_s, StateEnd> state; ///< null once finished or closed
    std::array<std::byte, BufferBytes> compressed;
    std::array<std::byte, BufferBytes> dropped; ///< by ReadToEnd
    std::int64_t position = 0;
    std::int64_t limit = std::numeric_limits<std::int64_t>::max();
    Progress progress = Progress::Data;
    bool isSourceEmpty = true;
};
