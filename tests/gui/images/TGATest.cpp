#include "gui/images/TGA.h"

#include <gtest/gtest.h>

#include "tests/gui/images/ImageUnderTest.h"

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t TopDown = 0x20;
constexpr std::uint8_t Plain = 2;
constexpr std::uint8_t Packed = 10;

struct File
{
    std::uint8_t type = Plain;
    int width = 1;
    int height = 1;
    std::uint8_t bits = 24;
    std::uint8_t descriptor = TopDown;
    Bytes data{};
    Bytes map{};
    int mapCount = 0;
    std::uint8_t mapBits = 24;
    std::uint8_t mapStart = 0;
    Bytes identifier{};

    Bytes Write() const
    {
        const auto low = [](int number) { return static_cast<std::uint8_t>(number); };
        const auto high = [](int number) { return static_cast<std::uint8_t>(number >> 8); };
        Bytes bytes = {low(static_cast<int>(identifier.size())),
                       low(mapCount > 0 ? 1 : 0),
                       type,
                       mapStart,
                       0,
                       low(mapCount),
                       high(mapCount),
                       mapBits,
                       0,
                       0,
                       0,
                       0,
                       low(width),
                       high(width),
                       low(height),
                       high(height),
                       bits,
                       descriptor};
        for (const Bytes& part : {identifier, map, data})
            bytes.insert(bytes.end(), part.begin(), part.end());
        return bytes;
    }
};

const MColor Black(0, 0, 0);

TEST(TGA, ReadsEveryKindOfPixel)
{
    struct
    {
        const char* what;
        File file;
        std::vector<MColor> colours;
    } const cases[] = {
        {"32 bits", {.bits = 32, .data = {1, 2, 3, 4}}, {MColor(3, 2, 1, 4)}},
        {"24 bits", {.data = {1, 2, 3}}, {MColor(3, 2, 1)}},
        // Red 31, green 1, blue 16 and a top bit that does not count.
        {"16 bits", {.bits = 16, .data = {0b00110000, 0b11111100}}, {MColor(248, 8, 128)}},
        {"8 bits", {.bits = 8, .data = {77}}, {MColor(77, 77, 77)}},
        {"an identifier is passed over",
         {.data = {1, 2, 3}, .identifier = Bytes(255)},
         {MColor(3, 2, 1)}},
        {"the lowest row first",
         {.width = 1, .height = 3, .bits = 8, .descriptor = 0, .data = {1, 2, 3}},
         {MColor(3, 3, 3), MColor(2, 2, 2), MColor(1, 1, 1)}},
        {"a map of two from entry 3 on",
         {.type = 1,
          .width = 3,
          .bits = 8,
          .data = {4, 3, 5},
          .map = {1, 2, 3, 4, 5, 6},
          .mapCount = 2,
          .mapStart = 3},
         {MColor(6, 5, 4), MColor(3, 2, 1), Black}},
        {"a map with alpha",
         {.type = 9,
          .width = 2,
          .bits = 8,
          .data = {0x81, 0},
          .map = {1, 2, 3, 4},
          .mapCount = 1,
          .mapBits = 32},
         {MColor(3, 2, 1, 4), MColor(3, 2, 1, 4)}},
        {"a run over the end of a row, then single pixels, then a run beyond the end",
         {.type = Packed, .width = 3, .height = 2, .bits = 8, .data = {0x83, 9, 0x00, 7, 0xFF, 5}},
         {MColor(9, 9, 9), MColor(9, 9, 9), MColor(9, 9, 9), MColor(9, 9, 9), MColor(7, 7, 7),
          MColor(5, 5, 5)}},
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
    const Bytes bytes = File{
        .type = 9,
        .width = 4,
        .height = 2,
        .bits = 8,
        .data = {0x82, 0, 0x04, 0, 0, 0, 0, 0},
        .map = {1, 2, 3},
        .mapCount = 1,
        .identifier = {1,
                       2}}.Write();
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
    struct
    {
        const char* what;
        File file;
        const char* failure;
        bool isUntouched;
    } const cases[] = {
        {"257 entries", {.bits = 8, .map = Bytes(1000), .mapCount = 257}, BadHeader, true},
        {"entries beyond 256",
         {.bits = 8, .map = Bytes(1000), .mapCount = 2, .mapStart = 255},
         BadHeader,
         true},
        {"entries of 16 bits",
         {.bits = 8, .map = Bytes(1000), .mapCount = 2, .mapBits = 16},
         BadHeader,
         true},
        {"entries of 40 bits",
         {.bits = 8, .map = Bytes(1000), .mapCount = 2, .mapBits = 40},
         BadHeader,
         true},
        {"no width", {.width = 0, .data = Bytes(10)}, "", false},
        {"a negative height", {.height = 0x8001, .data = Bytes(10)}, "", false},
        {"15 bits", {.bits = 15, .data = Bytes(10)}, "", true},
        {"indices of 16 bits",
         {.bits = 16, .data = Bytes(10), .map = Bytes(3), .mapCount = 1},
         "",
         true},
        {"4 GB", {.width = 32'767, .height = 32'767, .bits = 32}, "Bitmap is too large. 256", true},
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
