#include "gui/images/TGA.h"

#include <gtest/gtest.h>

#include "tests/gui/images/ImageUnderTest.h"

namespace
{

using Bytes = std::vector<std::uint8_t>;

/// The types of the format are 1 for a colour map, 2 for true colour and 3 for grey; 8 more if
/// packed.
struct File
{
    std::uint8_t type;
    int width;
    int height;
    std::uint8_t bits;
    Bytes data;
    int mapCount = 0;
    std::uint8_t mapBits = 24;
    Bytes map{};
    std::uint8_t mapStart = 0;
    bool isTopDown = true;
    Bytes identifier{};

    Bytes Write() const
    {
        Bytes bytes;
        const auto add = [&](int number) { bytes.push_back(static_cast<std::uint8_t>(number)); };
        for (const int number :
             {static_cast<int>(identifier.size()), mapCount > 0 ? 1 : 0, int{type}, int{mapStart},
              0, mapCount, mapCount >> 8, int{mapBits}, 0, 0, 0, 0, width, width >> 8, height,
              height >> 8, int{bits}, isTopDown ? 0x20 : 0})
            add(number);
        for (const Bytes* part : {&identifier, &map, &data})
            for (const std::uint8_t each : *part)
                add(each);
        return bytes;
    }
};

MColor Grey(int value)
{
    return {value, value, value};
}

TEST(TGA, ReadsEveryKindOfPixel)
{
    const Bytes two = {1, 2, 3, 4, 5, 6};
    const MColor first(3, 2, 1);
    const MColor withAlpha(3, 2, 1, 4);
    struct
    {
        const char* what;
        File file;
        std::vector<MColor> colours;
    } const cases[] = {
        {"32 bits", {2, 1, 1, 32, {1, 2, 3, 4}}, {withAlpha}},
        {"24 bits", {2, 1, 1, 24, {1, 2, 3}}, {first}},
        {"16 bits", {2, 1, 1, 16, {0b00110000, 0b11111100}}, {MColor(248, 8, 128)}},
        {"8 bits", {3, 1, 1, 8, {77}}, {Grey(77)}},
        {"with an identifier", {3, 1, 1, 8, {7}, 0, 0, {}, 0, true, Bytes(255)}, {Grey(7)}},
        {"lowest row first", {3, 1, 2, 8, {1, 2}, 0, 0, {}, 0, false}, {Grey(2), Grey(1)}},
        {"two entries from 3 on",
         {1, 3, 1, 8, {4, 3, 5}, 2, 24, two, 3},
         {MColor(6, 5, 4), first, Grey(0)}},
        {"a map with alpha", {9, 2, 1, 8, {0x81, 0}, 1, 32, {1, 2, 3, 4}}, {withAlpha, withAlpha}},
        {"a run over the end of a row, a single pixel, a run beyond the end",
         {11, 3, 2, 8, {0x83, 9, 0x00, 7, 0xFF, 5}},
         {Grey(9), Grey(9), Grey(9), Grey(9), Grey(7), Grey(5)}},
    };
    for (const auto& row : cases)
    {
        Bytes bytes = row.file.Write();
        bytes.push_back(0);
        LoadResult result;
        Load(images::LoadTGA, bytes, result);
        EXPECT_EQ(result.failure, "") << row.what;
        EXPECT_EQ(result.bitmap.IsPaletted(), row.file.mapCount > 0) << row.what;
        EXPECT_EQ(result.Colours(), row.colours) << row.what;
        EXPECT_EQ(result.bitmap.GetClip(), result.bitmap.GetBounds()) << row.what;
        EXPECT_EQ(result.position, static_cast<std::int64_t>(bytes.size()) - 1) << row.what;
    }
}

TEST(TGA, EndingAnywhereIsRefused)
{
    const Bytes packed = {0x82, 0, 0x04, 0, 0, 0, 0, 0};
    const Bytes bytes = File{9, 4, 2, 8, packed, 1, 24, {1, 2, 3}, 0, true, {1, 2}}.Write();
    for (std::size_t size = 0; size < bytes.size(); ++size)
    {
        LoadResult result;
        Load(images::LoadTGA, std::span(bytes).first(size), result);
        EXPECT_EQ(result.failure, size < 18 ? "No TGA header present. 256"
                                            : "Could not read required data from stream. 256");
        EXPECT_TRUE(result.IsUntouched()) << size;
    }
}

TEST(TGA, RefusesOrPassesOverWhatIsNoImage)
{
    constexpr const char* BadHeader = "Invalid file contents. Invalid TGA header. 256";
    const Bytes map(2000);
    struct
    {
        const char* what;
        File file;
        const char* failure;
        bool isUntouched;
    } const cases[] = {
        {"257 entries", {1, 1, 1, 8, {0}, 257, 24, map}, BadHeader, true},
        {"entries beyond 256", {1, 1, 1, 8, {0}, 2, 24, map, 255}, BadHeader, true},
        {"entries of 16 bits", {1, 1, 1, 8, {0}, 2, 16, map}, BadHeader, true},
        {"entries of 40 bits", {1, 1, 1, 8, {0}, 2, 40, map}, BadHeader, true},
        {"no width", {2, 0, 1, 24, map}, "", false},
        {"a negative height", {2, 1, 0x8001, 24, map}, "", false},
        {"15 bits", {2, 1, 1, 15, map}, "", true},
        {"indices of 16 bits", {1, 1, 1, 16, map, 1, 24, {1, 2, 3}}, "", true},
        {"4 GB", {2, 32'767, 32'767, 32, {}}, "Bitmap is too large. 256", true},
    };
    for (const auto& row : cases)
    {
        LoadResult result;
        Load(images::LoadTGA, row.file.Write(), result);
        EXPECT_EQ(result.failure, row.failure) << row.what;
        EXPECT_EQ(result.IsUntouched(), row.isUntouched) << row.what;
        EXPECT_EQ(result.bitmap.IsEmpty(), !row.isUntouched) << row.what;
    }
}

} // namespace
