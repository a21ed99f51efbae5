#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "foundation/threads/MEvent.h"
#include "foundation/threads/MLock.h"

class MSystemThread;
class MThread;

/// A thread has come to its end.
struct MOnThreadNotifyParams
{
    MThread& thread;
    int result; ///< of its Main
};

/// A thread, whose body is Main of a derived class. Runs once.
///
/// The owner of a thread stops it and waits for its end before the derived class is destroyed, as
/// nothing keeps Main from the fields of that class. A thread that deletes itself belongs to its
/// creator until Start and is not touched from then on.
class MThread
{
public:
    enum class Priority : std::uint8_t
    {
        Idle,
        Lowest,
        Low,
        Normal,
        High,
        Highest,
        Critical,
    };
    struct PriorityRecord
    {
        const char* name;
        int systemValue;
    };
    /// In the order of Priority.
    static constexpr std::array<PriorityRecord, 7> Priorities{{{"Idle", -15},
                                                               {"Lowest", -2},
                                                               {"Low", -1},
                                                               {"Normal", 0},
                                                               {"High", 1},
                                                               {"Highest", 2},
                                                               {"Critical", 15}}};

    explicit MThread(bool deletesItself = false) noexcept : isSelfDeleting(deletesItself) {}
    virtual ~MThread();
    MThread(const MThread&) = delete;
    MThread& operator=(const MThread&) = delete;

    /// Takes back RequestStop and lets the thread run. Nothing if it was started before.
    /// @throws MException (0) "Could not create system thread."
    void Start();
    /// Also before Start. Where the user lacks the rights for more than "Normal", it stays at that.
    /// @throws MException (0) "Could not set thread priority." or as Start
    void SetPriority(Priority priority);
    /// Asks the thread to end: one whose Main has not begun skips it, and has the result 0.
    void RequestStop();
    /// Waits @p timeout milliseconds, any time if it is negative, for the end of the thread and all
    /// that it does there. Returns 0 if it runs no more, or was not started; another value if it
    /// still runs, and to the thread itself.
    int Wait(int timeout);
    /// What Main returned; 0 before, and when it threw.
    int GetResult() const noexcept { return result; }
    /// Fired by the thread at its end. The target has to live until then.
    MCallback<MOnThreadNotifyParams>& GetNotification() noexcept { return notification; }

protected:
    bool IsStopRequested();

private:
    /// The body; the barrier is around it.
    virtual int Main() = 0;
    /// Runs on the thread behind Main.
    virtual void OnFinish() {}

    /// The entry point; @p argument is the MThread.
    static void Run(void* argument) noexcept;
    /// Makes the thread of the system, suspended, at the first need.
    std::shared_ptr<MSystemThread> GetSystemThread();

    std::shared_ptr<MSystemThread> systemThread; ///< under creationLock
    std::atomic<int> result = 0;
    bool isSelfDeleting; ///< under stateLock, as the next two
    bool mustStop = false;
    bool isStarted = false;
    MLock creationLock;
    MLock stateLock;
    MCallback<MOnThreadNotifyParams> notification;
};
