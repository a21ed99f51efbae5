#pragma once

#include <cstdint>
#include <thread>
#include <vector>

#include "foundation/threads/MSynchronizationObject.h"

/// A recursive lock for many readers or one writer.
/// A thread that reads may go on to write once it is the only reader, and read on while it writes.
/// Waiting writers keep new readers out. Threads that all read and want to write do not block each
/// other: each counts as waiting, and they write one after the other. So what was read before the
/// wait may have changed behind it.
/// Does not allocate as long as no more than 16 threads hold or want it.
class MERWLock : public MSynchronizationObject
{
public:
    /// @throws MException (0) "Could not create thread local storage." if the memory ends.
    MERWLock();

private:
    /// What one thread holds, recursion counted.
    struct Holder
    {
        std::uint32_t Reads() const noexcept { return word & 0xffff; }
        std::uint32_t Writes() const noexcept { return word >> 16; }

        std::thread::id thread;
        std::uint32_t word = 0; ///< reads in the low 16 bits, writes in the high ones
    };

    static constexpr std::uint32_t OneRead = 1;
    static constexpr std::uint32_t OneWrite = 0x10000;
    static constexpr std::uint32_t MaxHolds = 0xffff; ///< of one kind by one thread

    /// @throws MException (0) as the constructor, or "Could not acquire emulated synchronization
    /// object." when this thread holds it MaxHolds times.
    void OnWaitStart(bool isWrite) override;
    bool CanEnter(bool isWrite) const noexcept override;
    void OnEnter(bool isWrite) noexcept override;
    void OnWaitEnd(bool isWrite, bool entered) noexcept override;
    void OnLeave(bool isWrite) noexcept override;

    /// Forgets this thread once it holds nothing.
    void Drop(Holder& holder) noexcept;

    std::uint32_t readers = 0;
    std::uint32_t writers = 0;
    std::uint32_t waitingWriters = 0;
    std::uint32_t waitingWritersReads = 0; ///< what the waiting writers hold for reading
    std::vector<Holder> holders;           ///< threads that hold or want it, in no order
};
