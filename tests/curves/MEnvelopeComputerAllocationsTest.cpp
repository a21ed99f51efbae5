#include "curves/MEnvelopeComputer.h"

#include <vector>

#include <gtest/gtest.h>

#include "curves/MEnvelope.h"
#include "tests/CountedAllocations.h"

namespace
{

/// Every kind of segment in turn, all corners round.
MEnvelope MakeCurve(int points)
{
    MEnvelope curve;
    for (int i = 0; i < points; ++i)
    {
        MEnvelopePoint& point = curve.Add(i, i % 3);
        point.Type = static_cast<MEnvelopePoint::ControlType>(i % MEnvelopePoint::TypeCount);
        point.Curvature = 0.5;
        point.SmoothX1 = 0.5;
    }
    return curve;
}

TEST(MEnvelopeComputerAllocations, OnlyACurveThatHasGrownAllocates)
{
    if (!CanCountAllocations())
        GTEST_SKIP();
    const MEnvelope curves[] = {MakeCurve(64), MakeCurve(63), MakeCurve(0), MakeCurve(64)};
    const MEnvelope larger = MakeCurve(65);
    MEnvelopeComputer computer;
    computer.Compile(curves[0]);
    MEnvelopeComputer copy = computer;
    std::vector<float> samples(1000);
    EXPECT_EQ(AllocationsOf(
                  [&]
                  {
                      for (const MEnvelope& curve : curves)
                      {
                          computer.Compile(curve);
                          computer.FillFloat(samples.data(), -1.0, 0.1, 1000);
                          computer.MapFloat(samples.data(), 1000);
                      }
                      copy = computer;
                  }),
              0);
    EXPECT_GT(AllocationsOf([&] { computer.Compile(larger); }), 0);
}

} // namespace
