#include "tests/gui/drawing/Canvas.h"

namespace
{

TEST(Rectangle, PaintsEachPixelOfItsEdgeOnce)
{
    struct Case
    {
        MRectangle rectangle;
        int pixels;
    };
    for (const Case& row : {Case{{2, 3, 8, 6}, 18}, Case{{2, 3, 2, 3}, 1}, Case{{2, 3, 8, 3}, 7},
                            Case{{2, 3, 2, 6}, 4}, Case{{2, 3, 3, 4}, 4}, Case{{8, 3, 2, 6}, 0}})
    {
        const auto& [left, top, right, bottom] = row.rectangle;
        Canvas canvas(12, 12);
        canvas.drawer.Rectangle(left, top, right, bottom, One, MColorOp::AddAndOverflow);
        EXPECT_EQ(canvas.Sum(), row.pixels);
        EXPECT_EQ(canvas.MostOften(), row.pixels > 0 ? 1 : 0);
        for (int y = 0; y < 12; ++y)
            for (int x = 0; x < 12; ++x)
                EXPECT_TRUE(canvas.CoverageAt(x, y) == 0 || x == left || x == right || y == top ||
                            y == bottom);
    }
}

TEST(FillRectangle, StoresWhatIsOpaqueAndBlendsTheRest)
{
    struct Case
    {
        const char* what;
        MColor colour;
        MColorOp op;
        MColor expected;
    };
    // On (50, 60, 70, 80); a blend by 128 has 127 parts of the old colour.
    for (const Case& row :
         {Case{"opaque", MColor(9, 255, 0), MColorOp::Alphablend, MColor(9, 255, 0)},
          Case{"copy", MColor(9, 8, 7, 6), MColorOp::Copy, MColor(9, 8, 7, 6)},
          Case{"half", MColor(100, 0, 200, 128), MColorOp::Alphablend, MColor(74, 29, 134, 80)},
          Case{"nothing", MColor(9, 8, 7, 0), MColorOp::Alphablend, MColor(49, 59, 69, 80)},
          Case{"add", MColor(9, 8, 200), MColorOp::Add, MColor(59, 68, 255, 80)}})
        for (const MRectangle& area : {MRectangle{0, 0, 9, 5}, MRectangle{2, 1, 6, 4}})
        {
            MBitmap bitmap(10, 6);
            MDrawerToMBitmap drawer(bitmap);
            drawer.FillRectangle(-5, -5, 50, 50, MColor(50, 60, 70, 80), MColorOp::Copy);
            drawer.FillRectangle(area.left, area.top, area.right, area.bottom, row.colour, row.op);
            for (int y = 0; y < 6; ++y)
                for (int x = 0; x < 10; ++x)
                    EXPECT_EQ(bitmap.GetColor(x, y),
                              area.Contains(x, y) ? row.expected : MColor(50, 60, 70, 80))
                        << row.what;
        }
}

TEST(FillRectangleGradient, FillsEachStepWithItsOwnColour)
{
    constexpr MColor First(255, 0, 100, 255);
    constexpr MColor Last(0, 200, 110, 40);
    for (const MColorOp op : AllOperations())
        for (const bool isHorizontal : {false, true})
        {
            MBitmap gradient(30, 30);
            MBitmap steps(30, 30);
            FillWithNoise(gradient, 9);
            FillWithNoise(steps, 9);
            MDrawerToMBitmap stepDrawer(steps);
            MDrawerToMBitmap drawer(gradient);
            drawer.SetClipRect({3, 4, 26, 27});
            stepDrawer.SetClipRect({3, 4, 26, 27});
            drawer.FillRectangleGradient(-4, -2, 28, 21, First, Last, isHorizontal ? 1 : 0, op);
            const int from = isHorizontal ? -4 : -2;
            const int to = isHorizontal ? 28 : 21;
            for (int at = from; at <= to; ++at)
            {
                const int m = (at - from) * 255 / (to - from);
                const auto mix = [m](int a, int b) { return (a * (255 - m) + b * m) / 256; };
                const MColor colour(mix(255, 0), mix(0, 200), mix(100, 110), mix(255, 40));
                if (isHorizontal)
                    stepDrawer.FillRectangle(at, -2, at, 21, colour, op);
                else
                    stepDrawer.FillRectangle(-4, at, 28, at, colour, op);
            }
            EXPECT_EQ(PixelsOf(gradient), PixelsOf(steps)) << NameOf(op).ToUTF8();
        }
    Canvas canvas(5, 5);
    canvas.drawer.FillRectangleGradient(4, 0, 0, 4, White, White, 1, MColorOp::Copy);
    canvas.drawer.FillRectangleGradient(0, 4, 4, 0, White, White, 0, MColorOp::Copy);
    EXPECT_EQ(canvas.Sum(), 0.0);
    canvas.drawer.FillRectangleGradient(2, 2, 2, 2, White, White, 1, MColorOp::Copy);
    EXPECT_EQ(canvas.CoverageAt(2, 2), 254);
}

} // namespace
