#include "foundation/values/MRandom.h"

#include <algorithm>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

TEST(MRandom, FollowsTheHandWorkedSequence)
{
    MRandom::SetState(0);
    EXPECT_EQ(MRandom::Draw(), 38);   // 2531011 >> 16
    EXPECT_EQ(MRandom::Draw(), 7719); // 0x9E27DE86 holds it in bits 16 to 30
    MRandom::SetState(0);
    EXPECT_DOUBLE_EQ(MRandom::DrawUniform(), 38.0 / 32767.0);
}

TEST(MRandomThreads, ThreadsShareOneSequenceWithoutLosingADraw)
{
    constexpr std::size_t Draws = 1000;
    MRandom::SetState(1);
    std::vector<int> expected(2 * Draws);
    std::ranges::generate(expected, MRandom::Draw);

    MRandom::SetState(1);
    std::vector<int> first(Draws);
    std::vector<int> second(Draws);
    std::thread other([&second] { std::ranges::generate(second, MRandom::Draw); });
    std::ranges::generate(first, MRandom::Draw);
    other.join();

    first.insert(first.end(), second.begin(), second.end());
    std::ranges::sort(first);
    std::ranges::sort(expected);
    EXPECT_EQ(first, expected);
}

} // namespace
