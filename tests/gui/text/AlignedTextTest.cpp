#include "gui/text/AlignedText.h"

#include <climits>
#include <cstddef>
#include <cstdlib>

#include <gtest/gtest.h>

#include "foundation/streams/MStdFileStream.h"
#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"
#include "gui/images/PNG.h"
#include "gui/text/MFont.h"

namespace
{

using namespace alignedtext;

constexpr MColor Paper(20, 30, 40);
constexpr MColor InkColour(250, 200, 150, 200);
constexpr int Width = 300;
constexpr int Height = 120;
constexpr std::ptrdiff_t PixelCount = std::ptrdiff_t{Width} * Height;

class AlignedTextOut : public testing::Test
{
protected:
    AlignedTextOut()
    {
        Clear(bitmap);
        Clear(expected);
    }

    static void Clear(MBitmap& cleared)
    {
        cleared.Create(Width, Height);
        MDrawerToMBitmap(cleared).FillRectangle(0, 0, Width, Height, Paper, MColorOp::Copy);
    }
    static bool AreSame(const MBitmap& a, const MBitmap& b)
    {
        return std::equal(a.GetRow(0), a.GetRow(0) + PixelCount, b.GetRow(0));
    }
    static MRectangle Box(int x1, int y1, int x2, int y2) { return {x1, y1, x2, y2}; }
    static void Write(MDrawer& target, const MFont& used, const MRectangle& box,
                      const MString& text, int flags = 0, MColor colour = InkColour)
    {
        target.AlignedTextOut(used, box.left, box.top, box.right, box.bottom, text, flags, colour,
                              MColorOp::Alphablend);
    }
    static void Write(MBitmap& target, const MFont& used, const MRectangle& box,
                      const MString& text, int flags = 0, MColor colour = InkColour)
    {
        MDrawerToMBitmap over(target);
        Write(over, used, box, text, flags, colour);
    }

    MFont font{{.face = "DejaVu Sans Mono", .height = 20, .space = 1}};
    MBitmap bitmap;
    MBitmap expected;
    MDrawerToMBitmap drawer{bitmap};
};

TEST_F(AlignedTextOut, PlacesOneGlyphByItsMetrics)
{
    const Glyph& glyph = *font.GetInstance()->GetGlyph('H');
    const int spareX = 100 - font.GetAdvance('H');
    const int spareY = 61 - font.GetHeight();
    struct
    {
        int flags, x, y;
    } const cases[] = {
        {0, 0, 0},
        {Right | Bottom, spareX, spareY},
        {Center | VCenter, spareX / 2, spareY / 2},
        {SingleLine | Center, spareX / 2, 0},
    };
    for (const auto& row : cases)
    {
        Clear(bitmap);
        Clear(expected);
        Write(drawer, font, Box(50, 20, 149, 80), "H", row.flags);
        const int left = 50 + row.x + glyph.left;
        const int top = 20 + row.y + font.GetAscent() - glyph.top;
        MDrawerToMBitmap(expected).MaskBlt(left, top, left + glyph.mask.GetWidth() - 1,
                                           top + glyph.mask.GetHeight() - 1, &glyph.mask, 0, 0,
                                           InkColour, MColorOp::Alphablend);
        EXPECT_TRUE(AreSame(bitmap, expected)) << row.flags;
    }
}

TEST_F(AlignedTextOut, IsTheSameAsItsPartsOneByOne)
{
    const int width = font.MeasureRun("second", 0, 6);
    for (const int flags : {0, Center | VCenter, Right | Bottom})
    {
        Clear(bitmap);
        Clear(expected);
        Write(drawer, font, Box(10, 10, 10 + width - 1, 110), "first second\nthird", flags);
        const int spare = 101 - 3 * font.GetHeight();
        int y = 10 + ((flags & Bottom) != 0 ? spare : (flags & VCenter) != 0 ? spare / 2 : 0);
        for (const std::string word : {"first", "second", "third"})
        {
            const int rest = width - font.MeasureRun(MString::FromNarrow(word), 0, INT_MAX);
            int x = 10 + ((flags & Right) != 0 ? rest : (flags & Center) != 0 ? rest / 2 : 0);
            for (const char letter : word)
            {
                Write(expected, font, Box(x, y, x, y), MString::FromNarrow({&letter, 1}));
                x += font.GetAdvance(static_cast<char32_t>(letter)) + font.GetSpace();
            }
            y += font.GetHeight();
        }
        EXPECT_TRUE(AreSame(bitmap, expected)) << flags;
    }
}

TEST_F(AlignedTextOut, PutsAShadowBelowLargerFonts)
{
    drawer.SetTextShadow(128);
    for (const int height : {10, 11})
    {
        const MFont sized({.height = height});
        Clear(bitmap);
        Clear(expected);
        Write(drawer, sized, Box(10, 10, 200, 50), "Shadow", Right);
        if (height > 10) // alpha: 201 * 128 / 256
            Write(expected, sized, Box(11, 11, 201, 51), "Shadow", Right, MColor(5, 55, 105, 100));
        Write(expected, sized, Box(10, 10, 200, 50), "Shadow", Right);
        EXPECT_TRUE(AreSame(bitmap, expected)) << height;
    }
}

TEST_F(AlignedTextOut, ChangesNothingOutsideTheClip)
{
    const MRectangle clip = {33, 14, 90, 29};
    Write(expected, font, Box(10, 10, 120, 60), "Clipped text in two lines");
    bitmap.SetClip(clip);
    Write(drawer, font, Box(10, 10, 120, 60), "Clipped text in two lines");
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < Width; ++x)
            ASSERT_EQ(bitmap.GetColor(x, y), clip.Contains(x, y) ? expected.GetColor(x, y) : Paper);
}

TEST_F(AlignedTextOut, FollowsTheOffsetOfAChild)
{
    MDrawer child(&drawer, 30, 25);
    Write(child, font, Box(-5, 3, 100, 40), "Child", Right | VCenter);
    Write(expected, font, Box(25, 28, 130, 65), "Child", Right | VCenter);
    EXPECT_TRUE(AreSame(bitmap, expected));
}

/// TONVALE_RENEW_PICTURES=1 writes the picture anew, to be looked at before it is kept.
TEST_F(AlignedTextOut, LooksAsItDid)
{
    const MString file = TONVALE_PICTURES "/MFont/Lines.png";
    const MString mixed = MString::FromUTF16(u"Gr\u00F6\u00DFe \u03A9 \u0416 \u2230 \u0628");
    int y = 4;
    const auto draw = [&](const MFontDescription& description, const MString& text)
    {
        const MFont used(description);
        Write(drawer, used, Box(4, y, Width - 5, y), text);
        y += used.GetHeight() + 2;
    };
    draw({.height = 12}, "Regular 12: 1,234.56 Hz, -0.5 dB & \"more\"");
    draw({.height = 16, .isBold = true}, "Bold 16: Oscillator");
    draw({.height = 16, .isItalic = true}, mixed);
    draw({.face = "DejaVu Sans Mono", .height = 14, .isBold = true}, "Mono 14\t0x7F");
    drawer.SetTextShadow(200);
    draw({.height = 18, .width = 24, .space = 2}, "Wide, with shadow");

    if (std::getenv("TONVALE_RENEW_PICTURES") != nullptr) // NOLINT(concurrency-mt-unsafe)
    {
        MStdFileStream renewed(file, MStdFileStream::Opening::Create);
        images::SavePNG(bitmap, renewed);
        renewed.Close();
    }
    MStdFileStream stored(file, MStdFileStream::Opening::Existing);
    images::LoadPNG(stored, expected);
    ASSERT_EQ(expected.GetBounds(), bitmap.GetBounds());
    EXPECT_TRUE(AreSame(bitmap, expected));
}

TEST_F(AlignedTextOut, LivesWithAnyCoordinates)
{
    for (const auto& [low, high] :
         {std::pair(INT_MAX, INT_MAX), std::pair(INT_MIN, INT_MIN), std::pair(10, 9)})
        for (const int flags : {0, Center | VCenter, Right | Bottom})
            Write(drawer, font, Box(low, low, high, high), "Nowhere to be seen", flags);
    EXPECT_TRUE(AreSame(bitmap, expected));
    const MRectangle everywhere = Box(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    Write(drawer, font, everywhere, "at the corner, in the middle of all", Center | VCenter);
    EXPECT_FALSE(AreSame(bitmap, expected));
}

} // namespace
