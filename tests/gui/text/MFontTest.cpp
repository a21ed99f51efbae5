#include "gui/text/MFont.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/gui/text/FontUnderTest.h"

namespace
{

constexpr const char* Mono = "DejaVu Sans Mono";

int Round(double value)
{
    return static_cast<int>(std::floor(value + 0.5));
}

TEST(MFont, TakesMetricsFromTheTablesOfTheFont)
{
    struct
    {
        const char* family;
        bool isBold;
        const char* file;
    } const cases[] = {
        {"Inter", false, "fonts/Inter-Regular.otf"},
        {"inter", true, "fonts/Inter-SemiBold.otf"},
        {"DejaVu Sans", false, "fonts/DejaVuSans.ttf"},
        {Mono, false, "fonts/DejaVuSansMono.ttf"},
        {"no such family", false, "fonts/Inter-Regular.otf"},
    };
    for (const auto& row : cases)
    {
        const FontUnderTest tables(row.file);
        const double cell = tables.Ascent() + tables.Descent();
        for (const int height : {1, 7, 11, 12, 13, 14, 15, 16, 24, 40, 200})
            for (const int width : {0, height / 2, 2 * height})
            {
                const MFont font(
                    {.face = row.family, .height = height, .width = width, .isBold = row.isBold});
                const double scale = height / cell;
                const double widthScale = (width > 0 ? width : height) / cell;
                EXPECT_EQ(font.GetAscent(), Round(tables.Ascent() * scale)) << row.file << height;
                EXPECT_EQ(font.GetAscent() + font.GetDescent(), height) << row.file << height;
                EXPECT_EQ(font.GetHeight(), std::max(1, Round((cell + tables.LineGap()) * scale)));
                for (const int code : {0x20, 0x41, 0x69, 0x57, 0x25, 0xE9, 0x2014})
                    EXPECT_EQ(font.GetAdvance(static_cast<char32_t>(code)),
                              Round(tables.AdvanceOf(code) * widthScale))
                        << row.file << " " << height << " " << code;
            }
    }
}

TEST(MFont, MeasuresCharactersAndTheSpaceBetweenThem)
{
    const MFont plain({.face = Mono, .height = 20});
    const MFont wide({.face = Mono, .height = 20, .space = 3});
    const int advance = plain.GetAdvance('x');
    struct
    {
        std::u16string text;
        int characters;
    } const cases[] = {
        {u"", 0},
        {u"x", 1},
        {u"xyz", 3},
        {u"x\t", 5},
        {u"\n\r\x7F", 0},
        {u"x\ny", 2},
        {u"\xD835\xDC00", 1},  // one character of two units
        {u"\xDC00\xD835x", 3}, // the wrong way round: each shows the missing glyph
    };
    for (const auto& row : cases)
    {
        const MString text = MString::FromUTF16(row.text);
        if (row.text != u"\xD835\xDC00") // of another face, with a width of its own
        {
            EXPECT_EQ(plain.MeasureRun(text, 0, 99), row.characters * advance);
        }
        EXPECT_EQ(wide.MeasureRun(text, 0, 99),
                  plain.MeasureRun(text, 0, 99) + 3 * std::max(0, row.characters - 1));
        EXPECT_EQ(wide.MeasureSpaced(text, 0, 99),
                  plain.MeasureRun(text, 0, 99) + 3 * row.characters);
    }
    EXPECT_EQ(plain.MeasureRun("abcdef", 2, 3), 3 * advance);
    EXPECT_EQ(plain.MeasureRun("abcdef", 4, INT32_MAX), 2 * advance);
    EXPECT_EQ(plain.MeasureRun("abcdef", 9, 1), 0);
}

TEST(MFont, FallsBackToTheFaceThatHasTheCharacter)
{
    const MFont font({.face = "Inter", .height = 16});
    FontCollection& fonts = FontCollection::Get();
    fonts.WaitForScan(); // that other tests may have begun
    const std::shared_ptr<MFontInstance> instance = font.GetInstance();
    const FontUnderTest sans("fonts/DejaVuSans.ttf");
    struct
    {
        char32_t code;
        const char* family;
    } const cases[] = {
        {U'A', "Inter"},
        {U'\u0416', "Inter"},        // Cyrillic
        {U'\u0628', "DejaVu Sans"},  // Arabic
        {U'\u2230', "DejaVu Sans"},  // volume integral
        {char32_t{0xD800}, "Inter"}, // half of a pair: the missing glyph
    };
    for (const auto& row : cases)
        EXPECT_EQ(fonts.GetInfo(instance->GetFaceOf(row.code)).family, row.family)
            << static_cast<std::uint32_t>(row.code);

    // As large an em as that of the first face.
    const FontUnderTest inter("fonts/Inter-Regular.otf");
    const double em = inter.UnitsPerEm() * 16.0 / (inter.Ascent() + inter.Descent());
    EXPECT_EQ(font.GetAdvance(U'\u2230'), Round(sans.AdvanceOf(0x2230) * em / sans.UnitsPerEm()));
    EXPECT_NE(instance->GetGlyph(char32_t{0xD800}), nullptr);
    EXPECT_EQ(instance->GetGlyph(U' '), nullptr);
    EXPECT_EQ(instance->GetGlyph(U'\n'), nullptr);
}

TEST(MFont, SharesInstancesByContent)
{
    FontCollection::Get().WaitForScan();
    const MFont a({.face = "Inter", .height = 31});
    const MFont b({.face = "INTER", .height = 31, .space = 2});
    const MFont c({.face = "Inter", .height = 31, .isItalic = true});
    EXPECT_EQ(a.GetInstance(), b.GetInstance());
    EXPECT_NE(a.GetInstance(), c.GetInstance());
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a == MFont({.face = "inter", .height = 31}));
}

/// Columns and rows of a glyph, and its coverage in whole pixels.
struct Ink
{
    int left, right, top, bottom;
    double sum;
};

Ink InkOf(const MFontDescription& description, char32_t code)
{
    const MFont font(description);
    const Glyph& glyph = *font.GetInstance()->GetGlyph(code);
    Ink ink = {glyph.left, glyph.left + glyph.mask.GetWidth() - 1, glyph.top,
               glyph.top - glyph.mask.GetHeight() + 1, 0.0};
    for (int y = 0; y < glyph.mask.GetHeight(); ++y)
        for (int x = 0; x < glyph.mask.GetWidth(); ++x)
            ink.sum += glyph.mask.Get(x, y) / 255.0;
    return ink;
}

TEST(MFont, PaintsWhatTheOutlineCovers)
{
    // U+2588 fills a cell of DejaVu Sans Mono: 1233 by 2350 of 2048 units an em, from -483 to 1901
    // or so; its coverage is its area, whatever the pixels that it falls on.
    const FontUnderTest tables("fonts/DejaVuSansMono.ttf");
    for (const int height : {20, 33, 64})
    {
        const double scale = static_cast<double>(height) / (tables.Ascent() + tables.Descent());
        const std::size_t locations = tables.Table("loca");
        const std::size_t glyph = tables.GlyphOf(0x2588);
        const bool isLong = tables.Word(tables.Table("head") + 50) != 0;
        const std::size_t outline =
            tables.Table("glyf") +
            (isLong ? tables.Long(locations + 4 * glyph)
                    : 2 * static_cast<std::size_t>(tables.Word(locations + 2 * glyph)));
        const double left = tables.Signed(outline + 2) * scale;
        const double bottom = tables.Signed(outline + 4) * scale;
        const double right = tables.Signed(outline + 6) * scale;
        const double top = tables.Signed(outline + 8) * scale;
        const Ink ink = InkOf({.face = Mono, .height = height}, U'\u2588');
        const double area = (right - left) * (top - bottom);
        EXPECT_NEAR(ink.sum, area, area * 0.01) << height;
        EXPECT_NEAR(ink.left, left, 1.0) << height;
        EXPECT_NEAR(ink.right + 1, right, 1.0) << height;
        EXPECT_NEAR(ink.top, top, 1.0) << height;
        EXPECT_NEAR(ink.bottom - 1, bottom, 1.0) << height;
    }
}

TEST(MFont, MakesBoldAndItalicOfFacesThatAreNeither)
{
    constexpr int Height = 48;
    constexpr int Boldness = 2; // a 24th
    const Ink plain = InkOf({.face = Mono, .height = Height}, U'|');
    const Ink bold = InkOf({.face = Mono, .height = Height, .isBold = true}, U'|');
    EXPECT_NEAR(bold.right - bold.left, plain.right - plain.left + Boldness, 1);
    EXPECT_GT(bold.sum, 1.1 * plain.sum);
    EXPECT_EQ(MFont({.face = Mono, .height = Height, .isBold = true}).GetAdvance('|'),
              MFont({.face = Mono, .height = Height}).GetAdvance('|') + Boldness);

    // Each row moves to the right by a fifth of its height above the baseline.
    const Ink italic = InkOf({.face = Mono, .height = Height, .isItalic = true}, U'|');
    EXPECT_NEAR(italic.right, plain.right + plain.top / 5.0, 3.0);
    EXPECT_NEAR(italic.sum, plain.sum, plain.sum * 0.02);
    EXPECT_EQ(italic.top, plain.top);
}

TEST(MFont, StaysWithinItsSizes)
{
    EXPECT_EQ(MFont({.height = -5}).GetHeight(), MFont({.height = 1}).GetHeight());
    EXPECT_EQ(MFont({.height = INT32_MAX}).GetAscent(), MFont({.height = 1024}).GetAscent());
    EXPECT_EQ(MFont({.height = 10, .space = INT32_MAX}).MeasureRun("aaaaa", 0, 5), INT32_MAX);
}

} // namespace
