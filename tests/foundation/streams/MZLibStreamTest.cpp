#include "foundation/streams/MZLibStream.h"

#include <algorithm>
#include <memory>
#include <random>

#include <zlib.h>

#include "foundation/streams/MMemoryStream.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

using enum MZLibStream::Direction;

const std::string InvalidContent = "Source compressed stream has invalid content. (256)";
const std::string TooLong = "Source compressed stream is too long. (256)";

/// By the library itself, in one go.
Bytes Compress(std::span<const std::byte> plain, int level = 9)
{
    const auto plainSize = static_cast<uLong>(plain.size());
    uLongf size = compressBound(plainSize);
    Bytes compressed(size);
    compress2(reinterpret_cast<Bytef*>(compressed.data()), &size,
              reinterpret_cast<const Bytef*>(plain.data()), plainSize, level);
    compressed.resize(size);
    return compressed;
}

/// Writes @p plain in pieces of 0 to @p largestPiece bytes.
Bytes WriteInPieces(std::span<const std::byte> plain, std::size_t largestPiece, int quality = 100)
{
    MMemoryStream target;
    MZLibStream writer(target, Write, quality);
    std::mt19937 random(7);
    while (!plain.empty())
    {
        const std::size_t piece = std::min(plain.size(), random() % (largestPiece + 1));
        writer.Write(plain.first(piece));
        plain = plain.subspan(piece);
    }
    writer.Finish();
    writer.Close();
    target.Seek(0, MStream::FromStart);
    const auto data = target.GetData();
    return {data.begin(), data.end()};
}

/// What reading @p compressed to its end gives, and how it ends.
struct Outcome
{
    Bytes plain;
    std::string failure;
};

Outcome ReadInPieces(std::span<const std::byte> compressed, std::size_t piece,
                     std::int64_t limit = -1)
{
    MMemoryStream source = MMemoryStream::Refer(compressed);
    MZLibStream reader(source, Read);
    if (limit >= 0)
        reader.LimitOutput(limit);
    Outcome outcome;
    Bytes buffer(piece);
    outcome.failure = Thrown(
        [&]
        {
            while (const std::size_t count = reader.Read(buffer))
                outcome.plain.insert(outcome.plain.end(), buffer.begin(),
                                     buffer.begin() + static_cast<std::ptrdiff_t>(count));
        });
    return outcome;
}

TEST(MZLibStream, WhatIsWrittenComesBackWhateverThePieces)
{
    for (const std::size_t size : {1U, 7U, 4095U, 4096U, 4097U, 10'000U, 1'000'000U})
    {
        const Bytes plain = RandomBytes(size);
        for (const std::size_t pieces : {std::size_t{13}, std::size_t{5000}, size})
        {
            if (size / pieces > 10'000)
                continue;
            const Bytes compressed = WriteInPieces(plain, pieces, size > 10'000 ? 11 : 100);
            for (const std::size_t piece : {7U, 4096U})
            {
                const Outcome outcome = ReadInPieces(compressed, piece);
                EXPECT_EQ(outcome.failure, "nothing") << size;
                EXPECT_TRUE(outcome.plain == plain) << size << " in " << pieces << ", " << piece;
            }
        }
    }
}

TEST(MZLibStream, WritesAndReadsWhatTheLibraryDoes)
{
    const Bytes plain = RandomBytes(30'000);
    struct Case
    {
        int quality, level;
    };
    constexpr Case Cases[] = {{-5, 0}, {1, 0},  {10, 0},  {11, 1},
                              {55, 5}, {99, 9}, {100, 9}, {1000, 9}};
    for (const Case& row : Cases)
        EXPECT_TRUE(WriteInPieces(plain, 900, row.quality) == Compress(plain, row.level))
            << row.quality;
    for (const int level : {0, 1, 6, 9})
        EXPECT_TRUE(ReadInPieces(Compress(plain, level), 7).plain == plain) << level;
}

TEST(MZLibStream, NothingBecomesEightBytesAndComesBackAsNothing)
{
    const Bytes compressed = WriteInPieces({}, 1);
    EXPECT_EQ(compressed.size(), 8u);
    for (const std::span<const std::byte> source : {std::span<const std::byte>(compressed), {}})
    {
        const Outcome outcome = ReadInPieces(source, 100);
        EXPECT_EQ(outcome.failure, "nothing") << "from " << source.size() << " bytes";
        EXPECT_TRUE(outcome.plain.empty());
    }
}

TEST(MZLibStream, WhatFollowsTheEndDoesNotCount)
{
    Bytes compressed = Compress(BytesOf("twelve bytes"));
    compressed.resize(compressed.size() + 9000, std::byte{0xAA});
    MMemoryStream source(compressed);
    MZLibStream reader(source, Read);
    EXPECT_EQ(TextOf(ReadAll(reader)), "twelve bytes");
    EXPECT_EQ(reader.GetPosition(), 12);
    reader.ReadToEnd();
    EXPECT_EQ(reader.GetPosition(), 12);
}

/// All cuts of a stream of several blocks and of the shortest ones. Only where the last block is
/// whole has everything been delivered, and only then does ReadToEnd forgive the missing checksum.
TEST(MZLibStream, DataThatStopEarlyAreRefused)
{
    struct Case
    {
        const char* what;
        std::size_t size;
        int level;
    };
    constexpr Case Cases[] = {
        {"empty", 0, 9}, {"one byte", 1, 9}, {"stored", 100, 0}, {"deflated", 3000, 9}};
    for (const Case& row : Cases)
    {
        const Bytes plain = RandomBytes(row.size);
        const Bytes compressed = Compress(plain, row.level);
        for (std::size_t cut = 0; cut < compressed.size(); ++cut)
            for (const std::size_t piece : {1U, 7U, 10'000U})
            {
                const std::span<const std::byte> source = std::span(compressed).first(cut);
                const bool isWhole = cut >= compressed.size() - 4;
                const Outcome outcome = ReadInPieces(source, piece);
                EXPECT_EQ(outcome.failure, cut == 0 ? "nothing" : InvalidContent)
                    << row.what << " cut at " << cut;
                EXPECT_TRUE(outcome.plain == plain || !isWhole) << row.what << " cut at " << cut;

                MMemoryStream target = MMemoryStream::Refer(source);
                MZLibStream reader(target, Read);
                EXPECT_EQ(Thrown([&] { reader.ReadToEnd(); }),
                          isWhole || cut == 0 ? "nothing" : InvalidContent)
                    << row.what << " cut at " << cut;
            }
    }
}

TEST(MZLibStream, CopyingDataWithoutTheirChecksumFails)
{
    const Bytes compressed = Compress(BytesOf("all of the text"));
    MMemoryStream source = MMemoryStream::Refer(std::span(compressed).first(compressed.size() - 1));
    MZLibStream reader(source, Read);
    MMemoryStream target;
    EXPECT_EQ(Thrown([&] { CopyTo(reader, target); }), InvalidContent);
}

TEST(MZLibStream, WrongBytesAreRefusedAndNeverGoUnnoticed)
{
    const Bytes plain = RandomBytes(600);
    const Bytes compressed = Compress(plain);
    for (std::size_t at = 0; at < compressed.size(); ++at)
        for (unsigned bit = 0; bit < 8; ++bit)
        {
            Bytes broken = compressed;
            broken[at] ^= std::byte{1} << bit;
            const Outcome outcome = ReadInPieces(broken, 100);
            // A match of blanks may as well begin somewhere else.
            EXPECT_TRUE(outcome.failure == InvalidContent ||
                        (outcome.failure == "nothing" && outcome.plain == plain))
                << at << ", bit " << bit << ": " << outcome.failure;
        }
}

TEST(MZLibStream, RefusesForeignData)
{
    struct Case
    {
        const char* what;
        Bytes bytes;
    };
    const auto make = [](std::initializer_list<int> values)
    {
        Bytes bytes;
        for (const int value : values)
            bytes.push_back(static_cast<std::byte>(value));
        return bytes;
    };
    const Case cases[] = {
        {"text", Bytes(100, std::byte{'x'})},
        {"raw deflate", make({0x03, 0x00})},
        {"gzip", make({0x1F, 0x8B, 8, 0, 0, 0, 0, 0, 0, 3, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0})},
        {"preset dictionary", make({0x78, 0xBB, 0, 0, 0, 1, 3, 0, 0, 0, 0, 1})},
        {"wrong checksum", make({0x78, 0xDA, 3, 0, 0, 0, 0, 2})},
    };
    for (const Case& row : cases)
    {
        MMemoryStream source = MMemoryStream::Refer(row.bytes);
        MZLibStream reader(source, Read);
        Bytes buffer(10);
        for (int attempt = 0; attempt < 2; ++attempt)
            EXPECT_EQ(Thrown([&] { reader.Read(buffer); }), InvalidContent) << row.what;
        EXPECT_EQ(Thrown([&] { reader.ReadToEnd(); }), InvalidContent) << row.what;
    }
}

TEST(MZLibStream, DeliversUpToItsLimit)
{
    const Bytes plain = RandomBytes(10'000);
    const Bytes compressed = Compress(plain);
    for (const std::size_t piece : {7U, 20'000U})
    {
        EXPECT_EQ(ReadInPieces(compressed, piece, 10'000).failure, "nothing");
        EXPECT_EQ(ReadInPieces(compressed, piece, 9'999).failure, TooLong);
    }
    MMemoryStream source = MMemoryStream::Refer(compressed);
    MZLibStream reader(source, Read);
    reader.LimitOutput(9'999);
    EXPECT_EQ(Thrown([&] { reader.ReadToEnd(); }), TooLong);
}

TEST(MZLibStream, AWriterHasToFinish)
{
    const std::string notTerminated = "ZLIB stream has not been terminated. (256)";
    MMemoryStream target;
    EXPECT_EQ(Thrown([&] { MZLibStream writer(target, Write); }), notTerminated);
    EXPECT_EQ(Thrown(
                  [&]
                  {
                      const auto writer = std::make_unique<MZLibStream>(target, Write);
                      EXPECT_EQ(Thrown([&] { writer->Close(); }), notTerminated);
                      writer->Finish();
                      writer->Close();
                  }),
              "nothing");
    EXPECT_EQ(Thrown(
                  [&]
                  {
                      const MZLibStream writer(target, Write);
                      throw MException("the first failure");
                  }),
              "the first failure (0)")
        << "while another exception is on its way";
}

TEST(MZLibStream, ServesOneDirectionUntilItsEnd)
{
    MMemoryStream target;
    Bytes buffer(10);
    const std::string noWrite = "Service \"write to stream\" is not implemented. (1)";
    const std::string noRead = "Service \"read from stream\" is not implemented. (1)";
    MZLibStream writer(target, Write);
    EXPECT_EQ(Thrown([&] { writer.Read(buffer); }), noRead);
    EXPECT_EQ(Thrown([&] { writer.ReadToEnd(); }), noRead);
    writer.Finish();
    writer.Finish();
    EXPECT_EQ(target.GetSize(), 8);
    EXPECT_EQ(Thrown([&] { writer.Write(buffer); }), noWrite);

    target.Seek(0, MStream::FromStart);
    MZLibStream reader(target, Read);
    EXPECT_EQ(Thrown([&] { reader.Write(buffer); }), noWrite);
    reader.Close();
    EXPECT_EQ(Thrown([&] { reader.Read(buffer); }), noRead);
}

TEST(MZLibStream, SeeksForwardByReading)
{
    const Bytes plain = RandomBytes(5000);
    const Bytes compressed = Compress(plain);
    MMemoryStream source = MMemoryStream::Refer(compressed);
    MZLibStream reader(source, Read);
    reader.Seek(4990, MStream::FromStart);
    EXPECT_EQ(Thrown([&] { reader.Seek(0, MStream::FromStart); }),
              "Service \"backward seek in a stream\" is not implemented. (1)");
    EXPECT_TRUE(ReadAll(reader) == Bytes(plain.end() - 10, plain.end()));
}

} // namespace
