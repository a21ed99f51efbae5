#include "foundation/threads/MLock.h"

#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

int TryFromAnotherThread(MLock& lock)
{
    return std::async(std::launch::async,
                      [&lock]
                      {
                          const int result = lock.Lock(0);
                          if (result == 0)
                              lock.Unlock();
                          return result;
                      })
        .get();
}

TEST(MLockThreads, IsRecursiveAndKeepsOtherThreadsOut)
{
    MLock lock;
    {
        const MLockGuard outer(lock);
        const MLockGuard inner(lock);
        EXPECT_NE(TryFromAnotherThread(lock), 0);
    }
    EXPECT_EQ(TryFromAnotherThread(lock), 0);
}

TEST(MLockThreads, AWaitingThreadSeesWhatTheHolderWrote)
{
    MLock lock;
    int counter = 0;
    const auto count = [&]
    {
        for (int i = 0; i < 2000; ++i)
        {
            const MLockGuard guard(lock);
            ++counter;
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(counter, 4000);
}

TEST(MLockGuard, ThrowsWhenTheLockRefuses)
{
    struct RefusingLock : MLock
    {
        int Lock(int /*timeout*/) noexcept override { return 1; }
    };
    RefusingLock lock;
    try
    {
        const MLockGuard guard(lock);
        FAIL();
    }
    catch (const MException& failure)
    {
        EXPECT_EQ(failure.text.ToUTF8(), "Could not acquire mutex.");
    }
}

} // namespace
