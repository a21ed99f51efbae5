#include "foundation/streams/MBufferingStream.h"

#include <algorithm>
#include <random>

#include "foundation/streams/MMemoryStream.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

/// A toy cipher: inverts bits and swaps the ends of the block, so that blocks have to be whole.
class TogglingStream : public MBufferingStream
{
public:
    using MBufferingStream::MBufferingStream;

protected:
    void EncodeBlock(std::span<const std::byte> plain, std::span<std::byte> output) override
    {
        std::ranges::transform(plain, output.begin(), [](std::byte byte) { return ~byte; });
        std::swap(output.front(), output.back());
    }
    void DecodeBlock(std::span<const std::byte> source, std::span<std::byte> plain) override
    {
        EncodeBlock(source, plain);
    }
};

template <typename Stream>
std::string Encode(std::string_view plain, std::size_t blockBytes, bool isChained,
                   std::size_t piece = 1000)
{
    MMemoryStream target;
    Stream stream(target, blockBytes,
                  isChained ? std::make_unique<CBCBlockModification>()
                            : std::make_unique<BlockModificationProcessor>());
    for (std::size_t at = 0; at < plain.size(); at += piece)
        stream.Write(BytesOf(plain.substr(at, piece)));
    stream.Finish();
    stream.Finish(); // nothing is left
    target.Seek(0, MStream::FromStart);
    return TextOf(target.GetData());
}

template <typename Stream>
std::string Decode(std::string_view encoded, std::size_t blockBytes, bool isChained,
                   std::size_t piece)
{
    MMemoryStream source = MMemoryStream::Refer(BytesOf(encoded));
    Stream stream(source, blockBytes,
                  isChained ? std::make_unique<CBCBlockModification>()
                            : std::make_unique<BlockModificationProcessor>());
    return TextOf(ReadAll(stream, piece));
}

TEST(MBufferingStream, FillsUpTheLastBlockWithZeros)
{
    EXPECT_EQ(Encode<MBufferingStream>("abcde", 4, false), std::string("abcde\0\0\0", 8));
    EXPECT_EQ(Encode<MBufferingStream>("abcd", 4, false), "abcd");
    EXPECT_EQ(Encode<MBufferingStream>("", 4, false), "");
    EXPECT_EQ(Encode<TogglingStream>("abcde", 4, false), "\x9B\x9D\x9C\x9E\xFF\xFF\xFF\x9A");
}

/// Worked by hand, blocks of two bytes.
TEST(MBufferingStream, ChainsBlocks)
{
    // Without an operation: 01 02, then 03^01 04^02, then 05 with the plain 03.
    EXPECT_EQ(Encode<MBufferingStream>("\x01\x02\x03\x04\x05", 2, true), "\x01\x02\x02\x06\x06");
    // Inverted and swapped: 01 02 to FD FE; 03^FD 04^FE is FE FA, to 05 01; 06 with the plain 03.
    EXPECT_EQ(Encode<TogglingStream>("\x01\x02\x03\x04\x06", 2, true), "\xFD\xFE\x05\x01\x05");
    EXPECT_EQ(Encode<TogglingStream>("x", 2, true), "x") << "nothing stands before it";
}

TEST(MBufferingStream, WhatIsWrittenComesBack)
{
    for (const std::size_t blockBytes : {1U, 2U, 8U, 100U})
        for (const std::size_t size : {0U, 1U, 7U, 8U, 9U, 250U, 400U})
            for (const std::size_t piece : {1U, 3U, 1000U})
            {
                std::string plain = TextOf(RandomBytes(size));
                EXPECT_EQ(
                    Decode<TogglingStream>(Encode<TogglingStream>(plain, blockBytes, true, piece),
                                           blockBytes, true, piece),
                    plain)
                    << size << " in blocks of " << blockBytes;
                const std::string padded =
                    Decode<TogglingStream>(Encode<TogglingStream>(plain, blockBytes, false, piece),
                                           blockBytes, false, piece);
                plain.resize((size + blockBytes - 1) / blockBytes * blockBytes);
                EXPECT_EQ(padded, plain) << size << " in blocks of " << blockBytes;
            }
}

} // namespace
