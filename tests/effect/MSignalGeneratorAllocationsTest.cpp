#include "effect/MSignalGenerator.h"

#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"

namespace
{

TEST(MSignalGeneratorAllocations, NoneOnceTheCurvesHaveBeenCompiled)
{
    MSignalGenerator generator;
    MSignalGeneratorOperations& operations = generator.Operations;
    operations.TransformEnable = operations.AmplitudeTransformEnable = true;
    const auto rebuild = [&](double amount)
    {
        generator.Shape = 15.0 * amount;
        generator.EnvelopeDepth = generator.StepDepth = 0.1 + 0.5 * amount;
        generator.Smoothness = amount;
        operations.Skew = operations.FullSkew = operations.Halve = amount;
        operations.Harmonic.fill(amount);
        operations.HarmonicPhase.fill(amount);
        generator.Envelope.GetPoints()[1].Curvature = amount;
        operations.Transform.GetPoints()[0].Curvature = amount;
        operations.AmplitudeTransform.GetPoints()[0].Curvature = amount;
        generator.Rebuild();
    };
    rebuild(0.01);
    EXPECT_EQ(AllocationsOf(
                  [&]
                  {
                      for (int round = 0; round <= 50; ++round)
                          rebuild(round * 0.02);
                  }),
              0);
}

} // namespace
