#include "foundation/threads/MFlushToZeroScope.h"

#include <limits>
#include <thread>

#include <gtest/gtest.h>

namespace
{

bool FlushesResults()
{
    volatile float smallest = std::numeric_limits<float>::min();
    volatile float half = smallest * 0.5f;
    return half == 0.0f;
}

bool TakesDenormalsForZero()
{
    volatile float denormal = std::numeric_limits<float>::denorm_min();
    volatile float scaled = denormal * 1e38f; // a normal number
    return scaled == 0.0f;
}

TEST(MFlushToZeroScopeThreads, LastsAsLongAsItsScopeOnItsThread)
{
#ifndef __x86_64__
    GTEST_SKIP() << "does nothing here";
#endif
    EXPECT_FALSE(FlushesResults());
    EXPECT_FALSE(TakesDenormalsForZero());
    {
        const MFlushToZeroScope outer;
        {
            const MFlushToZeroScope inner;
        }
        EXPECT_TRUE(FlushesResults());
        EXPECT_TRUE(TakesDenormalsForZero());
    }
    EXPECT_FALSE(FlushesResults());
    EXPECT_FALSE(TakesDenormalsForZero());

    bool isFlushing = true;
    std::thread other;
    other = std::thread([&isFlushing] { isFlushing = FlushesResults(); });
    const MFlushToZeroScope scope;
    other.join();
    EXPECT_FALSE(isFlushing);
}

} // namespace
