#include "foundation/streams/FileSystem.h"

#include <cerrno>
#include <csignal>
#include <mutex>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include "foundation/streams/MConsole.h"
#include "foundation/strings/FileNames.h"

namespace
{

/// Attributes and actions for a program that is to inherit nothing but the standard streams.
class SpawnSettings
{
public:
    SpawnSettings()
    {
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
        posix_spawn_file_actions_init(&actions);
        // The host may hold its sound card without close-on-exec; a browser must not keep it.
        posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings()
    {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
};

/// Children that have not been waited for. Nobody is there to wait for a child when it ends, so
/// those of before are when the next one starts.
class Children
{
public:
    void Add(pid_t child)
    {
        const std::scoped_lock guard(lock);
        std::erase_if(running, [](pid_t one) { return waitpid(one, nullptr, WNOHANG) != 0; });
        running.push_back(child);
    }

private:
    std::mutex lock;
    std::vector<pid_t> running;
};

} // namespace

// Names are UTF-8 as a rule, but may be any bytes.

std::filesystem::path filesystem::ToPath(const MString& name)
{
    return FileNameToBytes(name);
}

MString filesystem::FromPath(const std::filesystem::path& path)
{
    return FileNameFromBytes(path.native());
}

std::FILE* filesystem::OpenFile(const MString& name, const char* mode)
{
    return std::fopen(ToPath(name).c_str(), (std::string(mode) + "e").c_str());
}

bool filesystem::SeekFile(std::FILE* file, std::int64_t offset, int origin) noexcept
{
    constexpr int Origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    return fseeko(file, offset, Origins[origin]) == 0;
}

std::int64_t filesystem::GetFilePosition(std::FILE* file) noexcept
{
    return ftello(file);
}

bool filesystem::TruncateFile(std::FILE* file, std::int64_t size) noexcept
{
    return ftruncate(fileno(file), size) == 0;
}

bool filesystem::FlushToDisk(std::FILE* file) noexcept
{
    return fsync(fileno(file)) == 0;
}

void filesystem::FlushFolder(const std::filesystem::path& folder) noexcept
{
    // The files are whole either way, and some file systems know no such request.
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    fsync(handle);
    close(handle);
}

files::Stamp filesystem::GetStamp(const std::filesystem::path& path) noexcept
{
    constexpr std::int64_t NanosecondsASecond = 1'000'000'000;
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return {};
    return {.modified = status.st_mtim.tv_sec * NanosecondsASecond + status.st_mtim.tv_nsec,
            .size = status.st_size,
            .id = status.st_ino};
}

filesystem::LockResult filesystem::TryLockFile(std::FILE* file) noexcept
{
    // Belongs to this opening of the file, unlike the locks of fcntl, which a process has once.
    if (flock(fileno(file), LOCK_EX | LOCK_NB) == 0)
        return LockResult::Taken;
    return errno == EWOULDBLOCK || errno == EINTR ? LockResult::Busy : LockResult::Failed;
}

void filesystem::UnlockFile(std::FILE* file) noexcept
{
    flock(fileno(file), LOCK_UN);
}

bool filesystem::OpenOnDesktop(const MString& target)
{
    static Children children;
    std::string program = "xdg-open";
    std::string argument = target.ToUTF8();
    char* const arguments[] = {program.data(), argument.data(), nullptr};
    const SpawnSettings settings;
    pid_t child = 0;
    if (posix_spawnp(&child, program.c_str(), &settings.actions, &settings.attributes, arguments,
                     environ) != 0)
        return false;
    children.Add(child);
    return true;
}

bool MConsole::IsErrorRead() noexcept
{
    return isatty(STDERR_FILENO) == 1;
}
