#include "gui/text/FontFace.h"

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "tests/TemporaryFolder.h"
#include "tests/gui/text/FontUnderTest.h"

namespace
{

std::unique_ptr<FontFace> Open(std::span<const std::uint8_t> bytes, int& count)
{
    return FontFace::Open(MMemoryStream(std::as_bytes(bytes)), 0, count);
}

TEST(FontFace, TellsWhatItIs)
{
    FontUnderTest font("fonts/DejaVuSansMono.ttf");
    font.SetWeight(650);
    font.SetItalic();
    const TemporaryFolder folder;
    folder.Write("font.ttf", font.bytes);
    int count = 0;
    const auto inMemory = Open(font.bytes, count);
    ASSERT_TRUE(inMemory);
    const auto onDisk = FontFace::Open(MString::FromUTF8((folder / "font.ttf").string()), 0, count);
    ASSERT_TRUE(onDisk);
    EXPECT_EQ(count, 1);
    for (const FontFace* face : {inMemory.get(), onDisk.get()})
    {
        const FontFaceInfo info = face->Describe();
        EXPECT_EQ(info.family.ToUTF8(), "DejaVu Sans Mono");
        EXPECT_EQ(info.weight, 650);
        EXPECT_TRUE(info.isItalic);
        EXPECT_TRUE(info.isFixedWidth);
        for (int page = 0; page < 256; ++page)
        {
            bool isCovered = false;
            for (int code = page << 8; code < (page + 1) << 8 && !isCovered; ++code)
                isCovered = font.GlyphOf(code) != 0;
            EXPECT_EQ(info.pages[static_cast<std::size_t>(page)], isCovered) << page;
        }
        EXPECT_EQ(face->FindGlyph('A'), font.GlyphOf('A'));
        EXPECT_NE(face->Render(face->FindGlyph('A'), {20.0, 20.0, 0.0, false}), nullptr);
    }
}

TEST(FontFace, RefusesOrSurvivesBrokenFonts)
{
    const FontUnderTest font("fonts/DejaVuSansMono.ttf");
    const auto use = [](std::span<const std::uint8_t> bytes)
    {
        int count = 0;
        const auto face = Open(bytes, count);
        if (!face)
            return false;
        face->Describe();
        const FontFace::Metrics metrics = face->GetMetrics();
        EXPECT_GT(metrics.ascent + metrics.descent, 0);
        for (const char32_t code : {U'A', U'g', U'\u2588'})
        {
            EXPECT_GE(face->GetAdvance(face->FindGlyph(code)), 0);
            face->Render(face->FindGlyph(code), {30.0, 30.0, 1.0, true});
        }
        return true;
    };
    EXPECT_TRUE(use(font.bytes));
    EXPECT_FALSE(use({}));
    EXPECT_FALSE(use(std::vector<std::uint8_t>(100'000, 'x')));
    for (std::size_t size = 1; size < font.bytes.size(); size += 20'011)
        use(std::span(font.bytes).first(size));
    // Each table in turn has nonsense at its start.
    for (std::size_t entry = 12; entry < 12 + 16 * static_cast<std::size_t>(font.Word(4));
         entry += 16)
        for (const char nonsense : {'\0', '\x7F', '\xFF'})
        {
            std::vector<std::uint8_t> broken = font.bytes;
            const std::size_t start = font.Long(entry + 8);
            const std::size_t end = std::min(broken.size(), start + 64);
            std::fill(broken.begin() + static_cast<std::ptrdiff_t>(start),
                      broken.begin() + static_cast<std::ptrdiff_t>(end),
                      static_cast<std::uint8_t>(nonsense));
            use(broken);
        }
}

TEST(FontFace, RefusesACellThatIsNone)
{
    for (const auto& [ascent, descent] : {std::pair(0x0000, 0x0000), std::pair(0x0010, 0x0000),
                                          std::pair(0x7FFF, 0x8001), std::pair(0x8001, 0x7FFF)})
    {
        FontUnderTest font("fonts/DejaVuSansMono.ttf");
        const std::size_t table = font.Table("hhea");
        const std::size_t other = font.Table("OS/2");
        for (const std::size_t at : {table + 4, other + 68, other + 74})
        {
            font.bytes[at] = static_cast<std::uint8_t>(ascent >> 8);
            font.bytes[at + 1] = static_cast<std::uint8_t>(ascent);
            font.bytes[at + 2] = static_cast<std::uint8_t>(descent >> 8);
            font.bytes[at + 3] = static_cast<std::uint8_t>(descent);
        }
        int count = 0;
        EXPECT_FALSE(Open(font.bytes, count)) << ascent;
    }
}

} // namespace
