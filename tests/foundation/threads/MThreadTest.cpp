#include "foundation/threads/MThread.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MSemaphore.h"

namespace
{

constexpr int Patience = 20'000; ///< ms until a wait that should end counts as hung

/// What happens, in order; read behind Wait or behind the semaphore.
struct Record
{
    std::string log;
    MSemaphore hasEnded;
};

class TestThread : public MThread
{
public:
    explicit TestThread(Record& target, std::function<int(TestThread&)> main = nullptr,
                        bool deletesItself = false)
        : MThread(deletesItself),
          record(target),
          body(std::move(main))
    {
    }
    ~TestThread() override
    {
        record.log += "destroyed ";
        record.hasEnded.Unlock();
    }

    using MThread::IsStopRequested;

private:
    int Main() override
    {
        record.log += "main ";
        return body ? body(*this) : 7;
    }
    void OnFinish() override
    {
        record.log += "finish ";
        if (GetResult() == 13)
            throw std::runtime_error("x");
    }

    Record& record;
    std::function<int(TestThread&)> body;
};

class Notified : public MEventTarget
{
public:
    explicit Notified(Record& target) : record(target) {}

    void OnEnd(MOnThreadNotifyParams& params)
    {
        record.log += "notified(" + std::to_string(params.result) + ") ";
        isOnThread = std::this_thread::get_id() != creator;
        source = &params.thread;
    }

    bool isOnThread = false;
    MThread* source = nullptr;

private:
    Record& record;
    std::thread::id creator = std::this_thread::get_id();
};

std::string traced;

struct EndCase
{
    const char* what;
    int (*main)(TestThread& thread);
    const char* log;
    int result;
    const char* traced;
};

constexpr EndCase EndCases[] = {
    {"returns", [](TestThread&) { return -5; }, "main finish notified(-5) ", -5, ""},
    {"throws", [](TestThread&) -> int { throw MException("No."); }, "main finish notified(0) ", 0,
     ""},
    {"throws something else", [](TestThread&) -> int { throw 1; }, "main finish notified(0) ", 0,
     "SYSTEM EXCEPTION! MThreadProc"},
    {"makes OnFinish throw", [](TestThread&) { return 13; }, "main finish notified(13) ", 13,
     "SYSTEM EXCEPTION! MThreadProc"},
};

TEST(MThreadThreads, RunsMainThenOnFinishThenTheNotification)
{
    const MTraceFunction before = SetTraceFunction([](const char* message) { traced += message; });
    for (const EndCase& row : EndCases)
    {
        traced.clear();
        Record record;
        Notified notified(record);
        TestThread thread(record, row.main);
        thread.GetNotification().Subscribe<&Notified::OnEnd>(notified);
        EXPECT_EQ(thread.Wait(MLock::Infinite), 0) << row.what << ": not started yet";
        thread.Start();
        ASSERT_EQ(thread.Wait(Patience), 0) << row.what;
        EXPECT_EQ(record.log, row.log) << row.what;
        EXPECT_EQ(thread.GetResult(), row.result) << row.what;
        EXPECT_EQ(traced, row.traced) << row.what;
        EXPECT_TRUE(notified.isOnThread) << row.what;
        EXPECT_EQ(notified.source, &thread) << row.what;
        thread.Start();
        EXPECT_EQ(thread.Wait(Patience), 0) << row.what;
        EXPECT_EQ(record.log, row.log) << row.what << ": runs once";
    }
    SetTraceFunction(before);
}

TEST(MThreadThreads, StopsWhenAsked)
{
    Record record;
    MSemaphore isRunning;
    TestThread thread(record,
                      [&isRunning](TestThread& self)
                      {
                          EXPECT_FALSE(self.IsStopRequested());
                          EXPECT_NE(self.Wait(MLock::Infinite), 0) << "not for itself";
                          isRunning.Unlock();
                          while (!self.IsStopRequested())
                              std::this_thread::yield();
                          return 3;
                      });
    thread.Start();
    ASSERT_EQ(isRunning.Lock(Patience), 0);
    EXPECT_NE(thread.Wait(0), 0);
    EXPECT_NE(thread.Wait(10), 0);
    thread.RequestStop();
    EXPECT_EQ(thread.Wait(Patience), 0);
    EXPECT_EQ(thread.GetResult(), 3);
}

TEST(MThreadThreads, OneThatWasNeverStartedSkipsMain)
{
    for (const bool deletesItself : {false, true})
        for (const bool isCreated : {false, true})
        {
            Record record;
            {
                TestThread thread(record, nullptr, deletesItself);
                if (isCreated)
                    thread.SetPriority(MThread::Priority::Normal);
                thread.RequestStop();
                EXPECT_EQ(thread.Wait(Patience), 0);
            }
            EXPECT_EQ(record.log, "destroyed ");
        }
}

TEST(MThreadThreads, StartTakesBackAnEarlierStop)
{
    Record record;
    TestThread thread(record);
    thread.SetPriority(MThread::Priority::Normal);
    thread.RequestStop();
    thread.Start();
    ASSERT_EQ(thread.Wait(Patience), 0);
    EXPECT_EQ(record.log, "main finish ");
}

TEST(MThreadThreads, OneThatIsStoppedAtOnceEitherSkipsMainOrSeesIt)
{
    for (int i = 0; i < 50; ++i)
    {
        Record record;
        TestThread thread(record,
                          [](TestThread& self)
                          {
                              while (!self.IsStopRequested())
                                  std::this_thread::yield();
                              return 1;
                          });
        thread.Start();
        thread.RequestStop();
        ASSERT_EQ(thread.Wait(Patience), 0);
        EXPECT_EQ(record.log, thread.GetResult() == 1 ? "main finish " : "");
    }
}

TEST(MThreadThreads, DeletesItselfBehindTheNotification)
{
    for (int i = 0; i < 50; ++i)
    {
        Record record;
        Notified notified(record);
        auto thread = std::make_unique<TestThread>(record, nullptr, true);
        thread->GetNotification().Subscribe<&Notified::OnEnd>(notified);
        thread.release()->Start();
        ASSERT_EQ(record.hasEnded.Lock(Patience), 0);
        EXPECT_EQ(record.log, "main finish notified(7) destroyed ");
    }
}

TEST(MThreadThreads, ItsNotificationMayDestroyIt)
{
    struct Owner : MEventTarget
    {
        void OnEnd(MOnThreadNotifyParams&)
        {
            thread.reset();
            isDone.Unlock();
        }

        std::unique_ptr<MThread> thread;
        MSemaphore isDone;
    };
    Record record;
    Owner owner;
    owner.thread = std::make_unique<TestThread>(record);
    owner.thread->GetNotification().Subscribe<&Owner::OnEnd>(owner);
    owner.thread->Start();
    ASSERT_EQ(owner.isDone.Lock(Patience), 0);
    EXPECT_EQ(record.log, "main finish destroyed ");
}

std::string FailureOf(MThread& thread, MThread::Priority priority)
{
    try
    {
        thread.SetPriority(priority);
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8();
    }
    return "";
}

TEST(MThreadThreads, TakesAPriorityBeforeAndDuringMain)
{
    for (std::size_t i = 0; i < MThread::Priorities.size(); ++i)
    {
        Record record;
        std::string during;
        const auto priority = static_cast<MThread::Priority>(i);
        TestThread thread(record,
                          [&](TestThread& self)
                          {
                              during = FailureOf(self, priority);
                              return 0;
                          });
        EXPECT_EQ(FailureOf(thread, priority), "") << MThread::Priorities[i].name;
        thread.Start();
        ASSERT_EQ(thread.Wait(Patience), 0);
        EXPECT_EQ(during, "") << MThread::Priorities[i].name;
    }
    Record record;
    TestThread thread(record);
    EXPECT_EQ(FailureOf(thread, static_cast<MThread::Priority>(7)),
              "Could not set thread priority.");
}

} // namespace
