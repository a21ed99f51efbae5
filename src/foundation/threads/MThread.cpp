#include "foundation/threads/MThread.h"

#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/threads/ThreadSystem.h"

namespace
{

constexpr const char* LogName = "MThreadProc";

} // namespace

MThread::~MThread()
{
    if (systemThread == nullptr)
        return;
    {
        const MLockGuard guard(stateLock);
        mustStop = true;
        isSelfDeleting = false; // being deleted already
    }
    systemThread->Resume();
    // Now, as a thread that was never started still has to look at the fields.
    if (!systemThread->IsCurrent())
        systemThread->Wait(MLock::Infinite);
}

void MThread::Start()
{
    const std::shared_ptr<MSystemThread> thread = GetSystemThread();
    {
        const MLockGuard guard(stateLock);
        mustStop = false;
        isStarted = true;
    }
    thread->Resume(); // from here on this object may be gone
}

void MThread::SetPriority(Priority priority)
{
    const auto index = static_cast<std::size_t>(priority);
    if (index >= Priorities.size() ||
        !GetSystemThread()->SetPriority(Priorities[index].systemValue))
        throw MException("Could not set thread priority.");
}

void MThread::RequestStop()
{
    const MLockGuard guard(stateLock);
    mustStop = true;
}

int MThread::Wait(int timeout)
{
    {
        const MLockGuard guard(stateLock);
        if (!isStarted)
            return 0;
    }
    const std::shared_ptr<MSystemThread> thread = GetSystemThread();
    return !thread->IsCurrent() && thread->Wait(timeout) ? 0 : 1;
}

bool MThread::IsStopRequested()
{
    const MLockGuard guard(stateLock);
    return mustStop;
}

void MThread::Run(void* argument) noexcept
{
    MThread& thread = *static_cast<MThread*>(argument);
    bool stops = false;
    bool deletes = false;
    {
        const MLockGuard guard(thread.stateLock);
        stops = thread.mustStop;
        deletes = thread.isSelfDeleting;
    }
    if (!stops)
    {
        // A barrier each, so that one failure does not take the rest along.
        thread.result = MGuarded(LogName, 0, [&thread] { return thread.Main(); });
        MGuarded(LogName, 0,
                 [&thread]
                 {
                     thread.OnFinish();
                     return 0;
                 });
        MGuarded(LogName, 0,
                 [&thread]
                 {
                     MOnThreadNotifyParams parameters{thread, thread.result};
                     thread.notification.Fire(parameters);
                     return 0;
                 });
    }
    if (deletes)
    {
        // While the event still lives: its target may be ending on another thread.
        thread.notification.RemoveAll();
        delete &thread;
    }
}

std::shared_ptr<MSystemThread> MThread::GetSystemThread()
{
    const MLockGuard guard(creationLock);
    if (systemThread == nullptr)
    {
        systemThread = MSystemThread::Create(&MThread::Run, this);
        if (systemThread == nullptr)
            throw MException("Could not create system thread.");
    }
    return systemThread;
}
