#include "foundation/threads/MLock.h"

#include <system_error>

int MLock::Lock(int timeout) noexcept
{
    if (timeout == 0)
        return mutex.try_lock() ? 0 : 1;
    try
    {
        mutex.lock();
        return 0;
    }
    catch (const std::system_error&)
    {
        return 1; // taken too many times by this thread
    }
}

void MLock::Unlock() noexcept
{
    mutex.unlock();
}
