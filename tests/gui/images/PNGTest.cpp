#include "gui/images/PNG.h"

#include <gtest/gtest.h>

#include "tests/gui/images/ImageUnderTest.h"
#include "tests/gui/images/PNGParts.h"

namespace
{

using namespace pngparts;

constexpr const char* LoadFailure = "Error loading a PNG file. 256";

/// Every byte takes every value somewhere, and no two indices have one colour.
void Paint(MBitmap& bitmap)
{
    const auto colour = [](int x, int y)
    { return MColor(x * 7 + y, x * 13 + 5 * y, x + 31 * y, 255 - x * 3 - y); };
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            if (bitmap.IsPaletted())
                *bitmap.GetIndexRow(y, x) = static_cast<std::uint8_t>(x * 5 + y * 16);
            else
                *bitmap.GetRow(y, x) = colour(x, y);
    for (int i = 0; i < MBitmap::PaletteSize && bitmap.IsPaletted(); ++i)
        bitmap.GetPalette()[static_cast<std::size_t>(i)] = colour(i, 3);
}

TEST(PNG, GivesBackWhatWasSaved)
{
    for (const bool isPaletted : {false, true})
        for (const auto& [width, height] : {std::pair(1, 1), std::pair(17, 5), std::pair(300, 40)})
        {
            MBitmap bitmap(width, height, isPaletted);
            Paint(bitmap);
            MMemoryStream stream;
            images::SavePNG(bitmap, stream);
            const std::int64_t end = stream.GetPosition();
            stream.WriteString("behind");
            stream.Seek(0, MStream::FromStart);

            LoadResult loaded;
            images::LoadPNG(stream, loaded.bitmap);
            EXPECT_EQ(stream.GetPosition(), end);
            ASSERT_EQ(loaded.bitmap.GetBounds(), bitmap.GetBounds());
            EXPECT_EQ(loaded.bitmap.GetClip(), bitmap.GetBounds());
            ASSERT_EQ(loaded.bitmap.IsPaletted(), isPaletted);
            EXPECT_TRUE(!isPaletted || loaded.bitmap.GetPalette() == bitmap.GetPalette());
            EXPECT_EQ(loaded.Colours(), ColoursOf(bitmap));
        }
}

struct FormatCase
{
    const char* what;
    Bytes file;
    bool isPaletted;
    std::vector<MColor> colours;
};

TEST(PNG, ReadsEveryKindOfPixel)
{
    const MColor black(0, 0, 0);
    const MColor white(255, 255, 255);
    Bytes palette = Chunk("PLTE", {1, 2, 3, 4, 5, 6});
    Append(palette, Chunk("tRNS", {9}));
    const FormatCase cases[] = {
        {"two greys", File(Header(3, 1, 1, 0), {0, 0b10100000}), false, {white, black, white}},
        {"16 bits a channel",
         File(Header(1, 1, 16, 2), {0, 0x12, 0xFF, 0x34, 0xFF, 0x56, 0xFF}),
         false,
         {MColor(0x12, 0x34, 0x56)}},
        {"grey and alpha", File(Header(1, 1, 8, 4), {0, 70, 80}), false, {MColor(70, 70, 70, 80)}},
        {"one transparent colour",
         File(Header(2, 1, 8, 2), {0, 1, 2, 3, 4, 5, 6}, Chunk("tRNS", {0, 1, 0, 2, 0, 3})),
         false,
         {MColor(1, 2, 3, 0), MColor(4, 5, 6)}},
        {"a palette of two, four indices a byte, one of them beyond",
         File(Header(3, 1, 2, 3), {0, 0b00011100}, palette),
         true,
         {MColor(1, 2, 3, 9), MColor(4, 5, 6), black}},
        // The first pass has the pixel (0, 0), the sixth the one beside it.
        {"interlaced",
         File(Header(2, 1, 8, 0, 1), {0, 10, 0, 20}),
         false,
         {MColor(10, 10, 10), MColor(20, 20, 20)}},
    };
    for (const FormatCase& row : cases)
    {
        LoadResult result;
        Load(images::LoadPNG, row.file, result);
        EXPECT_EQ(result.failure, "") << row.what;
        EXPECT_EQ(result.bitmap.IsPaletted(), row.isPaletted) << row.what;
        EXPECT_EQ(result.Colours(), row.colours) << row.what;
    }
}

TEST(PNG, EndingAnywhereIsRefused)
{
    const Bytes file =
        File(Header(2, 2, 8, 3), {0, 0, 1, 0, 1, 0}, Chunk("PLTE", {1, 2, 3, 4, 5, 6}));
    for (std::size_t size = 0; size < file.size(); ++size)
    {
        LoadResult result;
        Load(images::LoadPNG, std::span(file).first(size), result);
        EXPECT_EQ(result.failure, LoadFailure) << size;
        EXPECT_TRUE(result.IsUntouched()) << size;
    }
}

TEST(PNG, RefusesHostileFiles)
{
    struct
    {
        const char* what;
        Bytes file;
        const char* failure;
    } const cases[] = {
        {"257 colours", File(Header(1, 1, 8, 3), {0, 0}, Chunk("PLTE", Bytes(771))),
         "Error loading PNG palette. 256"},
        {"no palette", File(Header(1, 1, 8, 3), {0, 0}), LoadFailure},
        {"no rows", File(Header(1, 2, 8, 0), {0, 0}), LoadFailure},
        {"a filter that there is not", File(Header(1, 1, 8, 0), {9, 0}), LoadFailure},
        {"no pixel", File(Header(0, 1, 8, 0), {0, 0}), LoadFailure},
        {"too wide", File(Header(40'000, 1, 1, 0), {0, 0}), LoadFailure},
        {"16 GB", File(Header(32'768, 32'768, 16, 6), {0, 0}), LoadFailure},
        {"no image at all", Bytes(100, 'x'), LoadFailure},
    };
    for (const auto& row : cases)
    {
        LoadResult result;
        Load(images::LoadPNG, row.file, result);
        EXPECT_EQ(result.failure, row.failure) << row.what;
        EXPECT_TRUE(result.IsUntouched()) << row.what;
    }
}

/// Fails as a full disk does, behind some bytes.
class FullStream : public MMemoryStream
{
public:
    explicit FullStream(std::int64_t limitBytes) : limit(limitBytes) {}
    void Write(std::span<const std::byte> bytes) override
    {
        MMemoryStream::Write(bytes);
        if (GetPosition() > limit)
            throw MException("disk full", 12);
    }

private:
    std::int64_t limit;
};

TEST(PNG, PassesOnWhatTheStreamThrows)
{
    const MBitmap bitmap(300, 300);
    for (const int limit : {0, 20, 100})
    {
        FullStream stream(limit);
        try
        {
            images::SavePNG(bitmap, stream);
            ADD_FAILURE() << limit;
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(), "disk full");
            EXPECT_EQ(failure.code, 12);
        }
    }
    MMemoryStream stream;
    EXPECT_THROW(images::SavePNG(MBitmap(), stream), MException);
    EXPECT_EQ(stream.GetSize(), 0);
}

} // namespace
