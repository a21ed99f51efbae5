#include "foundation/threads/MMutex.h"

#include "foundation/threads/ThreadSystem.h"

MMutex::MMutex() noexcept = default;
MMutex::~MMutex() = default;

bool MMutex::Create(const MString& name)
{
    mutex = MSystemMutex::Create(name);
    return mutex != nullptr;
}

int MMutex::Lock(int timeout) noexcept
{
    return mutex == nullptr || mutex->Lock(timeout) ? 0 : 1;
}

void MMutex::Unlock() noexcept
{
    if (mutex != nullptr)
        mutex->Unlock();
}
