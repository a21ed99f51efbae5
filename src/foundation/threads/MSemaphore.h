#pragma once

#include <condition_variable>
#include <mutex>

#include "foundation/threads/MLock.h"

/// A count that Lock takes one from, when there is one, and Unlock adds one to. Any thread may do
/// either, so it also serves as a signal with a time limit.
class MSemaphore : public MLock
{
public:
    /// A negative @p initialCount is 0.
    explicit MSemaphore(int initialCount = 0) noexcept;

    int Lock(int timeout) noexcept override;
    void Unlock() noexcept override;

private:
    std::mutex mutex;
    std::condition_variable released;
    unsigned count; ///< under mutex
};
