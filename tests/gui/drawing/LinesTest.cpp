#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "tests/gui/drawing/Canvas.h"

namespace
{

void Line(Canvas& canvas, MPoint from, MPoint to)
{
    canvas.drawer.MoveTo(from.x, from.y);
    canvas.drawer.LineTo(to.x, to.y, White, MColorOp::Add);
}

TEST(LineTo, RoundsEachStepAsADivisionDoes)
{
    for (const MPoint to : {MPoint{999, 1}, MPoint{999, 500}, MPoint{1000, 333}, MPoint{997, 996},
                            MPoint{640, 479}, MPoint{3, 1}, MPoint{1000, 1000}})
    {
        Canvas canvas(1001, 1002);
        Line(canvas, {0, 0}, to);
        for (int x = 0; x < to.x; ++x)
        {
            // The nearest pixel, of two that are equally near the upper one.
            const int doubled = 2 * to.y * x;
            const int y = (doubled + to.x - 1) / (2 * to.x);
            const int share = 256 * (doubled - 2 * to.x * y) / (2 * to.x);
            ASSERT_EQ(canvas.CoverageAt(x, y), 255 - std::abs(share)) << to.x << ", " << to.y;
            if (share != 0 && (y > 0 || share > 0))
            {
                ASSERT_EQ(canvas.CoverageAt(x, y + (share < 0 ? -1 : 1)), std::abs(share));
            }
        }
    }
}

TEST(LineTo, StaysWithinOnePixelOfTheLineAndCoversItWholly)
{
    for (int i = 0; i < 40; ++i)
    {
        const double angle = 0.1 + i * 0.157;
        const MPoint from{30, 30};
        const MPoint to{30 + static_cast<int>(25.0 * std::cos(angle)),
                        30 + static_cast<int>(25.0 * std::sin(angle))};
        Canvas canvas(61, 61);
        Line(canvas, from, to);
        const double dx = to.x - from.x;
        const double dy = to.y - from.y;
        const double steps = std::max(std::abs(dx), std::abs(dy));
        EXPECT_EQ(canvas.Sum(), (steps + 1.0) * 255.0) << i;
        EXPECT_EQ(canvas.CoverageAt(to.x, to.y), 255);
        for (int y = 0; y < 61; ++y)
            for (int x = 0; x < 61; ++x)
            {
                const double distance = std::abs(dx * (y - from.y) - dy * (x - from.x)) / steps;
                EXPECT_TRUE(distance < 1.0 || canvas.CoverageAt(x, y) == 0) << i;
            }
    }
}

TEST(LineTo, MovesThePenAndDrawsNothingWhereItStands)
{
    Canvas canvas(9, 9);
    Line(canvas, {2, 2}, {2, 2});
    EXPECT_EQ(canvas.Sum(), 0.0);
    // A line that is cut to one pixel is that pixel.
    canvas.drawer.SetClipRect({4, 4, 4, 4});
    Line(canvas, {4, -3000}, {4, 3000});
    EXPECT_EQ(canvas.Picture()[4], "....#....");
    EXPECT_EQ(canvas.Sum(), 255.0);
    EXPECT_EQ(canvas.bitmap.pens.x, 4);
    EXPECT_EQ(canvas.bitmap.pens.y, 3000);
}

TEST(LineTo, ReachesTheClipFromAnyDistance)
{
    constexpr int Far = std::numeric_limits<int>::max();
    Canvas canvas(20, 20);
    canvas.drawer.SetClipRect({5, 5, 14, 14});
    Line(canvas, {-Far - 1, -Far - 1}, {Far, Far});
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(canvas.CoverageAt(i, i), i >= 5 && i <= 14 ? 255 : 0);
    EXPECT_EQ(canvas.Sum(), 2550.0);
    Line(canvas, {-Far, 3}, {Far, 4});
    Line(canvas, {-100, 10}, {10, -100});
    EXPECT_EQ(canvas.Sum(), 2550.0) << "they pass by the clip";
}

TEST(LineToF, SharesEachSampleBetweenFourPixels)
{
    Canvas canvas(6, 6);
    canvas.drawer.MoveToF(1.0, 2.5);
    canvas.drawer.LineToF(3.0, 2.5, White, MColorOp::Add);
    for (int x = 0; x < 6; ++x)
    {
        const bool isOn = x >= 1 && x <= 3;
        EXPECT_EQ(canvas.CoverageAt(x, 2), isOn ? 128 : 0);
        EXPECT_EQ(canvas.CoverageAt(x, 3), isOn ? 127 : 0);
    }
    EXPECT_EQ(canvas.Sum(), 3 * 255.0);
}

TEST(LineToF, FollowsTheLineInAnyDirection)
{
    for (int i = 0; i < 48; ++i)
    {
        const double angle = i * 0.1309;
        const double cosine = std::cos(angle);
        const double sine = std::sin(angle);
        Canvas canvas(61, 61);
        canvas.drawer.MoveToF(30.25, 30.5);
        canvas.drawer.LineToF(30.25 + 24.5 * cosine, 30.5 + 24.5 * sine, White, MColorOp::Add);
        // 25 samples, the last of which rounding may drop; of each, cutting loses up to 2 %.
        EXPECT_NEAR(canvas.Sum() / 255.0, 25.0, 1.5) << i;
        for (int y = 0; y < 61; ++y)
            for (int x = 0; x < 61; ++x)
                if (canvas.CoverageAt(x, y) > 0)
                {
                    EXPECT_LT(std::abs(cosine * (y - 30.5) - sine * (x - 30.25)), 1.42) << i;
                    EXPECT_LT(std::hypot(y - 30.5, x - 30.25), 26.0) << i;
                }
    }
}

TEST(LineToF, IgnoresWhatIsNoPlace)
{
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr double Largest = std::numeric_limits<double>::max();
    Canvas canvas(9, 9);
    canvas.drawer.MoveToF(4.0, 4.0);
    for (const double x : {Infinity, -Infinity, std::nan("")})
        canvas.drawer.LineToF(x, 1.0, White, MColorOp::Add);
    canvas.drawer.MoveToF(std::nan(""), 4.0);
    canvas.drawer.LineToF(4.0, 4.0, White, MColorOp::Add);
    EXPECT_EQ(canvas.Sum(), 0.0);
    for (const double x : {-Largest, Largest, 1e300, -1e18})
        canvas.drawer.LineToF(x, -x, White, MColorOp::AddAndOverflow);
}

TEST(PolyLine, JoinsThePointsAndSkipsRepetitions)
{
    constexpr std::array Points{MPoint{1, 1}, MPoint{1, 1}, MPoint{5, 1}, MPoint{5, 1},
                                MPoint{5, 4}};
    Canvas joined(8, 8);
    joined.drawer.PolyLine(Points, White, MColorOp::Add);
    Canvas single(8, 8);
    Line(single, {1, 1}, {5, 1});
    Line(single, {5, 1}, {5, 4});
    EXPECT_EQ(PixelsOf(joined.bitmap), PixelsOf(single.bitmap));
    joined.drawer.PolyLine(std::span(Points).first(1), White, MColorOp::Add);
    EXPECT_EQ(joined.bitmap.pens.x, 1);
    joined.drawer.PolyLine({}, White, MColorOp::Add);
    EXPECT_EQ(joined.Sum(), single.Sum());
}

} // namespace
