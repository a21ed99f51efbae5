#include "curves/MADSR.h"

#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"

namespace
{

TEST(MADSRAllocations, NoneOnceBothFormsHaveBeenBuilt)
{
    MADSR adsr;
    adsr.Smoothing = 0.5;
    adsr.Delay = 0.1;
    for (int i = 1; i < 30; ++i)
        adsr.EnvelopeRelease.Insert(1, {.X = 1.0 - i / 30.0, .Y = 0.5, .SmoothX1 = 0.5});
    MADSRState state;
    const auto play = [&]
    {
        for (int run = 0; run < 20; ++run)
        {
            adsr.CustomShape = run % 2 == 1;
            adsr.Attack = 0.01 * (run % 5);
            adsr.SetSampleRate(44100.0 + run);
            for (const double place : {0.0, 0.5, 0.9})
            {
                state.X = place * adsr.TotalEnd;
                adsr.NoteOn(state, 0.0);
                adsr.Advance(state, 1.0);
                adsr.NoteOff(state, 0.0);
            }
        }
    };
    play();
    EXPECT_EQ(AllocationsOf(play), 0);
}

} // namespace
