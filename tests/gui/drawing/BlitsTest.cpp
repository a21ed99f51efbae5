#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "foundation/threads/MException.h"
#include "gui/drawing/FillBitmap.h"
#include "gui/drawing/MAlphaMask.h"
#include "gui/drawing/MPixelPainter.h"
#include "tests/gui/drawing/Canvas.h"

namespace
{

constexpr int Width = 41;
constexpr int Height = 29;
constexpr MColor Tint(1, 2, 3, 200);

/// Draws on noise and expects of every pixel what @p place tells: a colour to blit there, or none.
template <typename Draw, typename Expect>
void ExpectPixels(const MRectangle& clip, MColorOp op, Draw draw, Expect expect, const char* what)
{
    MBitmap target(Width, Height);
    FillWithNoise(target, 5);
    const std::vector<MColor> old = PixelsOf(target);
    MDrawerToMBitmap drawer(target);
    drawer.SetClipRect(clip);
    draw(drawer);
    for (int y = 0; y < Height; ++y)
        for (int x = 0; x < Width; ++x)
        {
            MColor expected =
                old[static_cast<std::size_t>(y) * Width + static_cast<std::size_t>(x)];
            MColor source;
            if (clip.Contains(x, y) && expect(x, y, source))
                WithPainter(op, Tint, [&](const auto& painter) { painter.Blit(expected, source); });
            ASSERT_EQ(target.GetColor(x, y), expected) << what << " at " << x << ", " << y;
        }
}

constexpr MRectangle Clips[] = {{0, 0, Width - 1, Height - 1}, {7, 5, 30, 20}, {13, 11, 13, 11}};

struct BlitCase
{
    const char* what;
    MRectangle target;
    int sx, sy;
};

constexpr BlitCase BlitCases[] = {
    {"inside", {3, 4, 12, 9}, 2, 1},
    {"more than the source has", {-5, -6, 100, 100}, 3, 4},
    {"before the source", {2, 3, 30, 25}, -9, -7},
    {"behind the source", {2, 3, 30, 25}, 19, 14},
    {"past the source", {2, 3, 30, 25}, 20, 0},
    {"huge", {-2147483647, -2147483647, 2147483647, 2147483647}, -2147483647, -2147483640},
};

TEST(BitBlt, CopiesWhatBothHave)
{
    for (const bool isPaletted : {false, true})
    {
        MBitmap source(20, 15, isPaletted);
        FillWithNoise(source, 4);
        for (const BlitCase& row : BlitCases)
            for (const MRectangle& clip : Clips)
                for (const MColorOp op : {MColorOp::Copy, MColorOp::Alphablend, MColorOp::Add})
                    ExpectPixels(
                        clip, op,
                        [&](MDrawer& drawer)
                        {
                            drawer.BitBlt(row.target.left, row.target.top, row.target.right,
                                          row.target.bottom, &source, row.sx, row.sy, Tint, op);
                        },
                        [&](std::int64_t x, std::int64_t y, MColor& pixel)
                        {
                            const std::int64_t sx = x - row.target.left + row.sx;
                            const std::int64_t sy = y - row.target.top + row.sy;
                            const bool isInside =
                                row.target.Contains(x, y) && source.GetBounds().Contains(sx, sy);
                            if (isInside)
                                pixel = source.GetColor(static_cast<int>(sx), static_cast<int>(sy));
                            return isInside;
                        },
                        row.what);
    }
}

TEST(PatBlt, KeepsTheTilesInPlaceWhateverTheClip)
{
    for (const bool isPaletted : {false, true})
    {
        MBitmap source(9, 8, isPaletted);
        FillWithNoise(source, 4);
        for (const MRectangle& target :
             {MRectangle{4, 3, 33, 24}, MRectangle{-1000, -1001, 25, 99}, MRectangle{8, 8, 10, 9}})
            for (const MRectangle& clip : Clips)
                for (const MColorOp op :
                     {MColorOp::Copy, MColorOp::Alphablend, MColorOp::Difference})
                    ExpectPixels(
                        clip, op,
                        [&](MDrawer& drawer)
                        {
                            drawer.PatBlt(target.left, target.top, target.right, target.bottom,
                                          &source, 2, 1, 6, 99, Tint, op);
                        },
                        [&](int x, int y, MColor& pixel)
                        {
                            if (!target.Contains(x, y))
                                return false;
                            pixel = source.GetColor(2 + (x - target.left) % 5,
                                                    1 + (y - target.top) % 7);
                            return true;
                        },
                        "PatBlt");
    }
}

/// The sample at (@p u, @p v) by the formula, one byte after the other.
MColor Sample(const MBitmap& source, float u, float v)
{
    const int x = std::max(std::min(static_cast<int>(u), source.GetWidth() - 2), 0);
    const int y = std::max(std::min(static_cast<int>(v), source.GetHeight() - 2), 0);
    const int fx = static_cast<int>((u - static_cast<float>(x)) * 255.0f);
    const int fy = static_cast<int>((v - static_cast<float>(y)) * 255.0f);
    const auto byte = [&](int px, int py, unsigned shift)
    { return static_cast<int>((source.GetColor(px, py).GetValue() >> shift) & 255U); };
    std::uint32_t value = 0;
    for (unsigned shift = 0; shift < 32; shift += 8)
    {
        const auto mixRow = [&](int row)
        {
            if (source.GetWidth() == 1)
                return byte(0, row, shift);
            return (byte(x, row, shift) * (255 - fx) + byte(x + 1, row, shift) * fx) / 256;
        };
        const int mixed = source.GetHeight() == 1
                              ? mixRow(0)
                              : (mixRow(y) * (255 - fy) + mixRow(y + 1) * fy) / 256;
        value |= static_cast<std::uint32_t>(mixed) << shift;
    }
    return MColor(value);
}

struct StretchCase
{
    const char* what;
    int sourceWidth, sourceHeight;
    MRectangle target;
    MRectangle part;
};

constexpr StretchCase StretchCases[] = {
    {"larger", 9, 7, {2, 3, 38, 27}, {0, 0, 8, 6}},
    {"a part", 30, 20, {2, 3, 28, 20}, {4, 5, 11, 9}},
    {"smaller", 200, 100, {2, 3, 20, 12}, {0, 0, 199, 99}},
    {"one column", 1, 7, {2, 3, 38, 27}, {0, 0, 0, 6}},
    {"one row", 7, 1, {2, 3, 38, 27}, {0, 0, 6, 0}},
    {"one pixel", 1, 1, {2, 3, 38, 27}, {0, 0, 0, 0}},
    {"to a column", 9, 7, {5, 3, 5, 27}, {2, 0, 8, 6}},
    {"beyond the target", 9, 7, {-40, -30, 70, 50}, {0, 0, 8, 6}},
};

TEST(StretchBlt, MixesTheFourPixelsAround)
{
    for (const StretchCase& row : StretchCases)
        for (const bool isPaletted : {false, true})
            for (const MRectangle& clip : Clips)
                for (const MColorOp op : {MColorOp::Copy, MColorOp::Alphablend})
                {
                    MBitmap source(row.sourceWidth, row.sourceHeight, isPaletted);
                    FillWithNoise(source, 6);
                    const MRectangle& target = row.target;
                    // Of one axis: where x lies in the source.
                    const auto place = [](int x, int from, int to, int clipFrom, int sFrom, int sTo)
                    {
                        const float step = from == to ? 0.0f
                                                      : static_cast<float>(sTo - sFrom) /
                                                            static_cast<float>(to - from);
                        const int first = std::max(from, clipFrom);
                        const float start =
                            static_cast<float>(sFrom) + static_cast<float>(first - from) * step;
                        return start + static_cast<float>(x - first) * step;
                    };
                    ExpectPixels(
                        clip, op,
                        [&](MDrawer& drawer)
                        {
                            drawer.StretchBlt(target.left, target.top, target.right, target.bottom,
                                              &source, row.part.left, row.part.top, row.part.right,
                                              row.part.bottom, Tint, op);
                        },
                        [&](int x, int y, MColor& pixel)
                        {
                            if (!row.target.Contains(x, y))
                                return false;
                            pixel = Sample(source,
                                           place(x, row.target.left, row.target.right, clip.left,
                                                 row.part.left, row.part.right),
                                           place(y, row.target.top, row.target.bottom, clip.top,
                                                 row.part.top, row.part.bottom));
                            return true;
                        },
                        row.what);
                }
}

TEST(StretchBlt, RepeatsAlongTheOtherAxis)
{
    MBitmap source(8, 6);
    FillWithNoise(source, 7);
    for (const bool isH : {true, false})
    {
        Canvas whole(Width, Height);
        Canvas pieces(Width, Height);
        if (isH)
        {
            whole.drawer.StretchBltH(1, 2, 35, 15, &source, 1, 1, 7, 4, White, MColorOp::Copy);
            for (const int y : {2, 6, 10})
                pieces.drawer.StretchBlt(1, y, 35, y + 3, &source, 1, 1, 7, 4, White,
                                         MColorOp::Copy);
            pieces.drawer.StretchBlt(1, 14, 35, 15, &source, 1, 1, 7, 2, White, MColorOp::Copy);
        }
        else
        {
            whole.drawer.SetClipRect({13, 0, Width, Height}); // in the midst of the second piece
            pieces.drawer.SetClipRect({13, 0, Width, Height});
            whole.drawer.StretchBltV(1, 2, 16, 15, &source, 1, 1, 7, 4, White, MColorOp::Copy);
            pieces.drawer.StretchBlt(8, 2, 14, 15, &source, 1, 1, 7, 4, White, MColorOp::Copy);
            pieces.drawer.StretchBlt(15, 2, 16, 15, &source, 1, 1, 2, 4, White, MColorOp::Copy);
        }
        EXPECT_EQ(PixelsOf(whole.bitmap), PixelsOf(pieces.bitmap));
        EXPECT_NE(PixelsOf(whole.bitmap), PixelsOf(Canvas(Width, Height).bitmap));
    }
}

TEST(MaskBlt, PaintsByCoverageAndWithSpansOnlyThose)
{
    MAlphaMask mask(50, 20);
    for (int x = 3; x < 45; ++x)
        for (int y = x % 7; y < 18; y += 3)
            mask.Set(x, y, static_cast<std::uint8_t>(x * 5));
    for (const bool hasSpans : {false, true})
    {
        if (hasSpans)
            mask.Finish();
        for (const bool invert : {false, true})
            for (const MRectangle& clip : Clips)
            {
                Canvas canvas(Width, Height);
                canvas.drawer.SetClipRect(clip);
                canvas.drawer.MaskBlt(4, -2, 60, 25, &mask, 1, 2, White, MColorOp::Add, invert);
                for (int y = 0; y < Height; ++y)
                    for (int x = 0; x < Width; ++x)
                    {
                        const int mx = x - 4 + 1;
                        const int my = y + 2 + 2;
                        int expected = 0;
                        if (clip.Contains(x, y) && mask.GetBounds().Contains(mx, my) && x >= 4)
                            expected = mask.Get(mx, my) ^ (invert ? 255 : 0);
                        if (hasSpans && expected == 255 &&
                            mask.Get(std::clamp(mx, 0, 49), std::clamp(my, 0, 19)) == 0)
                            expected = 0;
                        ASSERT_EQ(canvas.CoverageAt(x, y), expected) << x << ", " << y;
                    }
            }
    }
}

struct AlignedCase
{
    const char* what;
    int width, height; ///< of the source
    int flags;
    MRectangle expected;
};

using namespace alignedblt;

// Into a rectangle from (10, 20) to (49, 39), 40 by 20.
constexpr AlignedCase AlignedCases[] = {
    {"in the middle", 10, 6, 0, {25, 27, 34, 32}},
    {"upper left", 10, 6, Left | Top, {10, 20, 19, 25}},
    {"lower right", 10, 6, Right | Bottom, {40, 34, 49, 39}},
    {"over the width", 10, 6, FullWidth | Right | Top, {10, 20, 49, 25}},
    {"all over", 10, 6, FullWidth | FullHeight, {10, 20, 49, 39}},
    {"too wide", 80, 30, 0, {10, 22, 49, 36}},
    {"too high", 30, 60, Left, {10, 20, 19, 39}},
    {"both", 100, 100, Right, {30, 20, 49, 39}},
    {"vanishing", 1, 100, 0, {0, 0, -1, -1}},
};

TEST(AlignedBlt, PlacesTheImageByItsFlags)
{
    for (const AlignedCase& row : AlignedCases)
    {
        MBitmap source(row.width, row.height);
        MDrawerToMBitmap(source).FillRectangle(0, 0, 200, 200, White, MColorOp::Copy);
        Canvas canvas(60, 50);
        canvas.drawer.AlignedBlt(10, 20, 49, 39, &source, 0, 0, row.width - 1, row.height - 1,
                                 row.flags, White, MColorOp::Copy);
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 60; ++x)
                ASSERT_EQ(canvas.CoverageAt(x, y) > 0, row.expected.Contains(x, y))
                    << row.what << " at " << x << ", " << y;
    }
}

TEST(FillBitmap, CoversTheRectangleAsItsLayoutTells)
{
    MBitmap source(5, 4);
    FillWithNoise(source, 8);
    const auto filled = [&](MBitmapFill fill)
    {
        Canvas canvas(20, 16);
        FillBitmap(canvas.drawer, 0, 0, 19, 15, &source, fill, White, MColorOp::Copy);
        return PixelsOf(canvas.bitmap);
    };
    const std::vector<MColor> pattern = filled(MBitmapFill::Pattern);
    EXPECT_EQ(pattern[7 * 20 + 13], source.GetColor(3, 3));
    const std::vector<MColor> alongX = filled(MBitmapFill::HPattern);
    const std::vector<MColor> alongY = filled(MBitmapFill::VPattern);
    for (std::size_t i = 0; i < 15; ++i)
        EXPECT_EQ(alongX[i], alongX[i + 5]);
    for (std::size_t i = 0; i < 240; ++i)
        EXPECT_EQ(alongY[i], alongY[i + 80]);
    EXPECT_NE(alongX, alongY);
    EXPECT_NE(filled(MBitmapFill::Stretch), pattern);
    EXPECT_THROW(filled(static_cast<MBitmapFill>(4)), MException);
    MBitmap empty;
    Canvas canvas(2, 2);
    FillBitmap(canvas.drawer, 0, 0, 9, 9, &empty, static_cast<MBitmapFill>(4), White,
               MColorOp::Copy);
    EXPECT_EQ(canvas.Sum(), 0.0);
}

} // namespace
