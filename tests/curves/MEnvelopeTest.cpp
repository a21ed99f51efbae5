#include "curves/MEnvelope.h"

#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/limits.h"
#include "foundation/threads/MException.h"
#include "tests/foundation/xml/Trees.h"

namespace
{

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

/// X and flags of each point.
using Places = std::vector<std::pair<double, int>>;

TEST(MEnvelope, InsertsAndRemovesInAnyPlace)
{
    MEnvelope curve(-1.0, 2.0, 0.0, 1.0);
    curve.AddEndPoints(0.25, 0.75);
    MEnvelopePoint middle;
    middle.X = 0.5;
    curve.Insert(1, middle);
    curve.Insert(3, middle);
    EXPECT_THROW(curve.Insert(5, middle), MException);
    EXPECT_THROW(curve.Remove(4), MException);
    EXPECT_EQ(curve.Remove(3).X, 0.5);
    ASSERT_EQ(curve.GetCount(), 3u);
    EXPECT_EQ(curve.GetPoints()[0].Y, 0.25);
    EXPECT_EQ(curve.GetPoints()[0].Flags, 13);
    EXPECT_EQ(curve.GetPoints()[1].X, 0.5);
    EXPECT_EQ(curve.GetPoints()[2].X, 2.0);

    constexpr std::pair<double, int> Segments[] = {{-1.5, -1}, {-1.0, 0}, {0.49, 0}, {0.5, 1},
                                                   {1.99, 1},  {2.0, 2},  {9.0, 2},  {NaN, -1}};
    for (const auto& [x, segment] : Segments)
        EXPECT_EQ(curve.FindSegment(x), segment) << x;
    EXPECT_EQ(MEnvelope().FindSegment(0.0), -1);
}

struct SanitisingCase
{
    const char* what;
    Places before;
    Places after;
};

TEST(MEnvelope, SanitisingMovesPointsIntoTheBoxAndApart)
{
    constexpr double Gap = 1e-10;
    const SanitisingCase cases[] = {
        {"in order", {{0.0, 13}, {0.5, 12}, {1.0, 13}}, {{0.0, 13}, {0.5, 12}, {1.0, 13}}},
        {"no points", {}, {}},
        {"outside of the box", {{-3.0, 12}, {7.0, 12}}, {{0.0, 12}, {1.0, 12}}},
        {"not finite",
         {{NaN, 12}, {0.5, 12}, {1.0, 1}, {Infinity, 1}},
         {{0.0, 12}, {0.5, 12}, {1.0, 1}, {0.0, 1}, {1.0, 13}}},
        {"a backward point and one that it then pushes",
         {{0.5, 0}, {0.25, 0}, {0.5, 0}, {1.0, 0}},
         {{0.5, 0}, {0.5 + Gap, 0}, {0.5 + Gap + Gap, 0}, {1.0, 0}}},
        {"no room at the end",
         {{0.0, 0}, {1.0, 0}, {1.0, 0}, {0.3, 0}, {1.0, 1}},
         {{0.0, 0}, {1.0, 0}, {1.0, 1}}},
        {"fixed and exempt points stay",
         {{0.5, 12}, {0.5, 1}, {0.4, 64}, {0.3, 2}, {1.0, 13}},
         {{0.5, 12}, {0.5, 1}, {0.4, 64}, {0.4 + Gap, 2}, {1.0, 13}}},
        {"ends short", {{0.0, 13}, {0.5, 0}}, {{0.0, 13}, {0.5, 0}, {1.0, 13}}},
        {"ends nearly there", {{0.0, 13}, {1.0 - Gap / 2, 0}}, {{0.0, 13}, {1.0 - Gap / 2, 0}}},
    };
    for (const SanitisingCase& row : cases)
    {
        MEnvelope curve;
        for (const auto& [x, flags] : row.before)
            curve.Add(x, 0.75).Flags = static_cast<std::uint8_t>(flags);
        curve.Sanitise();
        Places after;
        for (const MEnvelopePoint& point : curve.GetPoints())
        {
            after.emplace_back(point.X, point.Flags);
            EXPECT_EQ(point.Y, 0.75) << row.what;
        }
        EXPECT_EQ(after, row.after) << row.what;
    }
}

TEST(MEnvelope, SanitisingBoundsYAndKeepsManyPointsRising)
{
    MEnvelope curve(0.0, 1e12, -1.0, 1.0); // far out, doubles are farther apart than the gap
    for (const double y : {-2.0, 0.5, 2.0, NaN, -Infinity})
        curve.Add(0.0, y);
    for (int i = 0; i < limits::CurvePoints; ++i)
        curve.Add(i % 2 * 1e11, 0.0);
    curve.Sanitise();
    constexpr double Levels[] = {-1.0, 0.5, 1.0, 0.0, 0.0};
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(curve.GetPoints()[i].Y, Levels[i]);
    ASSERT_EQ(curve.GetCount(), limits::CurvePoints + 5u);
    for (std::size_t i = 1; i < curve.GetCount(); ++i)
        ASSERT_LT(curve.GetPoints()[i - 1].X, curve.GetPoints()[i].X) << i;
}

MEnvelope RandomCurve(std::mt19937& random, const MEnvelope& box)
{
    const auto draw = [&random](double min, double max)
    { return std::uniform_real_distribution(min, max)(random); };
    MEnvelope curve = box;
    curve.DrawingMode = random() % 2 == 0;
    curve.SnapToGridX = random() % 2 == 0;
    curve.SnapToGridY = random() % 2 == 0;
    const auto count = static_cast<int>(random() % 20 + 1);
    for (int i = 0; i <= count; ++i)
    {
        const double x = box.MinX + (box.MaxX - box.MinX) * i / count;
        MEnvelopePoint& point = curve.Add(x, draw(box.MinY, box.MaxY));
        point.Flags = static_cast<std::uint8_t>(random());
        point.CurvatureX = draw(-1.0, 1.0);
        point.Curvature = random() % 4 == 0 ? 0.0 : draw(-1.0, 1.0);
        point.SmoothX1 = draw(0.0, 1.0);
        point.SmoothX2 = point.Has(MEnvelopePoint::LockSides) ? point.SmoothX1 : draw(0.0, 1.0);
        point.Type = static_cast<MEnvelopePoint::ControlType>(random() % 8);
        point.SmoothingType = static_cast<std::int32_t>(random() % 2);
    }
    return curve;
}

TEST(MEnvelope, ComesBackAsItWasStored)
{
    std::mt19937 random(1);
    MXMLItem item("Envelope"); // one for all, so that leftovers show
    MXMLItem again("Envelope");
    const MEnvelope boxes[] = {
        {0.0, 1.0, 0.0, 1.0}, {-1.0, 1.0, -1.0, 1.0}, {1.0 / 3, 2.0 / 3, -5.0, 7.0}};
    for (int run = 0; run < 300; ++run)
    {
        const MEnvelope curve = RandomCurve(random, boxes[run % 3]);
        curve.Store(item);
        MEnvelope loaded = boxes[run % 3];
        loaded.AddEndPoints(1.0, 1.0);
        loaded.DrawingMode = true;
        loaded.Load(item);
        loaded.Store(again);
        EXPECT_EQ(Outline(again), Outline(item)) << run;
        ASSERT_EQ(loaded.GetCount(), curve.GetCount());
        for (std::size_t i = 0; i < curve.GetCount(); ++i)
        {
            EXPECT_NEAR(loaded.GetPoints()[i].X, curve.GetPoints()[i].X, 1e-12);
            EXPECT_EQ(loaded.GetPoints()[i].Type, curve.GetPoints()[i].Type);
        }
    }
}

struct PointCase
{
    const char* what;
    std::vector<std::pair<const char*, const char*>> attributes;
    const char* stored; ///< outline of the point when it is stored again
};

TEST(MEnvelope, ReadsPointsOfStrangersAndElders)
{
    const PointCase cases[] = {
        {"nothing", {}, "Point Flags=[12] SmoothingType=[Mode 1] Type=[Mode 2]"},
        {"older than types, bent",
         {{"c", "-0.5"}, {"fixed", "1"}},
         "Point c=[-0.500000000000] Flags=[13] SmoothingType=[Mode 1] Type=[Mode 3]"},
        {"zeros are left out",
         {{"x", "0"}, {"c", "-0"}, {"cx", "0.0"}, {"Type", "Pulses"}},
         "Point Flags=[12] SmoothingType=[Mode 1] Type=[Pulses]"},
        {"beyond the ranges",
         {{"x", "1e300"}, {"y", "-1e999"}, {"c", "7"}, {"cx", "-7"}, {"Flags", "300"}},
         "Point c=[1.000000000000] cx=[-1.000000000000] Flags=[255] SmoothingType=[Mode 1] "
         "Type=[Mode 3] x=[1.000000000000] y=[-1.000000000000]"},
        {"no numbers",
         {{"x", "nan"}, {"y", "inf"}, {"c", "x"}, {"Flags", "-1"}, {"Type", ""}},
         "Point Flags=[0] SmoothingType=[Mode 1] Type=[Mode 1]"},
        {"names in another case",
         {{"TYPE", "smooth 2"}, {"smoothingtype", "mode 2"}},
         "Point Flags=[12] SmoothingType=[Mode 2] Type=[Smooth 2]"},
        {"names of nothing",
         {{"Type", "Mode 9"}, {"SmoothingType", "Mode 3"}},
         "Point Flags=[12] SmoothingType=[Mode 1] Type=[Mode 1]"},
        {"sides by themselves",
         {{"Flags", "0"}, {"SmoothX1", "2"}, {"SmoothX2", "0.25"}, {"Type", "Free 1"}},
         "Point Flags=[0] SmoothingType=[Mode 1] SmoothX1=[1.000000000000] "
         "SmoothX2=[0.250000000000] Type=[Free 1]"},
        {"locked sides",
         {{"Flags", "4"}, {"SmoothX1", "0.5"}, {"SmoothX2", "0.25"}},
         "Point Flags=[4] SmoothingType=[Mode 1] SmoothX1=[0.500000000000] Type=[Mode 2]"},
    };
    for (const PointCase& row : cases)
    {
        MXMLItem item("Envelope");
        item.AddSubItem("Other");
        MXMLItem& point = item.AddSubItem("Point");
        for (const auto& [key, value] : row.attributes)
            point.SetAttribute(key, MString(value));
        MEnvelope curve(-1.0, 1.0, -1.0, 1.0);
        curve.Load(item);
        const MEnvelopePoint first = curve.GetPoints().front();
        EXPECT_TRUE(!first.Has(MEnvelopePoint::LockSides) || first.SmoothX2 == first.SmoothX1)
            << row.what;
        curve.Store(item);
        EXPECT_EQ(Outline(*item.GetSubItems().front()), row.stored) << row.what;
        EXPECT_EQ(item.GetAttributes().size(), 0u);
    }
}

TEST(MEnvelope, KeepsTheOldCurveIfTheNewOneIsTooLong)
{
    MXMLItem item("Envelope");
    item.SetAttribute("SnapToGridX", 1);
    for (int i = 0; i < limits::CurvePoints; ++i)
        item.AddSubItem("Point");
    MEnvelope longest;
    longest.Load(item);
    EXPECT_EQ(longest.GetCount(), limits::CurvePoints);
    longest.Store(item); // what is stored can be loaded
    longest.Load(item);

    item.AddSubItem("Point");
    MEnvelope curve;
    curve.AddEndPoints(0.0, 1.0);
    EXPECT_THROW(curve.Load(item), MException);
    EXPECT_EQ(curve.GetCount(), 2u);
    EXPECT_FALSE(curve.SnapToGridX);
}

} // namespace
