#include "foundation/xml/MResourcePack.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"

namespace
{

std::span<const std::byte> Bytes(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

std::string_view Text(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::vector<std::byte> SmallPack()
{
    MResourcePack pack;
    pack.AddFile("knob.png", Bytes("not really"));
    pack.AddFile("empty", {});
    pack.AddFile("style.xml", Bytes("<style/>"));
    MMemoryStream stream;
    pack.Save(stream);
    stream.Seek(0, MStream::FromStart);
    return {stream.GetData().begin(), stream.GetData().end()};
}

TEST(MResourcePack, KeepsFilesByName)
{
    const std::vector<std::byte> bytes = SmallPack();
    MMemoryStream stream(bytes);
    stream.Seek(0, MStream::FromEnd);
    stream.Write(Bytes("what follows"));
    stream.Seek(0, MStream::FromStart);

    MResourcePack pack;
    pack.Load(stream);
    EXPECT_EQ(Text(pack.FindFile("KNOB.png")), "not really");
    EXPECT_EQ(Text(pack.FindFile("style.xml")), "<style/>");
    EXPECT_TRUE(pack.FindFile("empty").empty());
    EXPECT_TRUE(pack.FindFile("none").empty());
    EXPECT_EQ(Text(stream.GetData()), "what follows");
}

TEST(MResourcePack, ReadsFilesInMemoryWhereTheyLie)
{
    const std::vector<std::byte> bytes = SmallPack();
    MResourcePack pack;
    pack.Refer(bytes);
    EXPECT_EQ(Text(pack.FindFile("style.xml")), "<style/>");
    EXPECT_EQ(std::to_address(pack.GetAttachment().end()), bytes.data() + bytes.size());

    pack.AddFile("more", Bytes("more"));
    EXPECT_EQ(Text(pack.GetAttachment()), "not really<style/>more");
    EXPECT_EQ(bytes, SmallPack()) << "as it was";
}

TEST(MResourcePack, HasThreeWordsBeforeTreeAndAttachment)
{
    const std::vector<std::byte> bytes = SmallPack();
    const std::size_t attachment = std::string_view("not really<style/>").size();
    const std::size_t tree = bytes.size() - 12 - attachment;
    const std::byte expected[] = {std::byte(0),          std::byte(0), std::byte(0), std::byte(0),
                                  std::byte(tree),       std::byte(0), std::byte(0), std::byte(0),
                                  std::byte(attachment), std::byte(0), std::byte(0), std::byte(0)};
    EXPECT_TRUE(std::ranges::equal(std::span(bytes).first(12), expected));
    EXPECT_EQ(bytes[12], std::byte(0x78)) << "a zlib header";
}

TEST(MResourcePack, RefusesWhatIsNotWhole)
{
    const std::vector<std::byte> whole = SmallPack();
    for (std::size_t length = 0; length < whole.size(); ++length)
    {
        const std::span<const std::byte> start(whole.data(), length);
        MMemoryStream stream(start);
        MResourcePack pack;
        EXPECT_THROW(pack.Load(stream), MException) << length;
        EXPECT_THROW(pack.Refer(start), MException) << length;
    }
    MMemoryStream stream(whole);
    MResourcePack pack;
    EXPECT_THROW(pack.Load(stream, 17), MException) << "18 bytes are attached";
    stream.Seek(0, MStream::FromStart);
    EXPECT_NO_THROW(pack.Load(stream, 18));
}

TEST(MResourcePack, FindsNothingOutsideTheAttachment)
{
    struct Case
    {
        const char* offset;
        const char* size;
        const char* found;
    };
    constexpr Case Cases[] = {
        {"0", "4", "abcd"}, {"3", "1", "d"},   {"4", "0", ""},  {"3", "2", ""},
        {"-1", "2", ""},    {"5", "0", ""},    {"0", "-4", ""}, {"2", "9223372036854775807", ""},
        {"x", "4", "abcd"}, {"0", "many", ""},
    };
    MResourcePack pack;
    pack.AddFile("file", Bytes("abcd"));
    MXMLItem& file = pack.GetTree().GetRequiredSubItem("file");
    for (const Case& row : Cases)
    {
        file.SetAttribute("offset", row.offset);
        file.SetAttribute("size", row.size);
        EXPECT_EQ(Text(pack.FindFile("file")), row.found) << row.offset << ", " << row.size;
    }
}

} // namespace
