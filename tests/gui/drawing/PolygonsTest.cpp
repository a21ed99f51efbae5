#include <numbers>

#include "tests/gui/drawing/Canvas.h"

namespace
{

struct PolygonCase
{
    const char* what;
    std::vector<MPoint> points;
    std::vector<std::string> picture;
};

const PolygonCase Cases[] = {
    {"a square has both its edges",
     {{1, 1}, {5, 1}, {5, 3}, {1, 3}},
     {"........", ".#####..", ".#####..", ".#####..", "........"}},
    {"a triangle has its tip",
     {{3, 0}, {6, 3}, {0, 3}},
     {"...#....", "..###...", ".#####..", "#######.", "........"}},
    {"an hourglass is filled above and below its neck",
     {{0, 0}, {6, 0}, {0, 4}, {6, 4}},
     {"#######.", ".#####..", "...#....", "..###...", "#######."}},
    // Upward at 0 and 6, downward between: a span goes on over edges that run the same way.
    {"a bow tie is filled in its knot",
     {{0, 0}, {6, 4}, {6, 0}, {0, 4}},
     {"#######.", "######..", "####....", "#####...", "#.....#."}},
    {"a square within, the same way round, is filled over",
     {{0, 0}, {7, 0}, {7, 4}, {0, 4}, {0, 0}, {2, 1}, {5, 1}, {5, 3}, {2, 3}, {2, 1}},
     {"########", "########", "########", "########", "########"}},
    {"one the other way round leaves a hole but for its edges",
     {{0, 0}, {7, 0}, {7, 4}, {0, 4}, {0, 0}, {2, 1}, {2, 3}, {5, 3}, {5, 1}, {2, 1}},
     {"########", "###..###", "###..###", "###..###", "########"}},
    {"a notch from above",
     {{6, 4}, {0, 4}, {0, 0}, {3, 3}, {6, 0}},
     {"#.....#.", "##...##.", "###.###.", "#######.", "#######."}},
    {"no height",
     {{0, 2}, {5, 2}, {3, 2}},
     {"........", "........", "........", "........", "........"}},
};

TEST(FillPolygon, FillsTheSpansOfItsRule)
{
    for (const PolygonCase& row : Cases)
    {
        Canvas canvas(8, 5);
        canvas.drawer.FillPolygon(row.points, White, MColorOp::Add);
        EXPECT_EQ(canvas.Picture(), row.picture) << row.what;
        Canvas count(8, 5);
        count.drawer.FillPolygon(row.points, One, MColorOp::AddAndOverflow);
        EXPECT_LE(count.MostOften(), 1) << row.what << ", painted twice";
    }
}

TEST(FillPolygon, FillsThePentagonInAStar)
{
    std::vector<MPoint> star;
    star.reserve(5);
    for (int i = 0; i < 5; ++i)
        star.push_back({50 + static_cast<int>(45.0 * std::sin(i * 0.8 * std::numbers::pi)),
                        50 - static_cast<int>(45.0 * std::cos(i * 0.8 * std::numbers::pi))});
    Canvas canvas(101, 101);
    canvas.drawer.FillPolygon(star, One, MColorOp::AddAndOverflow);
    EXPECT_EQ(canvas.CoverageAt(50, 50), 1) << "all its sides turn the same way";
    EXPECT_EQ(canvas.CoverageAt(50, 15), 1);
    EXPECT_EQ(canvas.CoverageAt(20, 20), 0);
    EXPECT_EQ(canvas.CoverageAt(50, 80), 0) << "between two arms";
    EXPECT_EQ(canvas.MostOften(), 1);
}

TEST(FillPolygon, FollowsEdgesOfAnyLength)
{
    constexpr int Far = 2'147'483'647;
    Canvas canvas(20, 20);
    canvas.drawer.FillPolygon(
        std::vector<MPoint>{{-Far - 1, -Far - 1}, {Far, Far}, {-Far - 1, Far}}, White,
        MColorOp::Add);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            EXPECT_EQ(canvas.CoverageAt(x, y), x <= y ? 255 : 0) << x << ", " << y;
}

} // namespace
