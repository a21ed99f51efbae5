#pragma once

#include <condition_variable>

#include "foundation/threads/MLock.h"

/// A lock whose rules a derived class states: whether a thread may enter for reading or writing
/// now. A thread that may not waits until another one leaves or gives up, and asks again. All On...
/// operations and CanEnter run under one lock of the object, so they are short and take no other.
class MSynchronizationObject
{
public:
    MSynchronizationObject() = default;
    virtual ~MSynchronizationObject() = default;
    MSynchronizationObject(const MSynchronizationObject&) = delete;
    MSynchronizationObject& operator=(const MSynchronizationObject&) = delete;

    /// Enters within @p timeout milliseconds: at once or not at all if it is 0, after any wait if
    /// it is negative. Returns 0 when it did, another value when not.
    /// @throws MException what OnWaitStart throws; nothing has changed then.
    int Enter(bool isWrite, int timeout);
    /// Takes back one successful Enter of this thread with the same @p isWrite.
    void Leave(bool isWrite) noexcept;

private:
    /// The calling thread wants to enter. May throw before it changes anything.
    virtual void OnWaitStart(bool isWrite) = 0;
    virtual bool CanEnter(bool isWrite) const noexcept = 0;
    virtual void OnEnter(bool isWrite) noexcept = 0;
    /// Follows each OnWaitStart, behind OnEnter if the thread @p entered.
    virtual void OnWaitEnd(bool isWrite, bool entered) noexcept = 0;
    virtual void OnLeave(bool isWrite) noexcept = 0;

    MLock lock;
    std::condition_variable_any changed; ///< with lock
    int waitingThreads = 0;              ///< under lock
};

/// Holds a synchronization object for a scope, after any wait.
class MSynchronizationGuard
{
public:
    /// @throws MException (0) "Could not acquire emulated synchronization object." if it refuses.
    MSynchronizationGuard(MSynchronizationObject& heldObject, bool forWriting);
    ~MSynchronizationGuard();
    MSynchronizationGuard(const MSynchronizationGuard&) = delete;
    MSynchronizationGuard& operator=(const MSynchronizationGuard&) = delete;

private:
    MSynchronizationObject& object;
    bool isWrite;
};
