#include <array>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/threads/MLockGuard.h"
#include "foundation/values/MRandom.h"
#include "tests/host/AutomationUnderTest.h"

namespace
{

TEST(ParameterInterpolationThreads, NoWriteIsLostWhileBlocksRun)
{
    constexpr int Writers = 2;
    constexpr int Writes = 20000;
    SilentPlugin plugin;
    RowAdapter row(Writers + 1);
    plugin.AddAdapter(row);
    plugin.GetInterpolation().SetParameters({0, 1, 2});

    std::atomic<bool> isOver = false;
    std::thread audio(
        [&]
        {
            ParameterInterpolation& lines = plugin.GetInterpolation();
            while (!isOver)
            {
                const MLockGuard guard(plugin.GetProcessingLock());
                if (lines.Prepare(512))
                    lines.Process(256);
                lines.Finish();
            }
        });
    std::atomic<int> lost = 0;
    std::array<double, Writers> last{};
    std::array<std::thread, Writers> writers;
    for (int index = 0; index < Writers; ++index)
        writers[static_cast<std::size_t>(index)] = std::thread(
            [&, index]
            {
                auto state = static_cast<std::uint32_t>(index);
                double value = 0.0;
                for (int i = 0; i < Writes; ++i)
                {
                    state = MRandom::Step(state);
                    value = MRandom::DrawFrom(state) / double{MRandom::MaxDraw};
                    plugin.SetParameter(index, value, i % 2 == 0);
                    lost += plugin.GetParameter(index) != value;
                    plugin.SetParameter(Writers, value, true); // of all writers
                    plugin.NeedUpdateEditor(row);
                }
                last[static_cast<std::size_t>(index)] = value;
            });
    for (std::thread& writer : writers)
        writer.join();
    isOver = true;
    audio.join();

    EXPECT_EQ(lost, 0);
    for (int index = 0; index < Writers; ++index)
    {
        EXPECT_EQ(row.GetParameter(index), last[static_cast<std::size_t>(index)]);
        EXPECT_FALSE(row.IsModulated(index));
    }
    const double shared = row.GetParameter(Writers);
    EXPECT_TRUE(shared == last[0] || shared == last[1]) << shared;
    EXPECT_EQ(plugin.TakePendingEditorUpdates().size(), 1u);
}

} // namespace
