#include "foundation/threads/MSynchronizationObject.h"

#include <chrono>

#include "foundation/threads/MException.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

/// Lets a condition release the lock while it waits.
struct Relock
{
    // The names are those of the C++ library.
    void lock() { held.Lock(MLock::Infinite); }
    void unlock() { held.Unlock(); }

    MLock& held;
};

} // namespace

int MSynchronizationObject::Enter(bool isWrite, int timeout)
{
    const MLockGuard guard(lock);
    OnWaitStart(isWrite);

    bool entered = CanEnter(isWrite);
    if (!entered && timeout != 0)
    {
        Relock relock{lock};
        const auto canEnter = [this, isWrite] { return CanEnter(isWrite); };
        ++waitingThreads;
        if (timeout < 0)
            changed.wait(relock, canEnter);
        entered =
            timeout < 0 || changed.wait_for(relock, std::chrono::milliseconds(timeout), canEnter);
        --waitingThreads;
    }

    if (entered)
        OnEnter(isWrite);
    OnWaitEnd(isWrite, entered);
    if (!entered && waitingThreads > 0)
        changed.notify_all();
    return entered ? 0 : 1;
}

void MSynchronizationObject::Leave(bool isWrite) noexcept
{
    const MLockGuard guard(lock);
    OnLeave(isWrite);
    if (waitingThreads > 0)
        changed.notify_all();
}

MSynchronizationGuard::MSynchronizationGuard(MSynchronizationObject& heldObject, bool forWriting)
    : object(heldObject),
      isWrite(forWriting)
{
    if (object.Enter(isWrite, MLock::Infinite) != 0)
        throw MException("Could not acquire emulated synchronization object.");
}

MSynchronizationGuard::~MSynchronizationGuard()
{
    object.Leave(isWrite);
}
