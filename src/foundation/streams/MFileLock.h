#pragma once

#include <cstdio>
#include <memory>

#include "foundation/strings/MString.h"

/// Keeps out, as long as it lives, whoever asks for the lock file of the same name: other threads
/// and other processes alike. It binds those alone who ask. The file is empty and stays, since one
/// who waits for a file that goes would share the lock with one who finds none.
class MFileLock
{
public:
    static constexpr int DefaultTimeout = 5000; ///< milliseconds

    /// Makes the file if there is none; waits for at most @p timeout milliseconds.
    /// @throws MException (0) "Could not lock file \"{0}\"."
    explicit MFileLock(const MString& fileName, int timeout = DefaultTimeout);
    ~MFileLock();
    MFileLock(const MFileLock&) = delete;
    MFileLock& operator=(const MFileLock&) = delete;

private:
    struct Closing
    {
        void operator()(std::FILE* closed) const noexcept { std::fclose(closed); }
    };

    std::unique_ptr<std::FILE, Closing> file;
};
