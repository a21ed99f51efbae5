#include "gui/text/GlyphCache.h"

#include <gtest/gtest.h>

namespace
{

/// Of @p blocks blocks, each of 256 bytes.
std::unique_ptr<Glyph> MakeGlyph(int blocks)
{
    auto glyph = std::make_unique<Glyph>();
    glyph->mask.Create(16 * blocks, 16);
    glyph->left = blocks;
    return glyph;
}

TEST(GlyphCache, DropsWhatWasNotUsedForTheLongestTime)
{
    GlyphCache cache(2560); // 10 blocks
    for (std::uint32_t glyph = 0; glyph < 5; ++glyph)
        cache.Add({1, 0, glyph}, MakeGlyph(2));
    EXPECT_EQ(cache.CountBytes(), 10U * 256);
    EXPECT_NE(cache.Find({1, 0, 0}), nullptr);
    cache.Add({1, 0, 9}, MakeGlyph(3)); // takes the place of 1 and 2
    for (const std::uint32_t glyph : {0U, 3U, 4U, 9U})
        EXPECT_NE(cache.Find({1, 0, glyph}), nullptr) << glyph;
    for (const std::uint32_t glyph : {1U, 2U})
        EXPECT_EQ(cache.Find({1, 0, glyph}), nullptr) << glyph;
    EXPECT_EQ(cache.Find({2, 0, 0}), nullptr);
    EXPECT_EQ(cache.Find({1, 1, 0}), nullptr);

    EXPECT_EQ(cache.Add({1, 0, 7}, MakeGlyph(50))->left, 50); // alone, and too large
    EXPECT_EQ(cache.CountGlyphs(), 1U);
    cache.Add({1, 0, 8}, MakeGlyph(1));
    EXPECT_EQ(cache.CountGlyphs(), 1U);
    EXPECT_EQ(cache.CountBytes(), 256U);
}

TEST(GlyphCache, StaysWithinItsBytesUnderLoad)
{
    GlyphCache cache(GlyphCache::DefaultBytes);
    std::uint32_t random = 1;
    for (int i = 0; i < 50'000; ++i)
    {
        random = random * 1'664'525 + 1'013'904'223;
        const GlyphCache::Key key = {random >> 30U, 0, random >> 16U & 0xFFFU};
        const int blocks = 1 + static_cast<int>(key.glyph % 40);
        const Glyph* glyph = cache.Find(key);
        if (glyph == nullptr)
            glyph = cache.Add(key, MakeGlyph(blocks));
        ASSERT_EQ(glyph->left, blocks);
        ASSERT_LE(cache.CountBytes(), GlyphCache::DefaultBytes);
    }
    EXPECT_GT(cache.CountBytes(), GlyphCache::DefaultBytes - 10'240);
}

} // namespace
