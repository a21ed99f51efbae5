#include "foundation/threads/MERWLock.h"

#include <atomic>
#include <barrier>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int Patience = 20'000; ///< ms until a wait that should end counts as hung
constexpr bool Read = false;
constexpr bool Write = true;

/// Enters and leaves.
bool Try(MSynchronizationObject& object, bool isWrite, int timeout = 0)
{
    if (object.Enter(isWrite, timeout) != 0)
        return false;
    object.Leave(isWrite);
    return true;
}

std::future<bool> TryFromAnotherThread(MSynchronizationObject& object, bool isWrite,
                                       int timeout = 0)
{
    return std::async(std::launch::async,
                      [&object, isWrite, timeout] { return Try(object, isWrite, timeout); });
}

/// Until somebody waits for writing; the caller holds a read, so nothing else keeps readers out.
void AwaitAWaitingWriter(MERWLock& lock)
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(Patience);
    while (TryFromAnotherThread(lock, Read).get())
        ASSERT_LT(Clock::now(), end);
}

struct EnterCase
{
    const char* held; ///< entered by the first thread, in order: r or w
    bool isWrite;
    bool sameThread;  ///< may the first thread enter
    bool otherThread; ///< may another one
};

constexpr EnterCase EnterCases[] = {
    {"", Read, true, true},      {"", Write, true, true},      {"r", Read, true, true},
    {"r", Write, true, false},   {"rr", Write, true, false},   {"w", Read, true, false},
    {"w", Write, true, false},   {"rw", Read, true, false},    {"rw", Write, true, false},
    {"wrr", Write, true, false}, {"rwrw", Write, true, false},
};

TEST(MERWLockThreads, LetsEachThreadInByWhatIsHeld)
{
    MERWLock lock; // one for all rows, so that anything left behind shows
    for (const EnterCase& row : EnterCases)
    {
        const std::string held = row.held;
        for (const char kind : held)
            ASSERT_EQ(lock.Enter(kind == 'w', 0), 0) << held;
        EXPECT_EQ(TryFromAnotherThread(lock, row.isWrite).get(), row.otherThread)
            << held << (row.isWrite ? ", write" : ", read");
        EXPECT_EQ(Try(lock, row.isWrite), row.sameThread) << held;
        EXPECT_EQ(TryFromAnotherThread(lock, row.isWrite).get(), row.otherThread) << held;
        for (const char kind : held) // not in reverse: each kind is counted by itself
            lock.Leave(kind == 'w');
    }
    EXPECT_TRUE(TryFromAnotherThread(lock, Write).get());
}

TEST(MERWLockThreads, AReaderWritesOnceItIsTheOnlyOne)
{
    MERWLock lock;
    std::promise<void> hasEntered;
    std::promise<void> mayLeave;
    std::thread other(
        [&]
        {
            const MSynchronizationGuard guard(lock, Read);
            hasEntered.set_value();
            mayLeave.get_future().wait();
        });
    hasEntered.get_future().wait();
    ASSERT_EQ(lock.Enter(Read, 0), 0);
    EXPECT_FALSE(Try(lock, Write));
    EXPECT_FALSE(Try(lock, Write, 20));
    EXPECT_TRUE(TryFromAnotherThread(lock, Read).get()) << "nobody waits any more";
    mayLeave.set_value();
    EXPECT_EQ(lock.Enter(Write, Patience), 0);
    other.join();
    EXPECT_TRUE(Try(lock, Read));
    lock.Leave(Write);
    EXPECT_TRUE(TryFromAnotherThread(lock, Read).get()) << "a reader again";
    lock.Leave(Read);
}

TEST(MERWLockThreads, AWaitingWriterKeepsNewReadersOut)
{
    MERWLock lock;
    ASSERT_EQ(lock.Enter(Read, 0), 0);
    std::future<bool> writer = TryFromAnotherThread(lock, Write, Patience);
    AwaitAWaitingWriter(lock);
    EXPECT_TRUE(Try(lock, Read)) << "who reads may read on";
    std::future<bool> reader = TryFromAnotherThread(lock, Read, Patience);
    const Clock::time_point start = Clock::now();
    lock.Leave(Read);
    EXPECT_TRUE(writer.get());
    EXPECT_TRUE(reader.get());
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(Patience / 2)) << "were not woken";
}

TEST(MERWLockThreads, AWriterThatGivesUpLetsReadersIn)
{
    MERWLock lock;
    ASSERT_EQ(lock.Enter(Read, 0), 0);
    std::future<bool> writer = TryFromAnotherThread(lock, Write, 300);
    AwaitAWaitingWriter(lock);
    const Clock::time_point start = Clock::now();
    EXPECT_TRUE(TryFromAnotherThread(lock, Read, Patience).get());
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(Patience / 2)) << "was not woken";
    EXPECT_FALSE(writer.get());
    lock.Leave(Read);
}

TEST(MERWLockThreads, ReadersThatAllWantToWriteDoSoOneAfterTheOther)
{
    constexpr int Count = 3;
    MERWLock lock;
    std::barrier<> allRead(Count);
    std::atomic<int> inside = 0;
    int written = 0;
    std::vector<std::future<bool>> threads;
    threads.reserve(Count);
    for (int i = 0; i < Count; ++i)
        threads.push_back(std::async(std::launch::async,
                                     [&]
                                     {
                                         const MSynchronizationGuard reads(lock, Read);
                                         allRead.arrive_and_wait();
                                         if (lock.Enter(Write, Patience) != 0)
                                             return false;
                                         EXPECT_EQ(++inside, 1);
                                         ++written;
                                         --inside;
                                         lock.Leave(Write);
                                         return true;
                                     }));
    for (std::future<bool>& thread : threads)
        EXPECT_TRUE(thread.get());
    EXPECT_EQ(written, Count);
}

TEST(MERWLockThreads, WritersAreAloneAndReadersSeeWholeChanges)
{
    constexpr int Threads = 4;
    constexpr int Rounds = 300;
    MERWLock lock;
    int first = 0;
    int second = 0;
    std::vector<std::thread> threads;
    threads.reserve(Threads);
    for (int thread = 0; thread < Threads; ++thread)
        threads.emplace_back(
            [&, thread]
            {
                for (int i = 0; i < Rounds; ++i)
                {
                    const MSynchronizationGuard reads(lock, Read);
                    EXPECT_EQ(first, second);
                    if ((i + thread) % 3 != 0)
                        continue;
                    const MSynchronizationGuard writes(lock, Write);
                    ++first;
                    const MSynchronizationGuard readsOn(lock, Read);
                    ++second;
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(first, Threads * Rounds / 3);
    EXPECT_EQ(second, first);
}

TEST(MERWLockThreads, RefusesBeyondWhatAThreadCanCount)
{
    constexpr int Most = 65'535;
    for (const bool isWrite : {Read, Write})
    {
        MERWLock lock;
        for (int i = 0; i < Most; ++i)
            ASSERT_EQ(lock.Enter(isWrite, 0), 0);
        try
        {
            const MSynchronizationGuard guard(lock, isWrite);
            ADD_FAILURE();
        }
        catch (const MException& failure)
        {
            EXPECT_EQ(failure.text.ToUTF8(), "Could not acquire emulated synchronization object.");
        }
        for (int i = 1; i < Most; ++i)
            lock.Leave(isWrite);
        EXPECT_FALSE(TryFromAnotherThread(lock, Write).get());
        lock.Leave(isWrite);
        EXPECT_TRUE(TryFromAnotherThread(lock, Write).get());
        lock.Leave(isWrite); // one too many
        EXPECT_TRUE(TryFromAnotherThread(lock, Write).get());
    }
}

/// Writes down its calls; lets threads in while it is open.
class LoggingObject : public MSynchronizationObject
{
public:
    bool isOpen = true;
    std::string log;
    mutable int questions = 0;

private:
    void OnWaitStart(bool isWrite) override { log += isWrite ? "start(w) " : "start(r) "; }
    bool CanEnter(bool /*isWrite*/) const noexcept override
    {
        ++questions;
        return isOpen;
    }
    void OnEnter(bool isWrite) noexcept override { log += isWrite ? "enter(w) " : "enter(r) "; }
    void OnWaitEnd(bool isWrite, bool entered) noexcept override
    {
        log += isWrite ? "end(w) " : "end(r) ";
        log += entered ? "in " : "out ";
    }
    void OnLeave(bool isWrite) noexcept override { log += isWrite ? "leave(w) " : "leave(r) "; }
};

TEST(MSynchronizationObject, AsksItsRulesInOrder)
{
    LoggingObject object;
    {
        const MSynchronizationGuard guard(object, Write);
    }
    EXPECT_EQ(object.log, "start(w) enter(w) end(w) in leave(w) ");
    object.isOpen = false;
    object.log.clear();
    object.questions = 0;
    EXPECT_NE(object.Enter(Read, 0), 0);
    EXPECT_EQ(object.questions, 1) << "no wait";
    EXPECT_NE(object.Enter(Read, 1), 0);
    EXPECT_EQ(object.log, "start(r) end(r) out start(r) end(r) out ");
}

} // namespace
