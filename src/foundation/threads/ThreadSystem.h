#pragma once

#include <ctime>
#include <memory>

#include "foundation/strings/MString.h"

// What this folder needs of the operating system. Only MThread, MMutex and MDateTime use it.

/// A thread of the system. Any thread may use it; it has to be resumed before it is destroyed.
class MSystemThread
{
public:
    using Entry = void (*)(void* argument);

    /// Makes a thread that will run @p entry once it is resumed. Null if the system refuses.
    static std::unique_ptr<MSystemThread> Create(Entry entry, void* argument);
    /// Waits for the end of the thread, unless it is the one that calls.
    virtual ~MSystemThread() = default;

    /// Only the first call counts.
    virtual void Resume() noexcept = 0;
    /// @p systemValue is one of MThread::Priorities; a value above 0 that takes rights which the
    /// process lacks leaves the thread at 0. False for other failures.
    virtual bool SetPriority(int systemValue) noexcept = 0;
    /// Whether the thread ends within @p timeout milliseconds; any time if it is negative.
    virtual bool Wait(int timeout) noexcept = 0;
    /// Whether it is the one that calls.
    virtual bool IsCurrent() const noexcept = 0;
};

/// A mutex of the system: recursive, and released by the end of its holder.
class MSystemMutex
{
public:
    /// One of its own for an empty @p name, else shared by all processes of this user that ask for
    /// the name, and gone with the last of them. Null if the system refuses.
    static std::unique_ptr<MSystemMutex> Create(const MString& name);
    virtual ~MSystemMutex() = default;

    /// Whether it was taken within @p timeout milliseconds; any time if it is negative.
    virtual bool Lock(int timeout) noexcept = 0;
    virtual void Unlock() noexcept = 0;
};

/// @p time in the user's time zone; all 0 if the system cannot tell.
std::tm SystemLocalTime(std::time_t time) noexcept;
