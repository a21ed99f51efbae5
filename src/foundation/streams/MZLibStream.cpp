#include "foundation/streams/MZLibStream.h"

#include <algorithm>
#include <exception>

#include <zlib.h>

#include "foundation/threads/MException.h"

namespace
{

/// zlib counts what it is given in 32 bits.
constexpr std::size_t MostAtOnce = std::size_t{1} << 30U;

/// Set together when the state stands behind the last block.
constexpr int LastBlock = 64;
constexpr int BlockEnd = 128;

int LevelOf(int quality) noexcept
{
    return std::clamp((quality - 1) / 10, 0, 9);
}

} // namespace

void MZLibStream::StateEnd::operator()(z_stream_s* ended) const noexcept
{
    // Without effect on a state that could not be set up.
    if (direction == Direction::Write)
        deflateEnd(ended);
    else
        inflateEnd(ended);
    delete ended;
}

MZLibStream::MZLibStream(MStream& compressedTarget, Direction usedDirection, int quality)
    : target(compressedTarget),
      state(new z_stream{}, StateEnd{usedDirection})
{
    if (usedDirection == Direction::Write)
    {
        if (deflateInit(state.get(), LevelOf(quality)) != Z_OK)
            throw MException("Could not initialize deflating.", MException::SetUpFailure);
    }
    else if (inflateInit(state.get()) != Z_OK)
        throw MException("Could not initialize inflating.", MException::SetUpFailure);
}

// Half a state on disk is worse than an exception. NOLINTNEXTLINE(bugprone-exception-escape)
MZLibStream::~MZLibStream() noexcept(false)
{
    if (std::uncaught_exceptions() == 0)
        MZLibStream::Close();
}

void MZLibStream::Write(std::span<const std::byte> bytes)
{
    if (state == nullptr || state.get_deleter().direction != Direction::Write)
        MStream::Write(bytes);
    while (!bytes.empty())
    {
        const auto piece = bytes.first(std::min(bytes.size(), MostAtOnce));
        state->next_in =
            const_cast<Bytef*>(reinterpret_cast<const Bytef*>(piece.data())); // never written to
        state->avail_in = static_cast<uInt>(piece.size());
        Deflate(Z_NO_FLUSH);
        position += static_cast<std::int64_t>(piece.size());
        bytes = bytes.subspan(piece.size());
    }
}

std::size_t MZLibStream::Read(std::span<std::byte> buffer)
{
    if (state == nullptr || state.get_deleter().direction != Direction::Read)
        MStream::Read(buffer);
    const std::size_t count = Inflate(buffer);
    const bool isCutOff = progress != Progress::End && !isSourceEmpty;
    if (count == 0 && !buffer.empty() && isCutOff)
        throw MException("Source compressed stream has invalid content.", MException::BadData);
    return count;
}

void MZLibStream::Close()
{
    if (state != nullptr && state.get_deleter().direction == Direction::Write)
        throw MException("ZLIB stream has not been terminated.", MException::BadData);
    state.reset();
}

void MZLibStream::Finish()
{
    if (state == nullptr || state.get_deleter().direction != Direction::Write)
        return;
    state->avail_in = 0;
    Deflate(Z_FINISH);
    state.reset();
}

void MZLibStream::ReadToEnd()
{
    if (state == nullptr || state.get_deleter().direction != Direction::Read)
        MStream::Read({});
    while (Inflate(dropped) > 0)
    {
    }
}

void MZLibStream::Deflate(int flush)
{
    do
    {
        state->next_out = reinterpret_cast<Bytef*>(compressed.data());
        state->avail_out = static_cast<uInt>(compressed.size());
        deflate(state.get(), flush);
        const std::size_t count = compressed.size() - state->avail_out;
        if (count > 0)
            target.Write({compressed.data(), count});
    } while (state->avail_out == 0);
}

std::size_t MZLibStream::Inflate(std::span<std::byte> buffer)
{
    std::size_t count = 0;
    while (count < buffer.size() && progress != Progress::End)
    {
        const bool isMore = FillCompressed();
        if (isSourceEmpty)
            return 0;
        const auto wanted = std::min(buffer.size() - count, MostAtOnce);
        state->next_out = reinterpret_cast<Bytef*>(buffer.data() + count);
        state->avail_out = static_cast<uInt>(wanted);
        // Block by block, since only between two calls does zlib tell of the end of the last one.
        const int result = inflate(state.get(), Z_BLOCK);
        count += wanted - state->avail_out;
        position += static_cast<std::int64_t>(wanted - state->avail_out);

        if ((state->data_type & LastBlock) != 0 && (state->data_type & BlockEnd) != 0)
            progress = Progress::Checksum;
        if (result == Z_STREAM_END)
            progress = Progress::End;
        // Without more input the state may still have gone on, from bits that it held.
        const bool isStuck = result == Z_BUF_ERROR && !isMore;
        if ((result < 0 && result != Z_BUF_ERROR) || result == Z_NEED_DICT ||
            (isStuck && progress == Progress::Data))
            throw MException("Source compressed stream has invalid content.", MException::BadData);
        if (position > limit)
            throw MException("Source compressed stream is too long.", MException::BadData);
        if (isStuck)
            break;
    }
    return count;
}

bool MZLibStream::FillCompressed()
{
    if (state->avail_in == 0)
    {
        state->next_in = reinterpret_cast<Bytef*>(compressed.data());
        state->avail_in = static_cast<uInt>(target.Read(compressed));
        isSourceEmpty = isSourceEmpty && state->avail_in == 0;
    }
    return state->avail_in > 0;
}
