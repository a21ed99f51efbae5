#include "foundation/streams/MFileLock.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "tests/TemporaryFolder.h"
#include "tests/foundation/streams/StreamTest.h"

namespace
{

TEST(MFileLockThreads, OneHolderAtATime)
{
    const TemporaryFolder folder;
    const MString name = MString::FromUTF8((folder / "lock").generic_string());
    std::atomic<int> holders = 0;
    std::atomic<bool> isShared = false;
    // Read and written apart, so that a step is lost if two of them hold the lock.
    std::atomic<int> steps = 0;
    const auto work = [&]
    {
        for (int i = 0; i < 50; ++i)
        {
            const MFileLock lock(name, 60000);
            isShared = isShared || ++holders > 1;
            const int before = steps;
            std::this_thread::yield();
            steps = before + 1;
            --holders;
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_FALSE(isShared);
    EXPECT_EQ(steps, 100);
    EXPECT_EQ(folder.List(), "lock");
}

TEST(MFileLock, GivesUpAfterItsTime)
{
    const TemporaryFolder folder;
    const MString name = MString::FromUTF8((folder / "lock").generic_string());
    const std::string failure = "Could not lock file \"" + name.ToUTF8() + "\". (0)";
    {
        const MFileLock lock(name);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Thrown([&] { MFileLock(name, 50); }), failure);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    }
    EXPECT_EQ(Thrown([&] { MFileLock(name, 0); }), "nothing");
    const MString nowhere = MString::FromUTF8((folder / "missing/lock").generic_string());
    EXPECT_EQ(Thrown([&] { MFileLock(nowhere, 0); }),
              "Could not lock file \"" + nowhere.ToUTF8() + "\". (0)");
}

} // namespace
