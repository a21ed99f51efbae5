#include "foundation/threads/ThreadSystem.h"

#include <cstdint>
#include <string>

#define WIN32_LEAN_AND_MEAN
#include <process.h>
#include <windows.h>

namespace
{

/// A negative timeout is any time.
DWORD Milliseconds(int timeout) noexcept
{
    return timeout < 0 ? INFINITE : static_cast<DWORD>(timeout);
}

class Handle
{
public:
    explicit Handle(HANDLE newHandle) noexcept : handle(newHandle) {}
    ~Handle()
    {
        if (handle != nullptr)
            CloseHandle(handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    HANDLE Get() const noexcept { return handle; }

private:
    HANDLE handle; ///< null if the system refused
};

struct ThreadStart
{
    MSystemThread::Entry entry;
    void* argument;
};

unsigned __stdcall RunThread(void* argument)
{
    const ThreadStart start = *static_cast<ThreadStart*>(argument);
    delete static_cast<ThreadStart*>(argument);
    start.entry(start.argument);
    return 0;
}

/// Null if the system refuses.
HANDLE StartSuspended(MSystemThread::Entry entry, void* argument)
{
    auto start = std::make_unique<ThreadStart>();
    *start = {entry, argument};
    // Not CreateThread, which does not set up the C library's data of the thread.
    const std::uintptr_t handle =
        _beginthreadex(nullptr, 0, &RunThread, start.get(), CREATE_SUSPENDED, nullptr);
    if (handle == 0)
        return nullptr;
    static_cast<void>(start.release()); // the thread's now
    return reinterpret_cast<HANDLE>(handle);
}

class SuspendedThread : public MSystemThread
{
public:
    explicit SuspendedThread(HANDLE newHandle) noexcept : handle(newHandle) {}
    ~SuspendedThread() override
    {
        if (!SuspendedThread::IsCurrent())
            SuspendedThread::Wait(-1);
    }

    void Resume() noexcept override { ResumeThread(handle.Get()); } // nothing if it runs
    bool SetPriority(int systemValue) noexcept override
    {
        return SetThreadPriority(handle.Get(), systemValue) != 0;
    }
    bool Wait(int timeout) noexcept override
    {
        return WaitForSingleObject(handle.Get(), Milliseconds(timeout)) == WAIT_OBJECT_0;
    }
    bool IsCurrent() const noexcept override
    {
        return GetThreadId(handle.Get()) == GetCurrentThreadId();
    }

private:
    Handle handle;
};

class SystemMutex : public MSystemMutex
{
public:
    explicit SystemMutex(HANDLE newHandle) noexcept : handle(newHandle) {}
    ~SystemMutex() override
    {
        while (ReleaseMutex(handle.Get())) // as often as this thread still holds it
        {
        }
    }
    SystemMutex(const SystemMutex&) = delete;
    SystemMutex& operator=(const SystemMutex&) = delete;

    bool Lock(int timeout) noexcept override
    {
        const DWORD result = WaitForSingleObject(handle.Get(), Milliseconds(timeout));
        return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    }
    void Unlock() noexcept override { ReleaseMutex(handle.Get()); }

private:
    Handle handle;
};

std::wstring WideOf(const MString& text)
{
    std::wstring wide;
    for (int i = 0; i < text.Length(); ++i)
        wide += static_cast<wchar_t>(text.CharAt(i));
    return wide;
}

} // namespace

std::unique_ptr<MSystemThread> MSystemThread::Create(Entry entry, void* argument)
{
    const HANDLE handle = StartSuspended(entry, argument);
    return handle == nullptr ? nullptr : std::make_unique<SuspendedThread>(handle);
}

std::unique_ptr<MSystemMutex> MSystemMutex::Create(const MString& name)
{
    const std::wstring wideName = WideOf(name);
    const HANDLE handle = CreateMutexW(nullptr, FALSE, name.IsEmpty() ? nullptr : wideName.c_str());
    return handle == nullptr ? nullptr : std::make_unique<SystemMutex>(handle);
}

std::tm SystemLocalTime(std::time_t time) noexcept
{
    std::tm local{};
    if (localtime_s(&local, &time) != 0)
        return {};
    return local;
}
