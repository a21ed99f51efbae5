#include "curves/MEnvelopeComputer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "curves/MEnvelope.h"
#include "foundation/threads/MException.h"

namespace
{

using Type = MEnvelopePoint::ControlType;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

struct Point
{
    double x;
    double y;
    Type type = Type::Mode1;
    double curvature = 0.0;
    double curvatureX = 0.0;
};

MEnvelope MakeCurve(const std::vector<Point>& points)
{
    MEnvelope curve(-1.0, 1.0, -1.0, 2.0);
    for (const auto& [x, y, type, curvature, curvatureX] : points)
    {
        MEnvelopePoint& point = curve.Add(x, y);
        point.Type = type;
        point.Curvature = curvature;
        point.CurvatureX = curvatureX;
    }
    return curve;
}

MEnvelopeComputer Compile(const MEnvelope& curve)
{
    MEnvelopeComputer computer;
    computer.Compile(curve);
    return computer;
}

MEnvelopeComputer Compile(const std::vector<Point>& points)
{
    return Compile(MakeCurve(points));
}

double Read(MEnvelopeComputer& computer, double x)
{
    computer.SeekBack(x);
    return computer.Get(x);
}

/// All kinds of segments, a jump and corners of both kinds.
MEnvelope MakeMixedCurve()
{
    MEnvelope curve = MakeCurve({{0.0, 0.2, Type::Mode1, 0.7},
                                 {0.5, 0.9, Type::Mode2, -0.6},
                                 {1.0, 0.1, Type::Mode3, 0.3},
                                 {1.5, 0.8, Type::Free1, 0.5, -0.4},
                                 {2.0, 0.3, Type::Smooth1},
                                 {2.5, 0.6, Type::Smooth2},
                                 {3.0, 0.0, Type::Stairs, 0.4},
                                 {3.5, 1.0, Type::Pulses, 0.3},
                                 {4.0, 0.0},
                                 {4.0, 0.7},
                                 {4.5, 0.4, Type::Free1, 0.5, 0.0},
                                 {5.0, 0.6, Type::Free1, -0.2, 1.0},
                                 {5.5, 0.3}});
    for (const std::size_t corner : {1U, 2U, 4U, 12U})
    {
        curve.GetPoints()[corner].SmoothX1 = 0.4;
        curve.GetPoints()[corner].SmoothingType = corner % 4 == 0 ? 1 : 0;
    }
    return curve;
}

struct SegmentCase
{
    const char* what;
    Type type;
    double curvature;
    double curvatureX;
    double (*share)(double u, double c, double cx); ///< of the way from one end to the other
};

double Quadratic(double u, double c, double)
{
    return (1.0 - c) * u + c * u * u;
}

double FourthOrder(double u, double c, double)
{
    // A negative curvature turns the curve by half a turn round its middle.
    const auto rising = [](double v, double d) { return d * std::pow(v, 4.0) + (1.0 - d) * v; };
    return c > 0.0 ? rising(u, c) : 1.0 - rising(1.0 - u, -c);
}

double Superellipse(double u, double c, double)
{
    const double p = std::exp(3.0 * c);
    return 1.0 - std::pow(std::max(0.0, 1.0 - std::pow(u, p)), 1.0 / p);
}

double Bezier(double u, double c, double cx)
{
    const auto mix = [](double t, double control) { return 2.0 * t * (1.0 - t) * control + t * t; };
    double low = 0.0;
    double high = 1.0;
    for (int step = 0; step < 80; ++step)
    {
        const double middle = 0.5 * (low + high);
        (mix(middle, 0.5 * (1.0 + cx)) < u ? low : high) = middle;
    }
    return mix(low, 0.5 * (1.0 + c));
}

double Stairs4(double u, double, double)
{
    return std::floor(4.0 * u) / 4.0;
}

double Pulses(double u, double c, double)
{
    const double halves = std::floor(2.0 * std::max(1.0, std::round(64.0 * c * c)) * u);
    return (std::fmod(halves, 2.0) != 0.0) == (c > 0.0) ? 0.0 : 1.0;
}

constexpr SegmentCase SegmentCases[] = {
    {"line", Type::Mode1, 0.0, 0.0, [](double u, double, double) { return u; }},
    {"quadratic", Type::Mode1, 0.8, 0.0, Quadratic},
    {"quadratic, 2u - u^2", Type::Mode1, -1.0, 0.0, Quadratic},
    {"fourth order", Type::Mode2, 0.75, 0.0, FourthOrder},
    {"fourth order, mirrored", Type::Mode2, -0.6, 0.0, FourthOrder},
    {"powers", Type::Mode3, 0.5, 0.0, Superellipse},
    {"powers below 1", Type::Mode3, -0.4, 0.0, Superellipse},
    {"Bezier", Type::Free1, 0.7, -0.5, Bezier},
    {"Bezier to the right", Type::Free1, -0.9, 0.8, Bezier},
    {"Bezier, bent in x alone", Type::Free1, 0.0, 0.5, Bezier},
    {"Bezier, straight in x", Type::Free1, 0.6, 0.0, Bezier},
    {"Bezier, nearly straight in x", Type::Free1, 0.6, 2e-7, Bezier},
    {"Bezier, leaves upright", Type::Free1, 0.3, -1.0, Bezier},
    {"Bezier, arrives upright", Type::Free1, 0.3, 1.0, Bezier},
    {"smooth between levels", Type::Smooth1, 0.0, 0.0,
     [](double u, double, double) { return u * u * (3.0 - 2.0 * u); }},
    {"stairs", Type::Stairs, 0.25, 0.0, Stairs4},
    {"stairs, without a sign", Type::Stairs, -0.25, 0.0, Stairs4},
    {"stairs that round to one", Type::Stairs, 0.1, 0.0,
     [](double, double, double) { return 0.0; }},
    {"one pulse", Type::Pulses, 0.0, 0.0, Pulses},
    {"pulses", Type::Pulses, 0.3, 0.0, Pulses},
    {"pulses, lower level first", Type::Pulses, -1.0, 0.0, Pulses},
};

TEST(MEnvelopeComputer, SegmentsFollowTheirClosedForms)
{
    // The last ones are a few samples of a curve over samples.
    constexpr struct
    {
        double x, width;
    } frames[] = {{0.0, 1.0}, {-3.0, 0.001}, {2e5, 1e5}, {1e6, 100.0}, {1e8, 4.0}};
    for (const SegmentCase& row : SegmentCases)
        for (const auto& [x0, width] : frames)
        {
            const double x1 = x0 + width;
            MEnvelopeComputer computer =
                Compile({{x0, -0.5, row.type, row.curvature, row.curvatureX}, {x1, 1.5}});
            for (int i = 0; i < 1000; ++i)
            {
                const double x = x0 + (i + 0.37) / 1000.0 * width;
                const double share = row.share((x - x0) / (x1 - x0), row.curvature, row.curvatureX);
                ASSERT_NEAR(computer.Get(x), -0.5 + 2.0 * share, 1e-11)
                    << row.what << " at " << x << " from " << x0;
            }
            EXPECT_EQ(Read(computer, x0 - 1.0), -0.5) << row.what;
            EXPECT_EQ(Read(computer, x1), 1.5) << row.what;
        }
}

TEST(MEnvelopeComputer, FillsAsItReadsSingleValues)
{
    MEnvelopeComputer single = Compile(MakeMixedCurve());
    for (const double start : {-0.313, 0.4013, 3.1131, 5.4987, 7.0})
        for (const double step : {0.0023711, 0.37, 1e-9, 1e300, 0.0, -0.0131, -Infinity, Infinity})
            for (const int count : {0, 1, 2, 3, 7, 64, 1001})
            {
                const auto size = static_cast<std::size_t>(count);
                std::vector<float> floats(size + 1, -9.0f);
                std::vector<double> doubles(size + 1, -9.0);
                MEnvelopeComputer batch = single;
                batch.SeekBack(start);
                batch.FillFloat(floats.data(), start, step, count);
                batch.SeekBack(start);
                batch.FillDouble(doubles.data(), start, step, count);
                for (std::size_t i = 0; i < size; ++i)
                {
                    const double x = i == 0 ? start : start + static_cast<double>(i) * step;
                    const double expected = Read(single, x);
                    ASSERT_NEAR(doubles[i], expected, 1e-11) << x << ", sample " << i;
                    ASSERT_NEAR(floats[i], expected, 1e-7) << x << ", sample " << i;
                }
                ASSERT_EQ(floats[size], -9.0f) << "beyond the end";
                ASSERT_EQ(doubles[size], -9.0) << "beyond the end";
            }
}

TEST(MEnvelopeComputer, FillsStepUpAtTheSampleWhereSingleValuesDo)
{
    for (const double count : {3.0, 7.0, 10.0, 49.0})
        for (const double perStep : {3.0, 10.0, 21.0}) // rounding tells which side of an edge wins
        {
            MEnvelopeComputer computer =
                Compile({{0.1, 0, Type::Stairs, std::sqrt(count / 64.0)}, {1.1, 1}});
            const double step = 1.0 / (count * perStep);
            std::vector<double> filled(static_cast<std::size_t>(count * perStep) - 1);
            computer.FillDouble(filled.data(), 0.1, step, static_cast<int>(filled.size()));
            for (std::size_t i = 0; i < filled.size(); ++i)
                ASSERT_EQ(filled[i], Read(computer, 0.1 + static_cast<double>(i) * step)) << i;
        }
}

TEST(MEnvelopeComputer, MapsPositionsInAnyOrder)
{
    MEnvelopeComputer single = Compile(MakeMixedCurve());
    MEnvelopeComputer mapping = single;
    for (const double turns : {1.0, 40.0, 499.7})
    {
        std::vector<float> values(1001);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = static_cast<float>(
                2.5 + 3.3 * std::sin(turns * 6.28 * static_cast<double>(i) / 1000.0));
        const std::vector<float> positions = values;
        mapping.MapFloat(values.data(), static_cast<int>(values.size()));
        for (std::size_t i = 0; i < values.size(); ++i)
            ASSERT_NEAR(values[i], Read(single, positions[i]), 1e-7) << positions[i];
    }
}

TEST(MEnvelopeComputer, SmoothSegmentsTakeTheSlopesAroundThem)
{
    const struct
    {
        const char* what;
        std::vector<Point> points;
        double from;
        double slopeFrom;
        double to;
        double slopeTo;
    } cases[] = {
        {"lines", {{0, 0}, {1, 2, Type::Smooth1}, {2, 2}, {3, -1}}, 1, 2.0, 2, -3.0},
        {"a quadratic, nothing",
         {{0, 0, Type::Mode1, 0.5}, {1, 1, Type::Smooth1}, {2, 3}},
         1,
         1.5, // (1 - c) + 2c
         2,
         0.0},
        {"nothing, powers of 1 by 2",
         {{0, 3, Type::Smooth1}, {1, 1, Type::Mode3, 1e-12}, {3, 2}},
         0,
         0.0,
         1,
         0.5},
        {"a level, one not there yet",
         {{0, 0}, {1, 0, Type::Smooth1}, {2, 1, Type::Smooth1}, {3, 5}, {4, 6}},
         1,
         0.0,
         2,
         0.0},
        {"one that is there, a line",
         {{0, 0, Type::Smooth2}, {1, 1, Type::Smooth1}, {2, 4}, {3, 5}},
         1,
         2.0, // the mean of 1 and 3
         2,
         1.0},
        {"secants: peak, valley",
         {{0, 0}, {1, 2, Type::Smooth2}, {2, 1}, {3, 4}},
         1,
         0.5, // the mean of 2 and -1
         2,
         0.0},
        {"secants: rise, end", {{0, 0}, {1, 2, Type::Smooth2}, {3, 3}}, 1, 1.25, 3, 0.0},
        {"secants: edge, rise",
         {{0, 0}, {1, 1}, {1, 2, Type::Smooth2}, {2, 3}, {3, 7}},
         1,
         0.0,
         2,
         2.5},
    };
    constexpr double step = 1e-6;
    for (const auto& row : cases)
    {
        MEnvelopeComputer computer = Compile(row.points);
        const double start = Read(computer, row.from);
        EXPECT_NEAR((computer.Get(row.from + step) - start) / step, row.slopeFrom, 1e-4)
            << row.what;
        const double last = computer.Get(row.to - step);
        EXPECT_NEAR((computer.Get(row.to) - last) / step, row.slopeTo, 1e-4) << row.what;
    }
}

struct CornerCase
{
    const char* what;
    std::size_t index;
    unsigned flags;
    double smooth1, smooth2;
    double left, right; ///< where the corner has to begin and end
};

constexpr unsigned LockSides = MEnvelopePoint::LockSides;
constexpr unsigned Proportional = MEnvelopePoint::Proportional;

constexpr CornerCase CornerCases[] = {
    {"free sides", 1, 0, 0.5, 0.25, 0.75, 1.375},
    {"locked sides", 1, LockSides, 0.5, 0.25, 0.75, 1.75},
    {"proportional", 1, Proportional, 0.5, 0.25, 0.75, 1.125},
    {"both", 1, LockSides | Proportional, 0.5, 0.25, 0.75, 1.25},
    {"full", 1, 0, 1.0, 1.0, 0.5, 2.5},
    {"more than full, less than none", 1, 0, 7.0, -3.0, 0.5, 1.0},
    {"not a number", 1, 0, 0.5, NotANumber, 0.75, 1.0},
    {"first point", 0, 0, 1.0, 0.5, -0.5, 0.25},
    {"last point", 2, Proportional, 0.5, 1.0, 3.25, 5.5},
};

TEST(MEnvelopeComputer, CornersAreRoundWithinTheirReachAndNowhereElse)
{
    const std::vector<Point> points{{0, 0}, {1, 1}, {4, -1}};
    MEnvelopeComputer sharp = Compile(points);
    for (const CornerCase& row : CornerCases)
        for (const int smoothing : {0, 1})
        {
            const std::string what = std::string(row.what) + ", mode " + std::to_string(smoothing);
            MEnvelope curve = MakeCurve(points);
            MEnvelopePoint& point = curve.GetPoints()[row.index];
            point.Flags = static_cast<std::uint8_t>(row.flags);
            point.SmoothX1 = row.smooth1;
            point.SmoothX2 = row.smooth2;
            point.SmoothingType = smoothing;
            MEnvelopeComputer round = Compile(curve);

            for (double x = -1.003; x < 6.0; x += 0.01)
            {
                const bool isRound = x >= row.left && x <= row.right;
                ASSERT_TRUE(isRound || Read(round, x) == Read(sharp, x)) << what << " at " << x;
            }

            const auto slopeAt = [](MEnvelopeComputer& computer, double x)
            { return (Read(computer, x + 1e-7) - Read(computer, x)) / 1e-7; };
            const double y0 = Read(sharp, row.left);
            const double y1 = Read(sharp, row.right);
            const double m0 = slopeAt(sharp, row.left - 1e-6);
            const double m1 = slopeAt(sharp, row.right + 1e-6);
            EXPECT_NEAR(Read(round, row.left), y0, 1e-12) << what;
            EXPECT_NEAR(Read(round, row.right - 1e-12), y1, 1e-10) << what;
            if (row.left < point.X && row.right > point.X)
            {
                EXPECT_NEAR(slopeAt(round, row.left), m0, 1e-5) << what;
                EXPECT_NEAR(slopeAt(round, row.right - 2e-7), m1, 1e-5) << what;
            }

            // The two curves are told apart by their middles.
            const double width = row.right - row.left;
            if (smoothing == 1)
            {
                EXPECT_NEAR(Read(round, row.left + 0.5 * width),
                            0.5 * (y0 + y1) + (m0 - m1) * width / 8.0, 1e-7)
                    << what;
            }
            else if (row.left < point.X && row.right > point.X)
            {
                EXPECT_NEAR(Read(round, 0.25 * row.left + 0.5 * point.X + 0.25 * row.right),
                            0.25 * y0 + 0.5 * point.Y + 0.25 * y1, 1e-12)
                    << what;
            }
        }
}

TEST(MEnvelopeComputer, CornersWhoseTangentsDoNotCrossAreCubics)
{
    MEnvelope line = MakeCurve({{1e6, 0}, {1e6 + 50, 50}, {1e6 + 100, 100}});
    line.GetPoints()[1].SmoothX1 = 0.8;
    MEnvelopeComputer onLine = Compile(line);
    for (double x = 0.25; x < 100.0; x += 1.0)
        ASSERT_NEAR(onLine.Get(1e6 + x), x, 1e-8);

    // From the last stair to the level of the point.
    MEnvelope levels = MakeCurve({{0, 0, Type::Stairs, 0.25}, {1, 1}, {2, 1}});
    levels.GetPoints()[1].SmoothX1 = 0.4;
    MEnvelopeComputer onLevels = Compile(levels);
    for (const auto& [x, y] : {std::pair(0.79, 0.75), {0.9, 0.7890625}, {1.0, 0.875}, {1.21, 1.0}})
        EXPECT_NEAR(onLevels.Get(x), y, 1e-12);

    // From 0.816 with the slope 0.82 at 0.6 to 1.08125 with 0.55 at 1.25: they cross before 0.6.
    MEnvelope bent = MakeCurve({{0, 0, Type::Mode1, -0.9}, {1, 1, Type::Mode1, 0.9}, {2, 2}});
    bent.GetPoints()[1].Flags = 0;
    bent.GetPoints()[1].SmoothX1 = 0.8;
    bent.GetPoints()[1].SmoothX2 = 0.5;
    EXPECT_NEAR(Compile(bent).Get(0.925), 0.9705625, 1e-12);
}

TEST(MEnvelopeComputer, TellsFromWhereItIsSilent)
{
    constexpr double Never = MEnvelopeComputer::EndOfAll;
    const struct
    {
        const char* what;
        std::vector<Point> points;
        std::size_t smoothed;
        double smoothing;
        double silentFrom;
    } cases[] = {
        {"no points", {}, 0, 0, Never},
        {"one zero", {{0.3, 0}}, 0, 0, 0.3},
        {"one level", {{0.3, 0.1}}, 0, 0, Never},
        {"ends above zero", {{0, 0}, {1, 1}}, 0, 0, Never},
        {"ends at zero", {{0, 1}, {1, 0}}, 0, 0, 1},
        {"silent before its end", {{0, 1}, {1, 0}, {2, 0}, {3, 0}}, 0, 0, 1},
        {"silent all over", {{0, 0}, {1, 0}, {2, 0}}, 0, 0, 0},
        {"a peak before the end", {{0, 0}, {1, 1}, {2, 0}}, 0, 0, 2},
        {"the end is rounded", {{0, 1}, {1, 0}}, 1, 0.5, 1.25},
        {"rounded into silence", {{0, 1}, {1, 0}, {2, 0}, {3, 0}}, 1, 1.0, 1.5},
        {"close points do not tell", {{0, 1}, {1, 0.5}, {1, 0}, {2, 0}}, 0, 0, 2},
    };
    for (const auto& row : cases)
    {
        MEnvelope curve = MakeCurve(row.points);
        if (row.smoothing > 0.0)
            curve.GetPoints()[row.smoothed].SmoothX1 = row.smoothing;
        MEnvelopeComputer computer = Compile(curve);
        EXPECT_EQ(computer.GetSilentFromX(), row.silentFrom) << row.what;
        for (int i = 0; row.silentFrom != Never && i < 10; ++i)
            EXPECT_EQ(Read(computer, row.silentFrom + i * 0.31), 0.0) << row.what;
    }
}

TEST(MEnvelopeComputer, CoversAllX)
{
    const struct
    {
        const char* what;
        std::vector<Point> points;
        std::vector<std::pair<double, double>> values;
    } cases[] = {
        {"the middle of the box", {}, {{-Infinity, 0.5}, {0, 0.5}, {1e300, 0.5}}},
        {"one point", {{0.5, 3}}, {{-1, 3}, {0.5, 3}, {2, 3}}},
        {"before and behind", {{0, 4}, {1, 5}}, {{-Infinity, 4}, {-1, 4}, {1, 5}, {Infinity, 5}}},
        {"the right one of two at a place",
         {{0, 0}, {1, 1}, {1, 5}, {2, 5}},
         {{0.75, 0.75}, {1, 5}, {1.5, 5}}},
        {"the left one of two nearly at a place",
         {{0, 0}, {1, 1}, {1 + 5e-9, 5}, {2, 5}},
         {{1 + 4e-9, 1}, {1 + 6e-9, 5}}},
    };
    for (const auto& row : cases)
    {
        MEnvelopeComputer computer = Compile(row.points);
        for (const auto& [x, y] : row.values)
            EXPECT_EQ(computer.Get(x), y) << row.what << " at " << x;
    }
    EXPECT_EQ(MEnvelopeComputer().Get(0.5), 0.0);
}

TEST(MEnvelopeComputer, TheCursorGoesBackOnlyWhenTold)
{
    MEnvelopeComputer computer = Compile({{0, 0}, {1, 1}, {2, -1}});
    EXPECT_EQ(computer.Get(1.5), 0.0);
    EXPECT_EQ(computer.Get(0.5), 2.0) << "the second line, drawn out";
    computer.SeekBack(0.75);
    EXPECT_EQ(computer.Get(0.75), 0.75);
    EXPECT_EQ(computer.Get(1.75), -0.5);
}

TEST(MEnvelopeComputer, CopiesStandOnTheirOwn)
{
    MEnvelopeComputer copy = Compile(MakeMixedCurve()); // larger than what it takes over
    {
        MEnvelopeComputer original = Compile({{0, 0}, {1, 1}, {2, -1}});
        original.Get(1.5);
        copy = original;
        original.Compile(MakeCurve({{0, 7}, {1, 7}, {2, 7}}));
    }
    EXPECT_EQ(copy.Get(0.5), 2.0) << "the cursor is copied too";
    EXPECT_EQ(Read(copy, 0.5), 0.5);
}

TEST(MEnvelopeComputer, AnUnknownTypeLeavesTheOldCurve)
{
    MEnvelopeComputer computer = Compile({{0, 0}, {1, 1}});
    for (const int type : {-1, 8, 1 << 30})
    {
        try
        {
            computer.Compile(MakeCurve({{0, 3}, {1, 2, static_cast<Type>(type)}, {2, 3}}));
            ADD_FAILURE() << type;
        }
        catch (const MException& exception)
        {
            EXPECT_EQ(exception.text, "Invalid control point type.");
        }
        EXPECT_EQ(Read(computer, 0.5), 0.5);
    }
}

TEST(MEnvelopeComputer, OutlivesCurvesThatMakeNoSense)
{
    constexpr double wild[] = {0.0,    1.0,    -1.0,     0.5,       1e-9,       1e308,
                               -1e308, 1e-310, Infinity, -Infinity, NotANumber, 1e9};
    unsigned random = 1;
    const auto draw = [&random](unsigned count)
    { return ((random = random * 747796405u + 1u) >> 16u) % count; };
    const auto drawWild = [&] { return wild[draw(12)]; };
    for (int round = 0; round < 300; ++round)
    {
        MEnvelope curve;
        for (unsigned points = draw(7); points > 0; --points)
        {
            MEnvelopePoint& point = curve.Add(drawWild(), drawWild());
            point.Type = static_cast<Type>(draw(8));
            point.Curvature = drawWild();
            point.CurvatureX = drawWild();
            point.SmoothX1 = drawWild();
            point.SmoothX2 = drawWild();
            point.Flags = static_cast<std::uint8_t>(draw(16));
            point.SmoothingType = static_cast<std::int32_t>(draw(2));
        }
        MEnvelopeComputer computer = Compile(curve);
        std::vector<float> floats(101, -9.0f);
        std::vector<double> doubles(101, -9.0);
        for (int part = 0; part < 20; ++part)
        {
            computer.SeekBack(drawWild());
            computer.FillFloat(floats.data(), drawWild(), drawWild(), 100);
            computer.FillDouble(doubles.data(), drawWild(), drawWild(), 100);
            for (int i = 0; i < 50; ++i)
                floats[draw(100)] = static_cast<float>(std::clamp(drawWild(), -1e30, 1e30));
            computer.MapFloat(floats.data(), 100);
            computer.Get(drawWild());
        }
        EXPECT_EQ(floats[100], -9.0f);
        EXPECT_EQ(doubles[100], -9.0);
    }
}

} // namespace
