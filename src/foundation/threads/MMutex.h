#pragma once

#include <memory>

#include "foundation/strings/MString.h"
#include "foundation/threads/MLock.h"

class MSystemMutex;

/// A recursive lock with a time limit, which processes may share by name. When a thread or process
/// ends while it holds the mutex, the next one gets it as if it had been released.
class MMutex : public MLock
{
public:
    /// Without a mutex of the system: Lock answers success, and keeps nobody out.
    MMutex() noexcept;
    ~MMutex() override;

    /// Gets a mutex of the system, in place of the one before: shared with whoever creates the same
    /// @p name as the same user, or one of its own for an empty name. False if the system refuses;
    /// there is none then. Before other threads use the object.
    bool Create(const MString& name = MString());

    int Lock(int timeout) noexcept override;
    void Unlock() noexcept override;

private:
    std::unique_ptr<MSystemMutex> mutex;
};
