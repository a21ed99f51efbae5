#include "host/ParameterInterpolation.h"

#include <utility>

#include <gtest/gtest.h>

#include "tests/host/AutomationUnderTest.h"

namespace
{

class ParameterInterpolationTest : public ::testing::Test
{
protected:
    ParameterInterpolationTest()
    {
        plugin.AddAdapter(other);
        plugin.AddAdapter(row);
        lines.SetParameters({First + 1, First, 1000});
    }

    /// A block in which nothing is set.
    void Rest(int samples)
    {
        lines.Prepare(samples);
        lines.Finish();
    }

    static constexpr int First = 3; ///< index of the row's first

    SilentPlugin plugin;
    RowAdapter other{First};
    RowAdapter row{2};
    ParameterInterpolation& lines = plugin.GetInterpolation();
};

TEST_F(ParameterInterpolationTest, DrawsStraightLinesThatEndAtTheHostsValues)
{
    constexpr int Samples = 1000;
    Rest(Samples);
    plugin.SetParameter(First, 0.75, false);
    plugin.SetParameter(First + 1, 0.2, false);
    plugin.updates = 0;
    ASSERT_TRUE(lines.Prepare(Samples));
    int done = 0;
    for (const int piece : {0, 250, 1, 333, 416})
    {
        if (piece > 0)
            lines.Process(piece);
        done += piece;
        EXPECT_NEAR(row.Heard(0), 0.75 * done / Samples, 1e-12) << done;
        EXPECT_NEAR(row.Heard(1), 0.2 * done / Samples, 1e-12) << done;
        EXPECT_EQ(plugin.GetParameter(First), 0.75) << "what the host set stays";
    }
    lines.Finish();
    EXPECT_EQ(row.Heard(0), 0.75);
    EXPECT_EQ(row.Heard(1), 0.2);
    EXPECT_FALSE(row.IsModulated(0));
    EXPECT_EQ(row.loudSets, 2) << "the host's own";
    EXPECT_EQ(plugin.updates, 6);
    EXPECT_FALSE(lines.Prepare(Samples)) << "it has arrived";
}

TEST_F(ParameterInterpolationTest, ALineBeginsWhereTheLastBlockLeftTheValue)
{
    struct Case
    {
        const char* what;
        bool isPrepared; ///< the block in which 0.5 is set beforehand
        bool isReset;    ///< behind it
        int samples;     ///< of the next block, before which 0.6 is set
        double heard;    ///< at its start
    };
    constexpr Case Cases[] = {
        {"long block before", true, false, 512, 0.5},
        {"short block before", false, false, 512, 0.5},
        {"reset between", true, true, 512, 0.6},
        {"one sample", true, false, 1, 0.6},
        {"two samples", true, false, 2, 0.5},
    };
    for (const Case& test : Cases)
    {
        lines.Reset();
        plugin.SetParameter(First, 0.0, true);
        Rest(512);
        plugin.SetParameter(First, 0.5, true);
        if (test.isPrepared)
            lines.Prepare(512);
        row.sets = 0;
        lines.Finish();
        EXPECT_EQ(row.sets, test.isPrepared ? 1 : 0) << test.what;
        if (test.isReset)
            lines.Reset();
        plugin.SetParameter(First, 0.6, true);
        EXPECT_EQ(lines.Prepare(test.samples), test.heard != 0.6) << test.what;
        EXPECT_EQ(row.Heard(0), test.heard) << test.what;
        lines.Finish();
        EXPECT_EQ(row.Heard(0), 0.6) << test.what;
    }
}

TEST_F(ParameterInterpolationTest, TooSmallAMoveIsAStep)
{
    Rest(512);
    plugin.SetParameter(First, 1e-5, true);
    EXPECT_FALSE(lines.Prepare(512));
    lines.Finish();
    plugin.SetParameter(First, 2.1e-5, true);
    EXPECT_TRUE(lines.Prepare(512));
    lines.Finish();
}

TEST_F(ParameterInterpolationTest, WritesToAMovingParameterWaitForTheEndOfTheBlock)
{
    Rest(512);
    plugin.SetParameter(First, 1.0, true);
    ASSERT_TRUE(lines.Prepare(512));
    lines.Process(256);
    row.loudSets = 0;
    plugin.SetParameter(First, 0.4, false);
    plugin.SetParameter(First, 0.3, true);
    plugin.SetParameter(First + 1, 0.9, true); // not moving: at once
    EXPECT_EQ(row.Heard(0), 0.5) << "the line goes on";
    EXPECT_EQ(row.Heard(1), 0.9);
    EXPECT_EQ(plugin.GetParameter(First), 0.3);
    plugin.SetParameterIfChanged(First, 1.0, true); // as before the block, but no more
    EXPECT_EQ(plugin.GetParameter(First), 1.0);
    plugin.SetParameter(First, 0.3, true);
    lines.Finish();
    EXPECT_EQ(row.Heard(0), 0.3);
    EXPECT_EQ(row.loudSets, 1) << "one of the writes was not quiet";

    // From here the next line leads on from what was heard last, the line's end.
    ASSERT_TRUE(lines.Prepare(512));
    EXPECT_EQ(row.Heard(0), 1.0);
    lines.Finish();
    EXPECT_EQ(row.Heard(0), 0.3);
}

TEST_F(ParameterInterpolationTest, WritesThatCrossTheEdgeOfABlockAreNotLost)
{
    struct Case
    {
        const char* what;
        double before;                            ///< set ahead of the block; 0.0 moves nothing
        bool blockBegins, blockEnds, hostCrosses; ///< before 0.7 reaches the parameter
        bool whileRead;                           ///< 0.7 comes when the block has read its target
    };
    constexpr Case Cases[] = {
        {"a line begins under the write", 0.5, true, false, false, false},
        {"a whole line passes", 0.5, true, true, false, false},
        {"a block without a line begins", 0.0, true, false, false, false},
        {"the line's target is out of date", 0.5, false, false, false, true},
        {"the line does not go anywhere", 0.0, false, false, false, true},
        {"a newer value comes while one is put in place", 0.5, false, false, true, true},
    };
    for (const Case& test : Cases)
    {
        lines.Reset();
        plugin.SetParameter(First, 0.0, true);
        Rest(512);
        plugin.SetParameter(First, test.before, true);
        row.beforeSet = [&, isFirst = true](double value) mutable
        {
            if (value != 0.7 || !std::exchange(isFirst, false))
                return;
            if (test.blockBegins)
                lines.Prepare(512);
            if (test.blockEnds)
                lines.Finish();
            if (test.hostCrosses)
                plugin.SetParameter(First, 0.8, true);
        };
        if (test.whileRead)
        {
            row.afterGet = [&, isFirst = true]() mutable
            {
                if (std::exchange(isFirst, false))
                    plugin.SetParameter(First, 0.7, true);
            };
            lines.Prepare(512);
        }
        else
            plugin.SetParameter(First, 0.7, true);
        const double expected = test.hostCrosses ? 0.8 : 0.7;
        if (!test.hostCrosses)
        {
            EXPECT_EQ(plugin.GetParameter(First), expected) << test.what;
        }
        lines.Finish();
        EXPECT_EQ(plugin.GetParameter(First), expected) << test.what;
        EXPECT_EQ(row.Heard(0), expected) << test.what;
        row.beforeSet = nullptr;
        row.afterGet = nullptr;
    }
}

TEST_F(ParameterInterpolationTest, WhatAModulatorHoldsIsLeftToIt)
{
    // Taken before the block, before its second piece, or behind its last one.
    for (const int piece : {0, 1, 2})
    {
        lines.Reset();
        plugin.SetParameter(First, 0.0, true);
        Rest(512);
        plugin.SetParameter(First, 1.0, true);
        const auto take = [&](int now)
        {
            if (now != piece)
                return;
            lines.SetHeld(First, true);
            row.SetModulated(0, true);
            row.SetParameter(0, 0.123, true);
        };
        take(0);
        EXPECT_EQ(lines.Prepare(512), piece != 0);
        lines.Process(256);
        if (piece != 0)
            plugin.SetParameter(First, 0.7, true);
        take(1);
        lines.Process(256);
        take(2);
        if (piece == 0)
        {
            EXPECT_EQ(row.Heard(0), 0.123);
        }
        lines.Finish();
        EXPECT_TRUE(row.IsModulated(0)) << piece;
        EXPECT_EQ(plugin.GetParameter(First), piece == 0 ? 1.0 : 0.7) << piece;
        row.SetModulated(0, false);
        lines.SetHeld(First, false);
    }
}

TEST_F(ParameterInterpolationTest, ABlockThatFailedMidwayIsEndedByTheNextOne)
{
    for (const int samples : {512, 1})
    {
        plugin.SetParameter(First, 0.0, true);
        lines.Reset();
        Rest(512);
        plugin.SetParameter(First, 0.5, true);
        ASSERT_TRUE(lines.Prepare(512));
        plugin.SetParameter(First, 1.0, true);
        EXPECT_EQ(lines.Prepare(samples), samples > 1);
        lines.Finish();
        EXPECT_EQ(plugin.GetParameter(First), 1.0);
        EXPECT_EQ(row.Heard(0), 1.0);
        EXPECT_FALSE(row.IsModulated(0));
    }
}

TEST_F(ParameterInterpolationTest, WhatGoesAwayIsForgotten)
{
    plugin.AddTemporaryAdapter(std::make_unique<RowAdapter>(1));
    lines.SetParameters({First, First + 2});
    Rest(512);
    plugin.DestroyTemporaryAutomationAdapters();
    plugin.SetParameter(First + 2, 1.0, true); // reaches nobody; the sanitizer would tell
    plugin.SetParameter(First, 1.0, true);
    EXPECT_TRUE(lines.Prepare(512));
    lines.Finish();
}

} // namespace
