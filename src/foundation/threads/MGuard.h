#pragma once

#include <utility>

#include "foundation/threads/MException.h"

/// Takes the reports of what went wrong and may not show: failures that are no MException, and in
/// debug builds calls that make no sense. Does nothing in a release; a debugging
/// session or a test may look on. Any thread.
using MTraceFunction = void (*)(const char* message);
/// Installs @p function, or none for null; returns the one before.
MTraceFunction SetTraceFunction(MTraceFunction function) noexcept;
/// Hands @p message (not null) to the trace function, if there is one.
void Trace(const char* message) noexcept;
/// Reports "SYSTEM EXCEPTION! {0}" with the qualified name of @p routine (not null).
void TraceSystemException(const char* routine) noexcept;

/// Names a routine in the midst of others to the trace function: runs @p body and passes its
/// result on, or the MException that it throws. Anything else is traced under the name of the
/// innermost @p routine and goes on as an MException, so that it is traced once.
template <typename Body>
decltype(auto) MTraced(const char* routine, Body&& body)
{
    try
    {
        return std::forward<Body>(body)();
    }
    catch (const MException&)
    {
        throw;
    }
    catch (...)
    {
        TraceSystemException(routine);
        throw MException("Unexpected failure.");
    }
}

/// The barrier round every entry from outside: runs @p body and returns what it does. If it throws,
/// the answer is @p neutral; anything but an MException is traced under the name of @p routine.
template <typename Result, typename Body>
Result MGuarded(const char* routine, Result neutral, Body&& body) noexcept
{
    try
    {
        return std::forward<Body>(body)();
    }
    catch (const MException&)
    {
        return neutral;
    }
    catch (...)
    {
        TraceSystemException(routine);
        return neutral;
    }
}
