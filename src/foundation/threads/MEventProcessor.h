#pragma once

#include <concepts>
#include <cstdint>
#include <deque>
#include <functional>
#include <utility>

#include "foundation/threads/MEventBase.h"
#include "foundation/threads/MEventTarget.h"

/// The queue through which any thread has things done on the GUI thread, where it lives and where
/// the targets of its items end.
class MEventProcessor : private MEventBase
{
public:
    MEventProcessor() = default;
    ~MEventProcessor() override { MEventProcessor::RemoveAll(); }

    /// Has @p Handler, a member of @p target, called with copies of @p arguments by a later
    /// Process, unless the target ends before. Any thread; allocates. Arguments are plain values,
    /// or share what they hold: they may be destroyed under MEventBase::ListLock.
    template <auto Handler, std::derived_from<MEventTarget> Target, class... Arguments>
    void Post(Target& target, Arguments... arguments)
    {
        Add(target, [&target, ... values = std::move(arguments)]() mutable
            { std::invoke(Handler, target, values...); });
    }

    /// Works through the items that were posted before it began, in order, each behind the
    /// exception barrier. An item may call it again (as a modal loop does): that call goes on with
    /// the next item. GUI thread.
    void Process() noexcept;

    /// Drops all items.
    void RemoveAll() noexcept override;
    /// Drops the items of @p target.
    void Remove(MEventTarget& target) noexcept override;

private:
    struct Item
    {
        std::uint64_t number;
        MEventTarget* target;
        std::function<void()> call;
    };

    void Add(MEventTarget& target, std::function<void()> call);
    /// Takes the next item with a number below @p end from the queue; null if there is none.
    std::function<void()> Take(std::uint64_t end) noexcept;
    /// The items bring their own parameters.
    void Fire(MEventParameters /*parameters*/) override { Process(); }

    std::deque<Item> items; ///< under ListLock, with ascending numbers
    std::uint64_t nextNumber = 0;
};
