#include "shell/DelayQueue.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace
{

/// Blocks of @p block samples of 1, 2, 3 and so on, in place.
std::vector<float> Feed(DelayQueue& queue, float first, int count, int block)
{
    std::vector<float> samples(static_cast<std::size_t>(count));
    std::iota(samples.begin(), samples.end(), first);
    for (int i = 0; i < count; i += block)
        queue.Process(samples.data() + i, samples.data() + i, std::min(block, count - i));
    return samples;
}

TEST(DelayQueue, HoldsSamplesBackByItsLength)
{
    for (const int length : {0, 1, 7, 300, 1467})
        for (const int block : {1, 3, 64, 1000})
        {
            DelayQueue queue;
            queue.SetLength(length);
            EXPECT_EQ(queue.GetLength(), length);
            const std::vector<float> out = Feed(queue, 1.0f, 4000, block);
            for (int i = 0; i < 4000; ++i)
                ASSERT_EQ(out[static_cast<std::size_t>(i)],
                          static_cast<float>(std::max(0, i + 1 - length)))
                    << length << ", block " << block;
        }
}

TEST(DelayQueue, ChangesLengthAtTheOldEnd)
{
    struct Row
    {
        const char* what;
        int length;
        std::vector<float> next; ///< what comes out first, of 4, 5, 6 and 7
    };
    const Row rows[] = {
        {"as before", 4, {4, 5, 6, 7, 8, 9}},    {"silence in front", 6, {0, 0, 4, 5, 6, 7, 8}},
        {"the oldest dropped", 2, {6, 7, 8, 9}}, {"none left", 0, {8, 9}},
        {"none of less than none", -3, {8, 9}},
    };
    for (const Row& row : rows)
    {
        DelayQueue queue;
        queue.SetLength(4);
        Feed(queue, 1.0f, 7, 7); // the oldest no longer stands at the start of the ring
        queue.SetLength(row.length);
        EXPECT_EQ(Feed(queue, 8.0f, static_cast<int>(row.next.size()), 4), row.next) << row.what;
    }
}

TEST(DelayQueue, TakesSilenceAndDropsWhatNobodyWants)
{
    DelayQueue queue;
    queue.SetLength(2);
    Feed(queue, 1.0f, 4, 4);
    std::vector<float> out(4, 9.0f);
    queue.Process(out.data(), nullptr, 3);
    EXPECT_EQ(out, (std::vector<float>{3, 4, 0, 9}));
    Feed(queue, 5.0f, 2, 2);
    queue.Process(nullptr, out.data(), 1); // drops 5
    EXPECT_EQ(Feed(queue, 7.0f, 2, 2), (std::vector<float>{6, 3}));
    queue.Clear();
    EXPECT_EQ(Feed(queue, 1.0f, 3, 3), (std::vector<float>{0, 0, 1}));
}

} // namespace
