#include "curves/StepPattern.h"

#include <gtest/gtest.h>

#include "curves/MEnvelope.h"

namespace
{

TEST(StepPattern, StartsLowAndKeepsWhatWasDrawn)
{
    StepPattern pattern;
    pattern.Prepare(MEnvelope(0.0, 1.0, -0.5, 1.0));
    EXPECT_EQ(pattern.count, 8);
    EXPECT_EQ(pattern.values.front(), -0.5f);
    EXPECT_EQ(pattern.values.back(), -0.5f);
    pattern.count = 0;
    pattern.values[0] = 0.75f;
    pattern.Prepare(MEnvelope(0.0, 1.0, -1.0, 1.0));
    EXPECT_EQ(pattern.count, 0);
    EXPECT_EQ(pattern.values[0], 0.75f);
}

TEST(StepPattern, MakesStairsOverTheWholeWidth)
{
    MEnvelope curve(-1.0, 3.0, -1.0, 1.0);
    curve.AddEndPoints(0.0, 0.0);
    constexpr float Steps[] = {0.5f, -1.0f, 0.25f, 1.0f};
    MakeCurveFromSteps(curve, Steps);
    ASSERT_EQ(curve.GetCount(), 4u);
    for (std::size_t i = 0; i < 4; ++i)
    {
        const MEnvelopePoint& point = curve.GetPoints()[i];
        EXPECT_EQ(point.X, -1.0 + static_cast<double>(i));
        EXPECT_EQ(point.Y, Steps[i]);
        EXPECT_EQ(point.Type, MEnvelopePoint::ControlType::Stairs);
        EXPECT_EQ(point.Curvature, 0.0);
    }
    MakeCurveFromSteps(curve, {});
    EXPECT_EQ(curve.GetCount(), 0u);
}

} // namespace
