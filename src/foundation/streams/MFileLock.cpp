#include "foundation/streams/MFileLock.h"

#include <chrono>
#include <thread>

#include "foundation/streams/FileSystem.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

namespace
{

/// Holders do little more than write a small file.
constexpr auto Pause = std::chrono::milliseconds(2);

} // namespace

MFileLock::MFileLock(const MString& fileName, int timeout)
    : file(filesystem::OpenFile(fileName, "ab"))
{
    using filesystem::LockResult;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
    LockResult result = LockResult::Failed;
    if (file != nullptr)
        while ((result = filesystem::TryLockFile(file.get())) == LockResult::Busy &&
               std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(Pause);
    if (result != LockResult::Taken)
        throw MException(MStringFormatter("Could not lock file \"{0}\".").Add(fileName).Result());
}

MFileLock::~MFileLock()
{
    // Closing alone would not do while a forked process has the file, too.
    filesystem::UnlockFile(file.get());
}
