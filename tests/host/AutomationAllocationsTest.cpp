#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"
#include "tests/host/AutomationUnderTest.h"

namespace
{

TEST(AutomationAllocations, BlocksWithAutomationDoNotAllocate)
{
    if (!CanCountAllocations())
        GTEST_SKIP() << "allocations cannot be counted here";
    SilentPlugin plugin;
    RowAdapter rows[] = {RowAdapter(4), RowAdapter(1), RowAdapter(1), RowAdapter(1)};
    for (RowAdapter& row : rows)
        plugin.AddAdapter(row);
    ParameterInterpolation& lines = plugin.GetInterpolation();
    lines.SetParameters({0, 1, 2});
    for (int opening = 0; opening < 2; ++opening) // a taken list leaves room for the next
    {
        EXPECT_EQ(AllocationsOf(
                      [&]
                      {
                          for (int block = 0; block < 10; ++block)
                          {
                              plugin.SetParameter(block % 3, 0.01 * block, false);
                              if (lines.Prepare(512))
                                  lines.Process(256);
                              plugin.SetParameter(block % 3, 0.5, false);
                              lines.Finish();
                              for (RowAdapter& row : rows)
                                  plugin.NeedUpdateEditor(row);
                          }
                      }),
                  0);
        EXPECT_EQ(plugin.TakePendingEditorUpdates().size(), 4u);
    }
}

} // namespace
