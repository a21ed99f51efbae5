#include "foundation/streams/MMemoryStream.h"

#include <algorithm>
#include <limits>
#include <random>
#include <thread>

#include "tests/foundation/streams/StreamTest.h"

namespace
{

std::string Contents(MMemoryStream stream)
{
    stream.Seek(0, MStream::FromStart);
    return TextOf(stream.GetData());
}

TEST(MMemoryStream, SeeksStayWithinTheWrittenBytes)
{
    struct Case
    {
        std::int64_t offset;
        int origin;
        std::int64_t expected;
    };
    constexpr auto Largest = std::numeric_limits<std::int64_t>::max();
    constexpr Case Cases[] = {
        {3, MStream::FromStart, 3},          {-1, MStream::FromStart, 0},
        {11, MStream::FromStart, 10},        {Largest, MStream::FromStart, 10},
        {2, MStream::FromCurrent, 6},        {-2, MStream::FromCurrent, 2},
        {-5, MStream::FromCurrent, 0},       {7, MStream::FromCurrent, 10},
        {Largest, MStream::FromCurrent, 10}, {-Largest - 1, MStream::FromCurrent, 0},
        {-1, MStream::FromEnd, 9},           {1, MStream::FromEnd, 10},
        {-11, MStream::FromEnd, 0},          {-Largest - 1, MStream::FromEnd, 0},
    };
    for (const Case& row : Cases)
    {
        MMemoryStream stream(BytesOf("0123456789"));
        stream.Seek(4, MStream::FromStart);
        stream.Seek(row.offset, row.origin);
        EXPECT_EQ(stream.GetPosition(), row.expected)
            << row.offset << " from origin " << row.origin;
        EXPECT_EQ(stream.EndOfStream(), row.expected == 10);
        EXPECT_EQ(TextOf(stream.GetData()),
                  std::string("0123456789").substr(static_cast<std::size_t>(row.expected)));
    }
    MMemoryStream stream;
    EXPECT_EQ(Thrown([&] { stream.Seek(0, 3); }), "Invalid seek origin. (2)");
    EXPECT_TRUE(stream.EndOfStream());
    EXPECT_TRUE(stream.GetData().empty());
}

TEST(MMemoryStream, AWriteBehindTheEndAppends)
{
    MMemoryStream stream(BytesOf("abc"));
    stream.Seek(1000, MStream::FromStart);
    stream.Write(BytesOf("de"));
    EXPECT_EQ(Contents(stream), "abcde");
    Bytes buffer(5);
    EXPECT_EQ(stream.Read(buffer), 0u);
}

/// Random writes, seeks and reads beside a plain string.
TEST(MMemoryStream, BehavesAsAStringWithAPosition)
{
    std::mt19937 random(3);
    MMemoryStream stream;
    std::string model;
    std::size_t position = 0;
    for (int step = 0; step < 3000; ++step)
    {
        const std::size_t count = random() % 100;
        switch (random() % 3)
        {
        case 0:
        {
            const std::string text = TextOf(RandomBytes(count, random()));
            model.replace(position, std::min(count, model.size() - position), text);
            stream.Write(BytesOf(text));
            position += count;
            break;
        }
        case 1:
            position = random() % (model.size() + 1);
            stream.Seek(static_cast<std::int64_t>(position), MStream::FromStart);
            break;
        default:
            Bytes buffer(count);
            buffer.resize(stream.Read(buffer));
            ASSERT_EQ(TextOf(buffer), model.substr(position, count)) << step;
            position += buffer.size();
        }
        ASSERT_EQ(stream.GetPosition(), static_cast<std::int64_t>(position)) << step;
        ASSERT_EQ(stream.GetSize(), static_cast<std::int64_t>(model.size())) << step;
    }
    EXPECT_EQ(Contents(stream), model);
}

TEST(MMemoryStream, WritesPartsOfItself)
{
    const std::string text = TextOf(RandomBytes(1 << 20)); // fills its block
    MMemoryStream stream(BytesOf(text));
    const auto appendTail = [](MMemoryStream& target)
    {
        target.Seek(10, MStream::FromStart);
        const auto tail = target.GetData();
        target.Seek(0, MStream::FromEnd);
        target.Write(tail);
    };
    MMemoryStream copy = stream;
    appendTail(copy);
    EXPECT_TRUE(Contents(copy) == text + text.substr(10)) << "into a block of its own";
    EXPECT_TRUE(Contents(stream) == text);
    copy = MMemoryStream();
    appendTail(stream);
    EXPECT_TRUE(Contents(stream) == text + text.substr(10)) << "into a block that grows";

    stream.Seek(0, MStream::FromStart);
    const auto head = stream.GetData().first(20);
    stream.Seek(5, MStream::FromStart);
    stream.Write(head);
    EXPECT_EQ(Contents(stream).substr(0, 30),
              text.substr(0, 5) + text.substr(0, 20) + text.substr(25, 5))
        << "over itself";
}

TEST(MMemoryStream, AWriteIsSeenByNoCopy)
{
    MMemoryStream first(BytesOf("shared"));
    MMemoryStream second = first;
    EXPECT_EQ(first.GetData().data(), second.GetData().data()) << "one block until then";
    first.Write(BytesOf("F"));
    EXPECT_EQ(Contents(first), "Fhared");
    EXPECT_EQ(Contents(second), "shared");
    second = first;
    second.Write(BytesOf("!"));
    EXPECT_EQ(Contents(first), "Fhared");
    EXPECT_EQ(Contents(second), "F!ared");
}

TEST(MMemoryStream, BytesOfOthersAreReadInPlaceAndNeverWritten)
{
    const std::string text = "not ours";
    MMemoryStream stream = MMemoryStream::Refer(BytesOf(text));
    EXPECT_EQ(stream.GetData().data(), BytesOf(text).data());
    stream.Write(BytesOf("NOT"));
    EXPECT_EQ(text, "not ours");
    EXPECT_EQ(Contents(stream), "NOT ours");
}

TEST(MMemoryStream, OffersNothingElse)
{
    MMemoryStream stream;
    EXPECT_EQ(Thrown([&] { stream.Truncate(); }),
              "Service \"truncate stream\" is not implemented. (1)");
    EXPECT_EQ(Thrown([&] { stream.Flush(); }), "nothing");
}

TEST(MMemoryBlockThreads, CopiesMayLiveOnDifferentThreads)
{
    const MMemoryBlock original(BytesOf("original"));
    const auto work = [copy = original]() mutable
    {
        for (int i = 0; i < 1000; ++i)
        {
            MMemoryBlock other = copy;
            std::ranges::copy(BytesOf("changed!"), other.MakeWritable(8, 8));
            if (i % 2 == 0)
                copy = other;
        }
    };
    std::thread one(work);
    std::thread two(work);
    one.join();
    two.join();
    EXPECT_EQ(TextOf({original.GetData(), 8}), "original");
}

} // namespace
