#include "foundation/streams/FileSystem.h"

#include <csignal>
#include <mutex>
#include <string>
#include <vector>

#include <spawn.h>
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
