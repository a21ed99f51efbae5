#include "foundation/threads/MMutex.h"

#include <chrono>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "foundation/threads/MSemaphore.h"

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// What Lock answers another thread, which gives the lock back.
int LockFromAnotherThread(MLock& lock, int timeout)
{
    return std::async(std::launch::async,
                      [&lock, timeout]
                      {
                          const int result = lock.Lock(timeout);
                          if (result == 0)
                              lock.Unlock();
                          return result;
                      })
        .get();
}

void ExpectKeepsOthersOut(MLock& holder, MLock& other)
{
    ASSERT_EQ(holder.Lock(MLock::Infinite), 0);
    ASSERT_EQ(holder.Lock(0), 0) << "recursive";
    holder.Unlock();
    EXPECT_NE(LockFromAnotherThread(other, 0), 0);
    const Clock::time_point start = Clock::now();
    EXPECT_NE(LockFromAnotherThread(other, 30), 0);
    EXPECT_GE(Clock::now() - start, milliseconds(30));
    holder.Unlock();
    EXPECT_EQ(LockFromAnotherThread(other, 0), 0);
}

TEST(MMutexThreads, WithoutASystemObjectAlwaysSucceeds)
{
    MMutex mutex;
    EXPECT_EQ(mutex.Lock(MLock::Infinite), 0);
    EXPECT_EQ(LockFromAnotherThread(mutex, 0), 0);
    mutex.Unlock();
    mutex.Unlock();
}

TEST(MMutexThreads, IsRecursiveAndKeepsOthersOutForTheirTime)
{
    MMutex mutex;
    ASSERT_TRUE(mutex.Create());
    ExpectKeepsOthersOut(mutex, mutex);
}

TEST(MMutexThreads, ObjectsOfOneNameAreOneMutex)
{
    const char* const name = "MMutexTest/one name: \xc3\xa4";
    MMutex first;
    MMutex second;
    MMutex other;
    MMutex unnamed;
    ASSERT_TRUE(first.Create(MString::FromUTF8(name)));
    ASSERT_TRUE(second.Create(MString::FromUTF8(name)));
    ASSERT_TRUE(other.Create("MMutexTest/another name"));
    ASSERT_TRUE(unnamed.Create());
    ExpectKeepsOthersOut(first, second);
    ASSERT_EQ(first.Lock(MLock::Infinite), 0);
    EXPECT_EQ(LockFromAnotherThread(other, 0), 0);
    EXPECT_EQ(LockFromAnotherThread(unnamed, 0), 0);
    first.Unlock();
}

TEST(MMutexThreads, ComesFreeWhenItsHolderEnds)
{
    for (const char* const name : {"", "MMutexTest/abandoned"})
    {
        MMutex mutex;
        ASSERT_TRUE(mutex.Create(name));
        std::thread([&mutex] { mutex.Lock(MLock::Infinite); }).join();
        EXPECT_EQ(mutex.Lock(0), 0) << name;
        EXPECT_NE(LockFromAnotherThread(mutex, 0), 0) << name;
        mutex.Unlock();
        EXPECT_EQ(LockFromAnotherThread(mutex, 0), 0) << name << " is in order again";
    }
}

TEST(MMutexThreads, IsReleasedWhenItsObjectEnds)
{
    MMutex mutex;
    ASSERT_TRUE(mutex.Create("MMutexTest/destroyed"));
    {
        MMutex holder;
        ASSERT_TRUE(holder.Create("MMutexTest/destroyed"));
        ASSERT_EQ(holder.Lock(0), 0);
        ASSERT_EQ(holder.Lock(0), 0);
        EXPECT_NE(LockFromAnotherThread(mutex, 0), 0);
    }
    EXPECT_EQ(LockFromAnotherThread(mutex, 0), 0);
}

TEST(MMutexThreads, AWaitingThreadGetsItInTime)
{
    MMutex mutex;
    ASSERT_TRUE(mutex.Create());
    ASSERT_EQ(mutex.Lock(0), 0);
    std::future<int> waiter =
        std::async(std::launch::async, [&mutex] { return LockFromAnotherThread(mutex, 10'000); });
    mutex.Unlock();
    EXPECT_EQ(waiter.get(), 0);
}

TEST(MSemaphoreThreads, GivesOutWhatIsThere)
{
    MSemaphore semaphore(2);
    EXPECT_EQ(semaphore.Lock(0), 0);
    EXPECT_EQ(semaphore.Lock(MLock::Infinite), 0);
    EXPECT_NE(semaphore.Lock(0), 0);
    const Clock::time_point start = Clock::now();
    EXPECT_NE(semaphore.Lock(30), 0);
    EXPECT_GE(Clock::now() - start, milliseconds(30));

    std::future<int> waiter =
        std::async(std::launch::async, [&] { return semaphore.Lock(10'000); });
    semaphore.Unlock();
    EXPECT_EQ(waiter.get(), 0);
    EXPECT_NE(semaphore.Lock(0), 0);

    MSemaphore empty(-5);
    EXPECT_NE(empty.Lock(0), 0);
    empty.Unlock();
    EXPECT_EQ(empty.Lock(0), 0);
}

} // namespace
