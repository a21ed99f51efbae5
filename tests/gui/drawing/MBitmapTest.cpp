#include "gui/drawing/MBitmap.h"

#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "gui/drawing/MAlphaMask.h"
#include "tests/gui/drawing/Canvas.h"

namespace
{

TEST(MBitmap, RefusesAbsurdSizesAndStaysAsItWas)
{
    struct Size
    {
        int width, height;
    };
    MBitmap bitmap(3, 2);
    for (const Size& size : {Size{limits::BitmapSide + 1, 1}, Size{1, 2'000'000'000},
                             Size{limits::BitmapSide, limits::BitmapSide}})
        for (const bool isPaletted : {false, true})
        {
            EXPECT_THROW(bitmap.Create(size.width, size.height, isPaletted), MException);
            EXPECT_EQ(bitmap.GetBounds(), (MRectangle{0, 0, 2, 1}));
            EXPECT_FALSE(bitmap.IsPaletted());
        }
    EXPECT_THROW(MAlphaMask().Create(limits::BitmapSide + 1, 1), MException);
    for (const Size& size : {Size{0, 5}, Size{5, 0}, Size{-1, 2'000'000'000}})
    {
        bitmap.Create(size.width, size.height);
        EXPECT_TRUE(bitmap.IsEmpty());
        EXPECT_EQ(bitmap.GetClip(), (MRectangle{0, 0, -1, -1}));
    }
}

TEST(MBitmap, CutsItsClipToItself)
{
    MBitmap bitmap(10, 8);
    bitmap.SetClip({-3, 2, 99, 7});
    EXPECT_EQ(bitmap.GetClip(), (MRectangle{0, 2, 9, 7}));
    bitmap.SetClip({20, 20, 30, 30});
    EXPECT_TRUE(bitmap.GetClip().IsEmpty());
}

TEST(MBitmap, AssignsAllButThePen)
{
    for (const bool isPaletted : {false, true})
    {
        MBitmap source(7, 5, isPaletted);
        FillWithNoise(source, 1);
        source.SetClip({1, 1, 2, 2});
        source.pens.x = 9;
        MBitmap copy(1, 1);
        copy.Assign(source);
        copy.Assign(copy);
        EXPECT_EQ(copy.IsPaletted(), isPaletted);
        EXPECT_EQ(copy.GetClip(), copy.GetBounds());
        EXPECT_EQ(copy.pens.x, 0);
        const std::vector<MColor> pixels = PixelsOf(source);
        EXPECT_EQ(PixelsOf(copy), pixels);
        FillWithNoise(source, 2);
        EXPECT_EQ(PixelsOf(copy), pixels);
    }
}

TEST(MBitmap, GivesItsAlphaAsAMask)
{
    for (const bool isPaletted : {false, true})
    {
        MBitmap bitmap(37, 19, isPaletted);
        FillWithNoise(bitmap, 3);
        MAlphaMask mask;
        bitmap.ToAlphaMask(mask);
        EXPECT_TRUE(mask.HasSpans());
        for (int y = 0; y < 19; ++y)
            for (int x = 0; x < 37; ++x)
                EXPECT_EQ(mask.Get(x, y), bitmap.GetColor(x, y).GetAlpha());
    }
}

} // namespace
