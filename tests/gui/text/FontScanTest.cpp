#include "gui/text/FontScan.h"

#include <gtest/gtest.h>

#include "gui/text/FontCache.h"
#include "tests/TemporaryFolder.h"
#include "tests/gui/text/FontUnderTest.h"

namespace
{

class FontScan : public testing::Test
{
protected:
    void Write(const std::string& name, const std::string& family)
    {
        FontUnderTest font("fonts/DejaVuSansMono.ttf");
        font.Rename("DejaVu Sans Mono", family);
        std::filesystem::create_directories((folder / name).parent_path());
        folder.Write(name, font.bytes);
    }
    MString Path(const std::string& name) const
    {
        return MString::FromUTF8((folder / name).make_preferred().string());
    }
    /// The families that are found, with a "," behind each.
    std::string Scan()
    {
        const MString folders[] = {Path("fonts"), Path("none"), Path("more")};
        std::string families;
        for (const FontFaceInfo& face : ScanFonts(folders, Path("cache"), [] { return false; }))
            families += face.family.ToUTF8() + ",";
        return families;
    }

    TemporaryFolder folder;
};

TEST_F(FontScan, FindsFontsBelowTheFolders)
{
    Write("more/first.OTF", "Family A is wide");
    Write("fonts/b.ttf", "Family B is wide");
    Write("fonts/a/b/c/d/e/f/g/h/c.pfb", "Family C is wide"); // eight deep
    Write("fonts/a/b/c/d/e/f/g/h/i/d.ttf", "Family D is wide");
    Write("fonts/e.txt", "Family E is wide");
    folder.Write("fonts/broken.ttf", std::vector<std::uint8_t>(50, 'x'));
    std::error_code withoutLinks; // as on Windows
    std::filesystem::create_directory_symlink(folder / "fonts", folder / "more/loop", withoutLinks);
    EXPECT_EQ(Scan(), "Family C is wide,Family B is wide,Family A is wide,");
    EXPECT_EQ(Scan(), "Family C is wide,Family B is wide,Family A is wide,");
}

TEST_F(FontScan, OpensOnlyWhatIsNewOrHasChanged)
{
    Write("fonts/a.ttf", "Family A is wide");
    Write("fonts/b.ttf", "Family B is wide");
    Scan();
    FontCache cache;
    cache.Load(Path("cache"));
    FontFaceInfo known;
    known.family = "from the cache";
    known.weight = 123;
    known.pages.set(255);
    known.pages.set(4);
    for (const char* name : {"fonts/a.ttf", "fonts/b.ttf"})
        cache.Add(Path(name), files::GetStamp(Path(name)), {known});
    cache.Save(Path("cache"));
    EXPECT_EQ(Scan(), "from the cache,from the cache,");

    FontCache again;
    again.Load(Path("cache"));
    const auto* faces = again.Find(Path("fonts/a.ttf"), files::GetStamp(Path("fonts/a.ttf")));
    ASSERT_TRUE(faces != nullptr && faces->size() == 1);
    EXPECT_EQ(faces->front().weight, 123);
    EXPECT_EQ(faces->front().pages, known.pages);
    EXPECT_EQ(faces->front().file, Path("fonts/a.ttf"));

    std::filesystem::last_write_time(folder / "fonts/b.ttf",
                                     std::filesystem::file_time_type(std::chrono::hours(1)));
    EXPECT_EQ(Scan(), "from the cache,Family B is wide,");
    std::filesystem::remove(folder / "fonts/a.ttf");
    EXPECT_EQ(Scan(), "Family B is wide,");
}

TEST_F(FontScan, LivesWithoutACache)
{
    Write("fonts/a.ttf", "Family A is wide");
    const std::string nonsense = "<fonts><file name=";
    folder.Write("cache", std::span(reinterpret_cast<const std::uint8_t*>(nonsense.data()),
                                    nonsense.size()));
    EXPECT_EQ(Scan(), "Family A is wide,");
    std::filesystem::remove(folder / "cache");
    std::filesystem::create_directory(folder / "cache");
    EXPECT_EQ(Scan(), "Family A is wide,");
}

} // namespace
