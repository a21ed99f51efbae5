#include "foundation/streams/MBufferingStream.h"

#include <algorithm>
#include <utility>

MBufferingStream::MBufferingStream(MStream& outerTarget, std::size_t blockBytes,
                                   std::unique_ptr<BlockModificationProcessor> blockProcessor)
    : target(outerTarget),
      processor(std::move(blockProcessor))
{
    processor->Initialize(blockBytes, blockBytes);
    plainBlock.resize(processor->GetWriteBlockSize());
    outerBlock.resize(processor->GetReadBlockSize());
}

void MBufferingStream::Write(std::span<const std::byte> bytes)
{
    while (!bytes.empty())
    {
        const auto piece = bytes.first(std::min(bytes.size(), plainBlock.size() - fill));
        std::ranges::copy(piece, plainBlock.begin() + static_cast<std::ptrdiff_t>(fill));
        fill += piece.size();
        bytes = bytes.subspan(piece.size());
        if (fill == plainBlock.size())
            SendBlock();
    }
}

std::size_t MBufferingStream::Read(std::span<std::byte> buffer)
{
    std::size_t count = 0;
    while (count < buffer.size() && (position < fill || FetchBlock()))
    {
        const auto piece = std::span(plainBlock)
                               .subspan(position, std::min(buffer.size() - count, fill - position));
        std::ranges::copy(piece, buffer.subspan(count).begin());
        count += piece.size();
        position += piece.size();
    }
    return count;
}

void MBufferingStream::Finish()
{
    if (fill > 0)
        SendBlock();
}

void MBufferingStream::EncodeBlock(std::span<const std::byte> plain, std::span<std::byte> output)
{
    std::ranges::copy(plain, output.begin());
}

void MBufferingStream::DecodeBlock(std::span<const std::byte> source, std::span<std::byte> plain)
{
    std::ranges::copy(source, plain.begin());
}

void MBufferingStream::SendBlock()
{
    const std::size_t count = std::exchange(fill, 0);
    if (!processor->ProcessForWrite(plainBlock, count))
    {
        target.Write(std::span(plainBlock).first(count));
        return;
    }
    EncodeBlock(plainBlock, outerBlock);
    processor->BlockWritten(outerBlock);
    target.Write(outerBlock);
}

bool MBufferingStream::FetchBlock()
{
    const std::size_t count = target.Read(outerBlock);
    const auto source = std::span<const std::byte>(outerBlock).first(count);
    if (count == outerBlock.size())
        DecodeBlock(source, plainBlock);
    else
        std::ranges::copy(source, plainBlock.begin());
    processor->ProcessForRead(std::span(plainBlock).first(count), source);
    fill = count;
    position = 0;
    return count > 0;
}
