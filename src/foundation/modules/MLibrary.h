#pragma once

#include "foundation/strings/MString.h"

/// A shared library that this process has open; closed at the end of its life. Symbols stay its
/// own: what they point to ends with it.
class MLibrary
{
public:
    /// Opens the file @p path with all of its symbols bound. @throws MException (0) with the
    /// system's reason if that fails
    explicit MLibrary(const MString& path);
    ~MLibrary();
    MLibrary(const MLibrary&) = delete;
    MLibrary& operator=(const MLibrary&) = delete;

    /// Null if the library exports no such function. @p Function is a pointer to a function.
    template <typename Function>
    Function Find(const char* symbol) const noexcept
    {
        return reinterpret_cast<Function>(FindSymbol(symbol));
    }
    /// What the system calls the library, as module entries want it.
    void* GetHandle() const noexcept { return handle; }

private:
    void* FindSymbol(const char* symbol) const noexcept;

    void* handle;
};
