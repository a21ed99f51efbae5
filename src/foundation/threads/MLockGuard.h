#pragma once

class MLock;

/// Holds a lock for a scope, after any wait.
class MLockGuard
{
public:
    /// @throws MException (0) "Could not acquire mutex." if @p heldLock refuses.
    explicit MLockGuard(MLock& heldLock);
    ~MLockGuard();
    MLockGuard(const MLockGuard&) = delete;
    MLockGuard& operator=(const MLockGuard&) = delete;

private:
    MLock& lock;
};
