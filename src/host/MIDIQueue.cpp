#include "host/MIDIQueue.h"

#include "foundation/threads/MLockGuard.h"

MIDIQueue::MIDIQueue()
{
    waiting.reserve(Capacity);
    taken.reserve(Capacity);
}

void MIDIQueue::Add(std::int32_t offset, const std::uint8_t* bytes) noexcept
{
    const MLockGuard guard(lock);
    if (waiting.size() < Capacity)
        waiting.push_back({offset, {bytes[0], bytes[1], bytes[2]}});
    isAnyWaiting.store(true, std::memory_order_relaxed);
}

const std::vector<MIDIQueue::Message>& MIDIQueue::Take() noexcept
{
    taken.clear();
    if (IsEmpty())
        return taken;
    const MLockGuard guard(lock);
    taken.swap(waiting);
    isAnyWaiting.store(false, std::memory_order_relaxed);
    return taken;
}
