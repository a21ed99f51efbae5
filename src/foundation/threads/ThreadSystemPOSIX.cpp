#include "foundation/threads/ThreadSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// Threads cannot be created suspended here, so each waits at a gate.
class GatedThread : public MSystemThread
{
public:
    /// @throws std::system_error
    GatedThread(Entry entry, void* argument)
        : gate(std::make_shared<Gate>()),
          thread(&Run, gate, entry, argument)
    {
    }

    ~GatedThread() override
    {
        if (GatedThread::IsCurrent())
            thread.detach();
        else
            thread.join();
    }

    void Resume() noexcept override
    {
        const std::lock_guard guard(gate->mutex);
        gate->isOpen = true;
        gate->changed.notify_all();
    }

    bool SetPriority(int systemValue) noexcept override
    {
        std::unique_lock guard(gate->mutex);
        gate->changed.wait(guard, [this] { return gate->id != 0; });
        if (gate->hasEnded)
            return false;
        // Steps of 5 reach from 10 to -10; the two ends of the scale are the ends of the nice
        // values.
        if (SetNice(gate->usualNice - 5 * systemValue))
            return true;
        if (errno != EACCES && errno != EPERM)
            return false;
        if (systemValue > 0)
            SetNice(gate->usualNice); // refused as well if it was below: then it stays there
        return true;
    }

    bool Wait(int timeout) noexcept override
    {
        std::unique_lock guard(gate->mutex);
        const auto hasEnded = [this] { return gate->hasEnded; };
        if (timeout >= 0)
            return gate->changed.wait_for(guard, std::chrono::milliseconds(timeout), hasEnded);
        gate->changed.wait(guard, hasEnded);
        return true;
    }

    bool IsCurrent() const noexcept override
    {
        return thread.get_id() == std::this_thread::get_id();
    }

private:
    /// What the thread shares with its object, which may end before it.
    struct Gate
    {
        std::mutex mutex; ///< guards all of it
        std::condition_variable changed;
        pid_t id = 0; ///< 0 until the thread runs
        int usualNice = 0;
        bool isOpen = false;
        bool hasEnded = false;
    };

    static void Run(const std::shared_ptr<Gate>& gate, Entry entry, void* argument)
    {
        {
            std::unique_lock guard(gate->mutex);
            gate->id = gettid();
            gate->usualNice = getpriority(PRIO_PROCESS, 0);
            gate->changed.notify_all();
            gate->changed.wait(guard, [&gate] { return gate->isOpen; });
        }
        entry(argument);
        const std::lock_guard guard(gate->mutex);
        gate->hasEnded = true;
        gate->changed.notify_all();
    }

    bool SetNice(int value) const noexcept
    {
        return setpriority(PRIO_PROCESS, static_cast<id_t>(gate->id), std::clamp(value, -20, 19)) ==
               0;
    }

    std::shared_ptr<Gate> gate;
    std::thread thread;
};

bool InitMutex(pthread_mutex_t& mutex, int sharing)
{
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0)
        return false;
    const bool isMade = pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE) == 0 &&
                        pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST) == 0 &&
                        pthread_mutexattr_setpshared(&attributes, sharing) == 0 &&
                        pthread_mutex_init(&mutex, &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    return isMade;
}

/// By the wall clock, although a wait then follows when someone sets it: the thread sanitizer does
/// not know the call that takes another.
timespec Deadline(int timeout) noexcept
{
    constexpr long NsPerMs = 1'000'000;
    constexpr long NsPerSecond = 1'000'000'000;
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    time.tv_sec += timeout / 1000;
    time.tv_nsec += timeout % 1000 * NsPerMs;
    if (time.tv_nsec >= NsPerSecond)
    {
        ++time.tv_sec;
        time.tv_nsec -= NsPerSecond;
    }
    return time;
}

class RobustMutex : public MSystemMutex
{
public:
    RobustMutex(const RobustMutex&) = delete;
    RobustMutex& operator=(const RobustMutex&) = delete;

    bool Lock(int timeout) noexcept override
    {
        int result = 0;
        if (timeout == 0)
        {
            result = pthread_mutex_trylock(&mutex);
        }
        else if (timeout < 0)
        {
            result = pthread_mutex_lock(&mutex);
        }
        else
        {
            const timespec deadline = Deadline(timeout);
            result = pthread_mutex_timedlock(&mutex, &deadline);
        }
        if (result == EOWNERDEAD)
        {
            // What the mutex guards is no worse off than after an exception.
            result = pthread_mutex_consistent(&mutex);
            holds = 0;
        }
        if (result == 0)
            ++holds;
        return result == 0;
    }
    void Unlock() noexcept override
    {
        --holds;
        pthread_mutex_unlock(&mutex);
    }

protected:
    explicit RobustMutex(pthread_mutex_t& systemMutex) noexcept : mutex(systemMutex) {}

    /// Before the mutex goes: what this thread holds stands in a list of the system.
    void ReleaseAll() noexcept
    {
        if (!RobustMutex::Lock(0))
            return;
        for (int left = holds; left > 0; --left)
            RobustMutex::Unlock();
    }

private:
    pthread_mutex_t& mutex;
    int holds = 0; ///< through this object, by the thread that holds the mutex
};

class PrivateMutex : public RobustMutex
{
public:
    /// @throws std::bad_alloc if the system refuses
    PrivateMutex() : RobustMutex(storage)
    {
        if (!InitMutex(storage, PTHREAD_PROCESS_PRIVATE))
            throw std::bad_alloc();
    }
    ~PrivateMutex() override
    {
        ReleaseAll();
        pthread_mutex_destroy(&storage);
    }

private:
    pthread_mutex_t storage{};
};

class File
{
public:
    explicit File(int newDescriptor) noexcept : descriptor(newDescriptor) {}
    File(File&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    File& operator=(File&&) = delete;
    ~File()
    {
        if (IsOpen())
            close(descriptor);
    }

    bool IsOpen() const noexcept { return descriptor >= 0; }
    int Get() const noexcept { return descriptor; }

    /// Takes or changes the file's advisory lock. Waits unless @p operation says otherwise.
    bool Lock(int operation) const noexcept
    {
        int result = 0;
        do
            result = flock(descriptor, operation);
        while (result != 0 && errno == EINTR);
        return result == 0;
    }

private:
    int descriptor;
};

/// A mutex in a shared memory file. Whoever uses it holds a shared lock on the file; whoever can
/// get the exclusive lock is alone, and so may set the mutex up, or remove the file.
class NamedMutex : public RobustMutex
{
public:
    /// Null if the system refuses.
    static std::unique_ptr<NamedMutex> Open(const std::string& path)
    {
        for (;;)
        {
            File file(shm_open(path.c_str(), O_RDWR | O_CREAT, S_IRUSR | S_IWUSR));
            if (!file.IsOpen())
                return nullptr;
            // Locks are changed by way of none, so others may come between: they find the mutex set
            // up, or set it up again before anyone uses it, or remove the file.
            if (file.Lock(LOCK_EX | LOCK_NB) && !SetUp(file))
                return nullptr;
            if (!file.Lock(LOCK_SH))
                return nullptr;
            struct stat status
            {
            };
            if (fstat(file.Get(), &status) != 0 || status.st_uid != geteuid())
                return nullptr;
            if (status.st_nlink == 0 || status.st_size < static_cast<off_t>(sizeof(Shared)))
                continue; // removed, or left by a process that ended before it set it up
            Shared* const shared = Map(file);
            if (shared == nullptr)
                return nullptr;
            if (shared->isReady.load() != 0)
                return std::unique_ptr<NamedMutex>(new NamedMutex(path, std::move(file), shared));
            munmap(shared, sizeof(Shared));
        }
    }

    ~NamedMutex() override
    {
        ReleaseAll();
        munmap(shared, sizeof(Shared));
        // A forked process has the same lock on the file as its parent, whose business this is.
        if (getpid() == creator && file.Lock(LOCK_EX | LOCK_NB))
            shm_unlink(path.c_str());
    }

private:
    struct Shared
    {
        std::atomic<std::uint32_t> isReady; ///< 0 in a new file
        pthread_mutex_t mutex;
    };

    NamedMutex(std::string newPath, File newFile, Shared* mapping)
        : RobustMutex(mapping->mutex),
          path(std::move(newPath)),
          file(std::move(newFile)),
          shared(mapping),
          creator(getpid())
    {
    }

    static Shared* Map(const File& file) noexcept
    {
        void* const address =
            mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file.Get(), 0);
        return address == MAP_FAILED ? nullptr : static_cast<Shared*>(address);
    }

    /// With the exclusive lock. False if the system refuses.
    static bool SetUp(const File& file)
    {
        if (posix_fallocate(file.Get(), 0, sizeof(Shared)) != 0)
            return false;
        Shared* const shared = Map(file);
        if (shared == nullptr)
            return false;
        shared->isReady.store(0);
        const bool isMade = InitMutex(shared->mutex, PTHREAD_PROCESS_SHARED);
        shared->isReady.store(isMade ? 1 : 0);
        munmap(shared, sizeof(Shared));
        return isMade;
    }

    std::string path;
    File file; ///< with the shared lock
    Shared* shared;
    pid_t creator;
};

/// Characters that are none of a file name become "%" and two digits for each byte.
std::string PathOf(const MString& name)
{
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string path = "/tonvale-mutex-";
    path += std::to_string(geteuid());
    path += '-';
    for (const char character : name.ToUTF8())
    {
        const auto byte = static_cast<unsigned char>(character);
        if ((byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
            (byte >= 'a' && byte <= 'z') || byte == '_' || byte == '-' || byte == '.')
        {
            path += character;
            continue;
        }
        path += '%';
        path += Digits[byte >> 4];
        path += Digits[byte & 15];
    }
    return path;
}

} // namespace

std::unique_ptr<MSystemThread> MSystemThread::Create(Entry entry, void* argument)
{
    try
    {
        return std::make_unique<GatedThread>(entry, argument);
    }
    catch (const std::system_error&)
    {
        return nullptr;
    }
}

std::unique_ptr<MSystemMutex> MSystemMutex::Create(const MString& name)
{
    try
    {
        if (name.IsEmpty())
            return std::make_unique<PrivateMutex>();
        return NamedMutex::Open(PathOf(name));
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

std::tm SystemLocalTime(std::time_t time) noexcept
{
    std::tm local{};
    localtime_r(&time, &local);
    return local;
}
