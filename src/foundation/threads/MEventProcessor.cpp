#include "foundation/threads/MEventProcessor.h"

#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MLockGuard.h"

void MEventProcessor::Process() noexcept
{
    std::uint64_t end = 0;
    {
        const MLockGuard guard(ListLock());
        end = nextNumber;
    }
    while (const std::function<void()> call = Take(end))
    {
        MGuarded("MEventProcessor::Process", 0,
                 [&call]
                 {
                     call();
                     return 0;
                 });
    }
}

void MEventProcessor::RemoveAll() noexcept
{
    const MLockGuard guard(ListLock());
    for (const Item& item : items)
        Detach(*item.target);
    items.clear();
}

void MEventProcessor::Remove(MEventTarget& target) noexcept
{
    const MLockGuard guard(ListLock());
    std::erase_if(items, [&target](const Item& item) { return item.target == &target; });
    DetachAll(target);
}

void MEventProcessor::Add(MEventTarget& target, std::function<void()> call)
{
    const MLockGuard guard(ListLock());
    Attach(target);
    try
    {
        items.push_back({nextNumber, &target, std::move(call)});
    }
    catch (...)
    {
        Detach(target);
        throw;
    }
    ++nextNumber;
}

std::function<void()> MEventProcessor::Take(std::uint64_t end) noexcept
{
    const MLockGuard guard(ListLock());
    if (items.empty() || items.front().number >= end)
        return nullptr;
    std::function<void()> call = std::move(items.front().call);
    Detach(*items.front().target);
    items.pop_front();
    return call;
}
