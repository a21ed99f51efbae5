#include <cmath>
#include <numbers>

#include "tests/gui/drawing/Canvas.h"

namespace
{

constexpr int Radii[] = {0, 1, 2, 3, 5, 7, 10, 17, 29};
constexpr int Centre = 32;

TEST(Circle, LiesWithinOnePixelOfTheIdealOne)
{
    for (const int radius : Radii)
    {
        Canvas canvas(65, 65);
        canvas.drawer.Circle(Centre, Centre, radius, White, MColorOp::Add);
        for (int y = 0; y < 65; ++y)
            for (int x = 0; x < 65; ++x)
            {
                const int coverage = canvas.CoverageAt(x, y);
                const double distance = std::abs(std::hypot(x - Centre, y - Centre) - radius);
                EXPECT_TRUE(distance < 1.0 || coverage == 0) << radius;
                EXPECT_EQ(coverage, canvas.CoverageAt(y, x));
                EXPECT_EQ(coverage, canvas.CoverageAt(64 - x, y));
            }
        EXPECT_EQ(canvas.CoverageAt(Centre + radius, Centre), 255);
        // In each column of the upper eighth, two pixels share one.
        for (int x = 1; x < radius * 0.7 - 1.0; ++x)
        {
            int sum = 0;
            for (int y = 0; y < Centre - x; ++y)
                sum += canvas.CoverageAt(Centre + x, y);
            EXPECT_NEAR(sum, 255, 1) << radius << ", " << x;
        }
    }
}

TEST(FillCircle, CoversItsAreaByTheDistanceFromTheCentre)
{
    for (const int radius : Radii)
    {
        Canvas canvas(65, 65);
        canvas.drawer.FillCircle(Centre, Centre, radius, White, MColorOp::Add);
        for (int y = 0; y < 65; ++y)
            for (int x = 0; x < 65; ++x)
            {
                const double dx = x - Centre;
                const double dy = std::abs(y - Centre);
                const double half = std::floor(
                    std::sqrt(std::max(0.0, radius * radius - (dy - 0.5) * (dy - 0.5))) + 0.5);
                const double share =
                    std::clamp(radius - std::sqrt(dx * dx + dy * dy) + 1.0, 0.0, 1.0);
                const bool isInRow = dy <= radius && std::abs(dx) <= half;
                ASSERT_EQ(canvas.CoverageAt(x, y), isInRow ? static_cast<int>(255.0 * share) : 0)
                    << radius << " at " << dx << ", " << dy;
            }
        // The edge fades out half a pixel beyond the radius.
        EXPECT_NEAR(canvas.Sum() / 255.0, std::numbers::pi * std::pow(radius + 0.5, 2),
                    2.0 + 0.03 * radius * radius);
    }
}

TEST(RoundShapes, PaintNoPixelTwice)
{
    for (const int radius : Radii)
        for (int width = 1; width < 12; ++width)
            for (int height = 1; height < 12; height += 3)
            {
                Canvas canvas(70, 70);
                const auto once = [&](auto draw)
                {
                    canvas.drawer.FillRectangle(0, 0, 69, 69, Black, MColorOp::Copy);
                    draw(canvas.drawer);
                    EXPECT_EQ(canvas.MostOften(), 1) << radius << ", " << width << ", " << height;
                };
                constexpr MColorOp Count = MColorOp::AddAndOverflow;
                once([&](MDrawer& to) { to.Circle(33, 33, radius, One, Count); });
                once([&](MDrawer& to) { to.FillCircle(33, 33, radius, One, Count); });
                once([&](MDrawer& to)
                     { to.RoundRectangle(2, 3, 1 + width, 2 + height, radius, One, Count); });
                once([&](MDrawer& to)
                     { to.FillRoundRectangle(2, 3, 1 + width, 2 + height, radius, One, Count); });
            }
}

TEST(RoundRectangle, IsACirclePulledApart)
{
    for (const bool isFilled : {false, true})
        for (const int radius : {1, 4, 9})
        {
            Canvas circle(64, 64);
            Canvas round(64, 64);
            const MColorOp op = MColorOp::Add;
            if (isFilled)
            {
                circle.drawer.FillCircle(20, 20, radius, White, op);
                round.drawer.FillRoundRectangle(20 - radius, 20 - radius, 27 + radius, 23 + radius,
                                                radius, White, op);
            }
            else
            {
                circle.drawer.Circle(20, 20, radius, White, op);
                round.drawer.RoundRectangle(20 - radius, 20 - radius, 27 + radius, 23 + radius,
                                            radius, White, op);
            }
            // What lies between the corners repeats the axes of the circle.
            for (int y = 0; y < 60; ++y)
                for (int x = 0; x < 60; ++x)
                {
                    const int cx = x <= 20 ? x : x <= 27 ? 20 : x - 7;
                    const int cy = y <= 20 ? y : y <= 23 ? 20 : y - 3;
                    ASSERT_EQ(round.CoverageAt(x, y), circle.CoverageAt(cx, cy))
                        << radius << " at " << x << ", " << y;
                }
        }
}

TEST(RoundRectangle, CutsItsRadiusToHalfTheSmallerSide)
{
    for (const int radius : {4, 5, 1000, 2147483647})
    {
        Canvas cut(40, 40);
        cut.drawer.FillRoundRectangle(5, 5, 30, 13, radius, White, MColorOp::Add);
        cut.drawer.RoundRectangle(5, 20, 30, 29, radius, White, MColorOp::Add);
        Canvas exact(40, 40);
        exact.drawer.FillRoundRectangle(5, 5, 30, 13, 4, White, MColorOp::Add);
        exact.drawer.RoundRectangle(5, 20, 30, 29, 4, White, MColorOp::Add);
        EXPECT_EQ(PixelsOf(cut.bitmap), PixelsOf(exact.bitmap));
    }
    Canvas square(20, 20);
    square.drawer.RoundRectangle(2, 2, 9, 7, 0, White, MColorOp::Add);
    Canvas frame(20, 20);
    frame.drawer.Rectangle(2, 2, 9, 7, White, MColorOp::Add);
    EXPECT_EQ(PixelsOf(square.bitmap), PixelsOf(frame.bitmap));
}

TEST(Circle, ShowsItsArcWhereverTheClipIs)
{
    // Far larger than the bitmap: the arc is a straight line here, by the formula and cutting may
    // take one.
    constexpr int Radius = 2'000'000'000;
    Canvas canvas(20, 20);
    canvas.drawer.Circle(-5, 10 - Radius, Radius, White, MColorOp::Add);
    canvas.drawer.FillCircle(10, -Radius, Radius - 2, White, MColorOp::Add);
    for (int x = 0; x < 20; ++x)
        EXPECT_GE(canvas.CoverageAt(x, 10), 254) << x;
    EXPECT_LE(canvas.Sum(), 255.0 * 20);
    // The opposite side of a circle that is seen from its inside.
    canvas.drawer.Circle(Radius, 5, Radius - 3, White, MColorOp::Add);
    EXPECT_EQ(canvas.CoverageAt(3, 5), 255);
    canvas.drawer.Circle(5, 5, -1, White, MColorOp::Add);
    canvas.drawer.FillCircle(5, 5, -1, White, MColorOp::Add);
    EXPECT_EQ(canvas.CoverageAt(5, 5), 0);
}

} // namespace
