#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/threads/MLock.h"

/// Channel messages on their way between two threads, in the order in which they came.
/// Adding and taking do not allocate; what comes while the queue is full is dropped. The lock is
/// held while a message is added or the whole queue changes hands, and nothing is called under it.
class MIDIQueue
{
public:
    static constexpr std::size_t Capacity = 4096; ///< messages

    struct Message
    {
        std::int32_t offset;               ///< samples behind the start of the block
        std::array<std::uint8_t, 3> bytes; ///< status and two data bytes
    };

    MIDIQueue();

    /// @p bytes are three. Any thread.
    void Add(std::int32_t offset, const std::uint8_t* bytes) noexcept;
    /// Without the lock: what another thread is adding may not count yet. Any thread.
    bool IsEmpty() const noexcept { return !isAnyWaiting.load(std::memory_order_relaxed); }
    /// Empties the queue; what was in it is valid until the next call. One thread.
    const std::vector<Message>& Take() noexcept;

private:
    MLock lock; ///< of waiting
    std::vector<Message> waiting;
    std::atomic<bool> isAnyWaiting = false; ///< written under the lock
    std::vector<Message> taken;
};
