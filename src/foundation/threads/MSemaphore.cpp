#include "foundation/threads/MSemaphore.h"

#include <algorithm>
#include <chrono>

MSemaphore::MSemaphore(int initialCount) noexcept
    : count(static_cast<unsigned>(std::max(initialCount, 0)))
{
}

int MSemaphore::Lock(int timeout) noexcept
{
    std::unique_lock guard(mutex);
    const auto isFree = [this] { return count > 0; };
    if (timeout < 0)
        released.wait(guard, isFree);
    else if (!released.wait_for(guard, std::chrono::milliseconds(timeout), isFree))
        return 1;
    --count;
    return 0;
}

void MSemaphore::Unlock() noexcept
{
    const std::lock_guard guard(mutex);
    ++count;
    released.notify_one(); // under the mutex: a thread that got the count may destroy all this
}
