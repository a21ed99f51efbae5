#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"
#include "tests/shell/modulators/ModulatorUnderTest.h"

namespace
{

TEST(MModulatorAllocations, NoneInBlocksAndNotes)
{
    for (int mode = 0; mode < 5; ++mode)
        for (const bool isLoud : {false, true})
        {
            ModulatorUnderTest test(static_cast<MModulatorMode>(mode));
            for (std::size_t target = 1; target < 64; ++target)
                test.Target(target, static_cast<int>(target) % ModulatedRow::Count);
            test->EditTargets([](MModulator::TargetList& list) { list[1].ShapeEnabled = true; });
            test->Envelope.EnvelopeSource = isLoud;
            test->Follower.BandPassMin = 2.0;
            test->Follower.Project = isLoud;
            const auto play = [&]
            {
                for (int block = 0; block < 100; ++block)
                {
                    test.Fill(0, block % 40 < 20 ? 1.0f : 0.0f);
                    test->OnNote(0, 1.0, block % 30 < 15);
                    test->Frozen = block % 7 == 0; // lets the targets go, and takes them
                    test.Play(64 * (block % 9));
                }
            };
            EXPECT_EQ(AllocationsOf(play), 0) << mode << ", " << isLoud;
        }
}

} // namespace
