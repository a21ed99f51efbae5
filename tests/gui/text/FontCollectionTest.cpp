#include "gui/text/FontCollection.h"

#include <gtest/gtest.h>

#include "gui/text/FontFace.h"
#include "gui/text/GlyphCache.h"
#include "gui/text/MFontInstance.h"
#include "tests/TemporaryFolder.h"
#include "tests/gui/text/FontUnderTest.h"

namespace
{

constexpr const char* Family = "Family A is wide";

class FontCollectionOf : public testing::Test
{
protected:
    void Write(const std::string& name, int weight, bool isItalic)
    {
        FontUnderTest font("fonts/DejaVuSansMono.ttf");
        font.Rename("DejaVu Sans Mono", Family);
        font.SetWeight(weight);
        if (isItalic)
            font.SetItalic();
        folder.Write(name, font.bytes);
    }
    static std::vector<std::uint8_t> BoldSans()
    {
        FontUnderTest font("fonts/DejaVuSans.ttf");
        font.SetWeight(700);
        return font.bytes;
    }
    MString Path(const std::string& name) const
    {
        return MString::FromUTF8((folder / name).make_preferred().string());
    }
    std::vector<MString> Folders() const { return {Path("")}; }

    TemporaryFolder folder;
};

TEST_F(FontCollectionOf, FindsTheNearestOnceTheSystemsFontsAreKnown)
{
    Write("1.ttf", 300, false);
    Write("2.ttf", 900, false);
    Write("3.ttf", 500, true);
    folder.Write("DejaVuSans.ttf", BoldSans());
    FontCollection fonts(Folders(), Path("cache"));
    EXPECT_EQ(fonts.GetGeneration(), 0);
    EXPECT_EQ(fonts.GetInfo(fonts.Match("inter", {false, false})).weight, 400);
    EXPECT_EQ(fonts.GetInfo(fonts.Match("Inter", {true, false})).weight, 600);
    fonts.WaitForScan();
    EXPECT_EQ(fonts.GetGeneration(), 0); // nobody needed more

    const int before = fonts.Match(Family, {true, false});
    EXPECT_EQ(fonts.GetInfo(before).family.ToUTF8(), "Inter");
    EXPECT_EQ(fonts.GetInfo(before).weight, 600);
    fonts.WaitForScan();
    EXPECT_NE(fonts.GetGeneration(), 0);

    const auto file = [&](bool isBold, bool isItalic)
    {
        const FontFaceInfo& info = fonts.GetInfo(fonts.Match(Family, {isBold, isItalic}));
        return info.family == Family ? info.file.ToUTF8().substr(info.file.ToUTF8().size() - 5)
                                     : "";
    };
    EXPECT_EQ(file(false, false), "1.ttf");
    EXPECT_EQ(file(true, false), "2.ttf");
    EXPECT_EQ(file(false, true), "3.ttf");
    EXPECT_EQ(file(true, true), "3.ttf"); // italic before weight

    // Of a packed family none of the system's counts.
    EXPECT_TRUE(fonts.GetInfo(fonts.Match("DejaVu Sans", {true, true})).isPacked);

    // The outlines of all three are the same, so what is italic or bold already is not made so.
    GlyphCache cache(GlyphCache::DefaultBytes);
    const auto width = [&](bool isBold, bool isItalic)
    {
        MFontInstance instance(
            {.face = Family, .height = 48, .isBold = isBold, .isItalic = isItalic}, fonts, cache);
        return instance.GetGlyph('|')->mask.GetWidth();
    };
    EXPECT_EQ(width(true, false), width(false, false));
    EXPECT_EQ(width(false, true), width(false, false));
    EXPECT_EQ(width(true, true), width(false, false) + 48 / 24); // of weight 500
}

TEST_F(FontCollectionOf, KeepsFewFilesOpenAndLivesOnWithoutThem)
{
    if (std::filesystem::path::preferred_separator != '/')
        GTEST_SKIP() << "nothing tells which files are open, and those cannot be deleted";
    constexpr int Count = FontCollection::MaxOpenFaces + 8;
    for (int i = 0; i < Count; ++i)
        Write(std::to_string(i) + ".ttf", 100 + 10 * i, false);
    FontCollection fonts(Folders(), Path("cache"));
    fonts.Match(Family, {false, false});
    fonts.WaitForScan();
    const auto countOpen = [this]
    {
        int open = 0;
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        {
            std::error_code ignored;
            open += read_symlink(entry, ignored).parent_path() == folder.GetPath() ? 1 : 0;
        }
        return open;
    };
    int first = fonts.Match(Family, {false, false});
    while (fonts.GetInfo(first - 1).family == Family)
        --first;
    for (int i = 0; i < Count; ++i)
    {
        fonts.Open(0); // used all the time, so it stays
        const FontFace* const face = fonts.Open(first + i);
        ASSERT_NE(face, nullptr);
        EXPECT_NE(face->FindGlyph('A'), 0U);
        EXPECT_EQ(countOpen(), std::min(i + 1, FontCollection::MaxOpenFaces - 1));
    }
    for (int i = 0; i < Count; ++i)
        std::filesystem::remove(folder / (std::to_string(i) + ".ttf"));
    EXPECT_EQ(fonts.Open(first), nullptr);             // closed meanwhile
    EXPECT_NE(fonts.Open(first + Count - 1), nullptr); // still open
    EXPECT_EQ(fonts.MatchCode(U'\uFFFF', {false, false}), FontCollection::NoFace);
}

TEST_F(FontCollectionOf, CanBeLeftWhileItScans)
{
    for (int i = 0; i < 20; ++i)
        Write(std::to_string(i) + ".ttf", 400, false);
    FontCollection fonts(Folders(), Path("cache"));
    fonts.MatchCode(U'\uFFFF', {false, false});
    fonts.StopScan();
    const int packed = fonts.Match("Inter", {false, false});
    EXPECT_NE(fonts.Open(packed), nullptr);
    fonts.Match(Family, {false, false}); // begins anew, and is left to the destructor
}

} // namespace
