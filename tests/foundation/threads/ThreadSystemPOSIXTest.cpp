// What only shows from other processes, or by asking the system.

#include "foundation/threads/ThreadSystem.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/threads/MException.h"
#include "foundation/threads/MMutex.h"
#include "foundation/threads/MThread.h"

namespace
{

/// Runs @p body in another process, which ends like a crash: no destructor, no clean-up.
template <class Body>
pid_t Fork(Body body)
{
    const pid_t child = fork();
    if (child == 0)
    {
        body();
        _exit(0);
    }
    return child;
}

void Await(pid_t child)
{
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

struct Pipe
{
    Pipe() { EXPECT_EQ(pipe(ends.data()), 0); }
    ~Pipe()
    {
        close(ends[0]);
        close(ends[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void Signal() const { EXPECT_EQ(write(ends[1], "x", 1), 1); }
    void Await() const
    {
        char byte = 0;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
    }

    std::array<int, 2> ends{};
};

TEST(MMutexProcesses, IsHeldByAnotherProcessUntilThatEnds)
{
    const char* const name = "ThreadSystemPOSIXTest/held";
    for (const bool dies : {true, false})
    {
        MMutex mutex;
        ASSERT_TRUE(mutex.Create(name));
        const Pipe isHeld;
        const Pipe mayEnd;
        const pid_t child = Fork(
            [&]
            {
                MMutex other;
                if (!other.Create(name) || other.Lock(0) != 0 || other.Lock(0) != 0)
                    _exit(1);
                isHeld.Signal();
                mayEnd.Await();
                if (dies)
                    _exit(0);
            });
        isHeld.Await();
        EXPECT_NE(mutex.Lock(0), 0);
        EXPECT_NE(mutex.Lock(20), 0);
        mayEnd.Signal();
        EXPECT_EQ(mutex.Lock(20'000), 0) << (dies ? "abandoned" : "destroyed");
        mutex.Unlock();
        Await(child);
    }
}

TEST(MMutexProcesses, ProcessesThatComeAndGoShareOneMutex)
{
    constexpr int Processes = 4;
    constexpr int Rounds = 3000;
    constexpr std::size_t Size = sizeof(int);
    void* const memory =
        mmap(nullptr, Size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    volatile int& counter = *static_cast<volatile int*>(memory);
    std::array<pid_t, Processes> children{};
    for (pid_t& child : children)
        child = Fork(
            [&counter]
            {
                for (int i = 0; i < Rounds; ++i)
                {
                    MMutex mutex; // the last one out removes it
                    if (!mutex.Create("ThreadSystemPOSIXTest/shared") ||
                        mutex.Lock(MLock::Infinite) != 0)
                        _exit(1);
                    const int seen = counter;
                    sched_yield();
                    counter = seen + 1;
                    mutex.Unlock();
                }
            });
    for (const pid_t child : children)
        Await(child);
    EXPECT_EQ(counter, Processes * Rounds);
    munmap(memory, Size);
}

bool IsThereAFileFor(const std::string& name)
{
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm"))
        if (entry.path().filename().string().ends_with(name))
            return true;
    return false;
}

TEST(MMutexProcesses, TheLastUserRemovesAName)
{
    const std::string name = "ThreadSystemPOSIXTest-last" + std::to_string(getpid());
    {
        MMutex first;
        ASSERT_TRUE(first.Create(MString::FromUTF8(name)));
        {
            MMutex second;
            ASSERT_TRUE(second.Create(MString::FromUTF8(name)));
        }
        Await(Fork([&first] { first.Create(); })); // lets go of what it inherited
        EXPECT_TRUE(IsThereAFileFor(name));
    }
    EXPECT_FALSE(IsThereAFileFor(name));
}

TEST(MMutexProcesses, ANameTheSystemRefusesLeavesNoMutex)
{
    MMutex mutex;
    EXPECT_FALSE(mutex.Create(MString::FromUTF8(std::string(300, 'x'))));
    EXPECT_EQ(mutex.Lock(0), 0);
}

/// Reports the nice value that it runs with.
class NiceThread : public MThread
{
    int Main() override { return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())); }
};

TEST(MThreadPrioritiesThreads, AreNiceValues)
{
    const int usual = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
    struct Row
    {
        MThread::Priority priority;
        int steps; ///< towards 19, from the usual
    };
    for (const Row& row : {Row{MThread::Priority::Idle, 75}, Row{MThread::Priority::Lowest, 10},
                           Row{MThread::Priority::Low, 5}, Row{MThread::Priority::Normal, 0},
                           Row{MThread::Priority::High, -5}, Row{MThread::Priority::Highest, -10},
                           Row{MThread::Priority::Critical, -75}})
    {
        NiceThread thread;
        thread.SetPriority(row.priority);
        thread.Start();
        ASSERT_EQ(thread.Wait(MLock::Infinite), 0);
        const int wanted = std::clamp(usual + row.steps, -20, 19);
        if (row.steps < 0 && thread.GetResult() == usual)
            continue; // the user has no right to more
        EXPECT_EQ(thread.GetResult(), wanted) << row.steps;
    }
    EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())), usual) << "of this thread";
}

template <class Operation>
std::string FailureOf(Operation operation)
{
    try
    {
        operation();
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8();
    }
    return "";
}

TEST(MThreadPrioritiesThreads, AnEndedThreadTakesNone)
{
    NiceThread thread;
    thread.Start();
    ASSERT_EQ(thread.Wait(MLock::Infinite), 0);
    EXPECT_EQ(FailureOf([&] { thread.SetPriority(MThread::Priority::Low); }),
              "Could not set thread priority.");
}

TEST(MThreadPrioritiesThreads, AThreadThatCannotBeMadeIsReportedAndMayBeTriedAgain)
{
    pthread_attr_t usual;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    pthread_attr_t huge;
    ASSERT_EQ(pthread_attr_init(&huge), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 46), 0);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    NiceThread thread;
    EXPECT_EQ(FailureOf([&] { thread.Start(); }), "Could not create system thread.");
    EXPECT_EQ(thread.Wait(0), 0) << "nothing runs";
    ASSERT_EQ(pthread_setattr_default_np(&usual), 0);
    thread.Start();
    EXPECT_EQ(thread.Wait(MLock::Infinite), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&usual);
}

} // namespace
