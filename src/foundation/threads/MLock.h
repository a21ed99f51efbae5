#pragma once

#include <mutex>

/// A recursive lock of the process, and the base of the other locks.
class MLock
{
public:
    static constexpr int Infinite = -1;

    MLock() = default;
    MLock(const MLock&) = delete;
    MLock& operator=(const MLock&) = delete;

    /// Takes the lock: at once or not at all if @p timeout is 0, else after any wait.
    /// Locks with a time limit wait for at most @p timeout milliseconds, forever if it is negative.
    /// Returns 0 when it is taken, another value when it is not. Any thread.
    virtual int Lock(int timeout) noexcept;
    /// By the thread that took it, as often as it did.
    virtual void Unlock() noexcept;
    virtual ~MLock() = default;

private:
    std::recursive_mutex mutex;
};
