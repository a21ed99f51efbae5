#include "foundation/streams/MStream.h"

#include <algorithm>
#include <functional>
#include <limits>

#include "foundation/streams/MMemoryStream.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

/// Reads and nothing else, as a socket does; remembers how it was asked.
class ReadingStream : public MStream
{
public:
    explicit ReadingStream(std::string_view text) : source(BytesOf(text)) {}

    std::size_t Read(std::span<std::byte> buffer) override
    {
        largestRead = std::max(largestRead, buffer.size());
        return source.Read(buffer);
    }
    std::int64_t GetPosition() override { return source.GetPosition(); }
    std::int64_t GetSize() override { return source.GetSize(); }

    std::size_t largestRead = 0;

private:
    MMemoryStream source;
};

/// Only takes what is written.
class WritingStream : public MStream
{
public:
    void Write(std::span<const std::byte> bytes) override
    {
        largestWrite = std::max(largestWrite, bytes.size());
        written += TextOf(bytes);
    }

    std::size_t largestWrite = 0;
    std::string written;
};

TEST(MStream, WhatAStreamCannotDoNamesTheService)
{
    MStream stream;
    std::byte byte{};
    char character = 0;
    struct Case
    {
        const char* service;
        std::function<void()> use;
    };
    const Case cases[] = {
        {"return substream", [&] { stream.GetSubStream(); }},
        {"write to stream",
         [&] {
             stream.Write({&byte, 1});
         }},
        {"write to stream", [&] { stream.WritePad(1); }},
        {"write to stream", [&] { stream.WriteString("text"); }},
        {"write to stream", [&] { stream.WriteLine(""); }},
        {"read from stream",
         [&] {
             stream.Read({&byte, 1});
         }},
        {"get stream position", [&] { stream.GetPosition(); }},
        {"get stream position", [&] { stream.Seek(0, MStream::FromStart); }},
        {"stream size detection", [&] { stream.Seek(0, MStream::FromEnd); }},
        {"read from stream", [&] { stream.Seek(1, MStream::FromCurrent); }},
        {"backward seek in a stream", [&] { stream.Seek(-1, MStream::FromCurrent); }},
        {"flush stream", [&] { stream.Flush(); }},
        {"end of stream test", [&] { stream.EndOfStream(); }},
        {"truncate stream", [&] { stream.Truncate(); }},
        {"stream size detection", [&] { stream.GetSize(); }},
    };
    for (const Case& row : cases)
        EXPECT_EQ(Thrown(row.use),
                  std::string("Service \"") + row.service + "\" is not implemented. (1)");
    EXPECT_EQ(Thrown([&] { stream.WritePad(-1); }), "nothing");
    EXPECT_EQ(Thrown([&] { stream.Close(); }), "nothing");
    EXPECT_EQ(stream.ReadLine({&character, 1}), MStream::LineEnd::Full);
}

TEST(MStream, SeeksForwardByReading)
{
    const std::string text = std::string(3000, '.') + "target" + std::string(10, '.');
    struct Case
    {
        std::int64_t start, offset;
        int origin;
        std::int64_t expected; ///< position, or -1 for a refused step back
    };
    constexpr auto Largest = std::numeric_limits<std::int64_t>::max();
    constexpr Case Cases[] = {
        {0, 3000, MStream::FromStart, 3000},   {100, 3000, MStream::FromStart, 3000},
        {100, 100, MStream::FromStart, 100},   {101, 100, MStream::FromStart, -1},
        {7, 2993, MStream::FromCurrent, 3000}, {7, -1, MStream::FromCurrent, -1},
        {7, -16, MStream::FromEnd, 3000},      {3000, -16, MStream::FromEnd, 3000},
        {3001, -16, MStream::FromEnd, -1},     {7, 5, MStream::FromEnd, 3016},
        {7, Largest, MStream::FromEnd, 3016},  {7, -Largest - 1, MStream::FromStart, -1},
    };
    for (const Case& row : Cases)
    {
        ReadingStream stream(text);
        stream.Seek(row.start, MStream::FromCurrent);
        const std::string failure = Thrown([&] { stream.Seek(row.offset, row.origin); });
        EXPECT_EQ(failure, row.expected >= 0
                               ? "nothing"
                               : "Service \"backward seek in a stream\" is not implemented. (1)");
        EXPECT_EQ(stream.GetPosition(), row.expected >= 0 ? row.expected : row.start)
            << row.offset << " from origin " << row.origin;
        EXPECT_LE(stream.largestRead, 1024u);
    }
    for (const int origin : {-1, 3})
    {
        ReadingStream stream(text);
        EXPECT_EQ(Thrown([&] { stream.Seek(0, origin); }), "Invalid seek origin. (2)");
    }
}

TEST(MStream, ReadsLinesOfEveryKind)
{
    struct Line
    {
        const char* text;
        int code;
    };
    struct Case
    {
        std::string source;
        std::vector<Line> lines;
    };
    const Case cases[] = {
        {"a\r\nb", {{"a", 0}, {"b", 0}, {"", 2}}},
        {"\n\r\nx\n", {{"", 0}, {"", 0}, {"x", 0}, {"", 2}}},
        {"\r", {{"", 0}, {"", 2}}},
        {std::string("a\0b", 3), {{"a", 0}, {"b", 0}, {"", 2}}},
        {"a\rb\n", {{"ab", 0}, {"", 2}}},
        // Seven characters and the terminator fill the buffer.
        {"sixsix\n!", {{"sixsix", 0}, {"!", 0}, {"", 2}}},
        {"seven77\n!", {{"seven77", 1}, {"", 0}, {"!", 0}, {"", 2}}},
        {"eightggg\n", {{"eightgg", 1}, {"g", 0}, {"", 2}}},
    };
    for (const Case& row : cases)
    {
        ReadingStream stream(row.source);
        for (const Line& line : row.lines)
        {
            char buffer[8];
            std::ranges::fill(buffer, '#');
            EXPECT_EQ(static_cast<int>(stream.ReadLine(buffer)), line.code) << row.source;
            EXPECT_STREQ(buffer, line.text) << row.source;
        }
    }
}

TEST(MStream, RequiredLinesHaveAnyLength)
{
    for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 5000U})
    {
        const std::string line(length, 'x');
        ReadingStream stream(std::string(line).append("\r\n").append(line).append("end"));
        EXPECT_EQ(ReadRequiredLine(stream).ToUTF8(), line);
        EXPECT_EQ(ReadRequiredLine(stream).ToUTF8(), line + "end");
        EXPECT_EQ(Thrown([&] { ReadRequiredLine(stream); }),
                  "Could not load a line from stream. (256)");
    }
}

TEST(MStream, WritesInPiecesTheLowBytesOfTexts)
{
    WritingStream stream;
    stream.WritePad(2500);
    EXPECT_EQ(stream.written, std::string(2500, '\0'));
    EXPECT_EQ(stream.largestWrite, 1024u);

    stream.written.clear();
    stream.WriteString("literal \xE9");
    stream.WriteLine(MString::FromUTF16(u" wide \u00E9\u2603"));
    EXPECT_EQ(stream.written, "literal \xE9 wide \xE9\x03\n");

    stream.written.clear();
    const std::string text(3000, 'y');
    stream.WriteString(MString::FromNarrow(text));
    EXPECT_EQ(stream.written, text);
}

TEST(MStream, ReadsExactlyOrFailsAtTheEnd)
{
    ReadingStream stream("abcde");
    Bytes buffer(3);
    ReadExactly(stream, buffer);
    EXPECT_EQ(TextOf(buffer), "abc");
    EXPECT_EQ(Thrown([&] { ReadExactly(stream, buffer); }),
              "Could not read required data from stream. (256)");
    EXPECT_EQ(stream.GetPosition(), 5);
    EXPECT_EQ(Thrown([&] { ReadExactly(stream, {}); }), "nothing");
}

TEST(MStream, CopiesWhatRemains)
{
    const std::string text = TextOf(RandomBytes(2500));
    for (const std::int64_t from : {0, 452, 2499, 2500})
    {
        ReadingStream source(text);
        source.Seek(from, MStream::FromCurrent);
        WritingStream target;
        CopyTo(source, target);
        EXPECT_EQ(target.written, text.substr(static_cast<std::size_t>(from)));
        EXPECT_LE(target.largestWrite, 1024u);
    }
}

} // namespace
