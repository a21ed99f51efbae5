#include "foundation/threads/MLockGuard.h"

#include "foundation/threads/MException.h"
#include "foundation/threads/MLock.h"

MLockGuard::MLockGuard(MLock& heldLock) : lock(heldLock)
{
    if (lock.Lock(MLock::Infinite) != 0)
        throw MException("Could not acquire mutex.");
}

MLockGuard::~MLockGuard()
{
    lock.Unlock();
}
