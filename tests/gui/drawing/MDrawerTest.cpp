#include "gui/drawing/MDrawer.h"

#include <limits>

#include "foundation/threads/MGuard.h"
#include "tests/gui/drawing/Canvas.h"

namespace
{

TEST(MDrawer, MovesTheFrameOfItsTarget)
{
    Canvas canvas(40, 30);
    MDrawer outer(&canvas.drawer, 10, 5);
    MDrawer inner(&outer, 3, 4, 7);
    EXPECT_EQ(outer.GetWidth(), 30);
    EXPECT_EQ(inner.GetWidth(), 7);
    EXPECT_EQ(inner.GetHeight(), 21);
    inner.SetClipRect({-1, -2, 5, 6});
    EXPECT_EQ(canvas.bitmap.GetClip(), (MRectangle{12, 7, 18, 15}));
    EXPECT_EQ(inner.GetClipRect(), (MRectangle{-1, -2, 5, 6}));
    inner.SetPixel(2, 3, White);
    EXPECT_EQ(canvas.CoverageAt(15, 12), 255);
    EXPECT_EQ(inner.GetPixel(2, 3), White);
    EXPECT_EQ(inner.GetPixel(-2, 3), Black) << "outside the clip";
}

TEST(MDrawer, DrawsOnNothing)
{
    MDrawer drawer(nullptr);
    drawer.FillRectangle(0, 0, 9, 9, White, MColorOp::Copy);
    EXPECT_EQ(drawer.GetWidth(), 0);
    EXPECT_TRUE(drawer.GetClipRect().IsEmpty());
    EXPECT_EQ(drawer.GetPixel(0, 0), Black);
}

TEST(MDrawerToMBitmap, LeavesAPalettedTargetAsItIs)
{
    MBitmap target(10, 10, true);
    FillWithNoise(target, 1);
    MBitmap source(10, 10);
    const std::vector<MColor> old = PixelsOf(target);
    MDrawerToMBitmap drawer(target);
    drawer.FillRectangle(0, 0, 9, 9, White, MColorOp::Copy);
    drawer.SetPixel(1, 1, White);
    drawer.BitBlt(0, 0, 9, 9, &source, 0, 0, White, MColorOp::Copy);
    drawer.LineTo(9, 9, White, MColorOp::Copy);
    drawer.StretchBltH(0, 0, 9, 9, &source, 0, 0, 3, 3, White, MColorOp::Copy);
    EXPECT_EQ(PixelsOf(target), old);
    EXPECT_EQ(drawer.GetPixel(4, 4), old[44]);
}

} // namespace
