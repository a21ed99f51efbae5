#include "gui/drawing/MAlphaMask.h"

#include <array>
#include <random>

#include <gtest/gtest.h>

namespace
{

constexpr int Width = 53;
constexpr int Height = 35;

/// A mask and the same coverage as a plain array. Most of it is empty or full, like text.
struct MaskAndBytes
{
    explicit MaskAndBytes(unsigned seed) : mask(Width, Height)
    {
        std::mt19937 random(seed);
        for (int i = 0; i < 40; ++i)
        {
            const auto x = static_cast<int>(random() % Width);
            const auto y = static_cast<int>(random() % Height);
            const auto right = std::min<int>(Width - 1, x + static_cast<int>(random() % 20));
            const auto level = static_cast<std::uint8_t>(random() % 3 == 0 ? 0 : random());
            for (int column = x; column <= right; ++column)
            {
                mask.Set(column, y, level);
                bytes[static_cast<std::size_t>(y) * Width + static_cast<std::size_t>(column)] =
                    level;
            }
        }
    }

    MAlphaMask mask;
    std::array<std::uint8_t, std::size_t{Width} * Height> bytes{};
};

void ExpectEqual(const MAlphaMask& mask, const std::uint8_t* bytes)
{
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < Width; ++x)
            ASSERT_EQ(mask.Get(x, y), bytes[y * Width + x]) << x << ", " << y;
}

TEST(MAlphaMask, HoldsWhatIsSet)
{
    MaskAndBytes both(1);
    EXPECT_FALSE(both.mask.HasSpans());
    ExpectEqual(both.mask, both.bytes.data());
    both.mask.Finish();
    ExpectEqual(both.mask, both.bytes.data());
    both.mask.Assign(both.bytes.data(), Width, Width, Height);
    ExpectEqual(both.mask, both.bytes.data());
}

TEST(MAlphaMask, ListsAllThatIsCoveredOnceAndInOrder)
{
    MaskAndBytes both(2);
    both.mask.Finish();
    int before = -1;
    int covered = 0;
    for (const MAlphaMask::Span& span : both.mask.GetSpans())
    {
        EXPECT_GT(span.y * Width + span.firstX, before + (before < 0 ? 0 : 1)) << "spans touch";
        before = span.y * Width + span.lastX;
        for (int x = span.firstX; x <= span.lastX; ++x)
            covered += both.mask.Get(x, span.y) != 0;
    }
    EXPECT_EQ(covered, std::ranges::count_if(both.bytes, [](int byte) { return byte != 0; }));
    const auto some = both.mask.GetSpans(5, 9);
    EXPECT_TRUE(
        std::ranges::all_of(some, [](const auto& span) { return span.y >= 5 && span.y <= 9; }));
    EXPECT_EQ(some.size(), static_cast<std::size_t>(
                               std::ranges::count_if(both.mask.GetSpans(), [](const auto& span)
                                                     { return span.y >= 5 && span.y <= 9; })));
    EXPECT_TRUE(both.mask.GetSpans(9, 5).empty());
    both.mask.Set(1, 1, 9);
    EXPECT_FALSE(both.mask.HasSpans());
}

TEST(MAlphaMask, NeedsBytesOnlyForBlocksThatVary)
{
    MAlphaMask mask(40, 20);
    mask.Set(17, 3, 0);
    EXPECT_EQ(mask.GetRun(17, 3).bytes, nullptr);
    mask.Set(17, 3, 200);
    EXPECT_NE(mask.GetRun(16, 3).bytes, nullptr);
    EXPECT_EQ(mask.Get(17, 3), 200);
    EXPECT_EQ(mask.GetRun(17, 3).count, 15);
    EXPECT_EQ(mask.GetRun(15, 3).bytes, nullptr);
    // The last block of the row is 8 wide and 4 high.
    for (int y = 16; y < 20; ++y)
        for (int x = 32; x < 40; ++x)
            mask.Set(x, y, 77);
    mask.Set(17, 3, 0);
    mask.Finish();
    EXPECT_EQ(mask.GetRun(17, 3).bytes, nullptr);
    EXPECT_EQ(mask.GetRun(32, 16).bytes, nullptr);
    EXPECT_EQ(mask.GetRun(32, 16).constant, 77);
}

} // namespace
