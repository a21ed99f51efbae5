#pragma once

#include <memory>
#include <vector>

#include "foundation/streams/BlockModificationProcessor.h"
#include "foundation/streams/MStream.h"

/// Changes whole blocks of bytes on their way to or from another stream; what it does to a block, a
/// derived stream tells. Either writes or reads, from its first use on. Who writes calls Finish at
/// the end, or the last block is lost.
class MBufferingStream : public MStream
{
public:
    /// @p outerTarget has to outlive this stream; @p blockBytes is 1 or more.
    MBufferingStream(MStream& outerTarget, std::size_t blockBytes,
                     std::unique_ptr<BlockModificationProcessor> blockProcessor =
                         std::make_unique<BlockModificationProcessor>());

    void Write(std::span<const std::byte> bytes) override;
    std::size_t Read(std::span<std::byte> buffer) override;
    /// Writes the last block if it is not full yet.
    virtual void Finish();

protected:
    /// The block operation, from @p plain to @p output, both a block long; copies them here.
    virtual void EncodeBlock(std::span<const std::byte> plain, std::span<std::byte> output);
    /// The way back.
    virtual void DecodeBlock(std::span<const std::byte> source, std::span<std::byte> plain);

private:
    void SendBlock();
    /// Whether there was anything left.
    bool FetchBlock();

    MStream& target;
    std::vector<std::byte> plainBlock;
    std::vector<std::byte> outerBlock; ///< as in the target
    std::size_t fill = 0;              ///< bytes in plainBlock
    std::size_t position = 0;          ///< of the next byte to read in plainBlock
    std::unique_ptr<BlockModificationProcessor> processor;
};
