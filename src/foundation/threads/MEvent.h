#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <concepts>
#include <cstddef>
#include <functional>
#include <memory_resource>
#include <utility>
#include <vector>

#include "foundation/threads/MEventBase.h"
#include "foundation/threads/MEventTarget.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MLockGuard.h"

/// The handler policy of most events: each subscriber is called each time. A policy is a value that
/// every subscription keeps (a keyboard shortcut, say); it is copied and destroyed under
/// MEventBase::ListLock, so it is a plain value.
struct MHandlerNoAdditionals
{
    template <class P>
    static constexpr bool Accepts(const P&) noexcept
    {
        return true;
    }
};

/// A signal with a parameter structure @p P, which its handlers may change, and the policy @p H,
/// whose Accepts(const P&) says whether a subscriber is called.
///
///     MEvent<MMoveParams> moved;
///     moved.Subscribe<&Editor::OnMove>(editor); // void Editor::OnMove(MMoveParams&)
///
/// A handler may do anything: change subscriptions, fire again, destroy targets and the event.
/// Subscribing allocates; firing does so beyond InlineSubscriptions.
template <class P, class H = MHandlerNoAdditionals>
class MEvent : public MEventBase
{
public:
    /// A firing copies up to so many subscriptions to the stack.
    static constexpr std::size_t InlineSubscriptions = 16;

    MEvent() = default;
    ~MEvent() override { MEvent::RemoveAll(); }

    /// Has @p Handler, a member void (P&) of @p target, called from now on; not in firings that are
    /// under way. Subscribed twice, it is called twice.
    template <auto Handler, std::derived_from<MEventTarget> Target>
    void Subscribe(Target& target, H additions = H())
    {
        const MLockGuard guard(ListLock());
        Attach(target);
        try
        {
            subscriptions.push_back({&target, std::move(additions), &Call<Handler, Target>});
        }
        catch (...)
        {
            Detach(target);
            throw;
        }
    }

    /// Calls the present subscribers in the order of their subscription, without any lock. Whoever
    /// is removed before its turn is passed over; removal by another thread may come too late for
    /// a call that has begun. What a handler throws passes through and ends the firing.
    void Fire(P& parameters)
    {
        Firing firing(*this);
        for (Subscription& subscription : firing.subscriptions)
        {
            const Function function =
                std::atomic_ref(subscription.function).load(std::memory_order_relaxed);
            if (function != nullptr && subscription.additions.Accepts(std::as_const(parameters)))
                function(*subscription.target, parameters);
        }
    }
    void Fire(MEventParameters parameters) override
    {
        if (P* const own = parameters.As<P>())
            Fire(*own);
    }

    void RemoveAll() noexcept override
    {
        const MLockGuard guard(ListLock());
        for (const Subscription& subscription : subscriptions)
            Detach(*subscription.target);
        subscriptions.clear();
        while (firings != nullptr)
        {
            firings->PassOver([](const Subscription&) { return true; });
            firings = firings->Unlink();
        }
    }
    void Remove(MEventTarget& target) noexcept override
    {
        const MLockGuard guard(ListLock());
        const auto isTargets = [&target](const Subscription& subscription)
        { return subscription.target == &target; };
        std::erase_if(subscriptions, isTargets);
        for (Firing* firing = firings; firing != nullptr; firing = firing->next)
            firing->PassOver(isTargets);
        DetachAll(target);
    }

private:
    using Function = void (*)(MEventTarget& target, P& parameters);

    struct Subscription
    {
        MEventTarget* target;
        [[no_unique_address]] H additions;
        Function function; ///< null in a firing: removed meanwhile
    };

    /// The copy that one Fire works through. The event knows it, so that a removal clears its
    /// subscriptions there too: a firing that nothing disturbs then has nothing to look up.
    struct Firing
    {
        explicit Firing(MEvent& firedEvent)
            : pool(buffer.data(), buffer.size()),
              subscriptions(&pool)
        {
            const MLockGuard guard(ListLock());
            if (firedEvent.subscriptions.empty())
                return;
            subscriptions.assign(firedEvent.subscriptions.begin(), firedEvent.subscriptions.end());
            event = &firedEvent;
            next = std::exchange(event->firings, this);
        }
        ~Firing()
        {
            if (subscriptions.empty()) // was never linked
                return;
            const MLockGuard guard(ListLock());
            if (event == nullptr)
                return;
            Firing** link = &event->firings;
            while (*link != this)
                link = &(*link)->next;
            *link = next;
        }
        Firing(const Firing&) = delete;
        Firing& operator=(const Firing&) = delete;

        void PassOver(auto isRemoved) noexcept
        {
            for (Subscription& subscription : subscriptions)
                if (isRemoved(std::as_const(subscription)))
                    std::atomic_ref(subscription.function)
                        .store(nullptr, std::memory_order_relaxed);
        }
        /// For an event that takes out all its firings; returns the one behind.
        Firing* Unlink() noexcept
        {
            event = nullptr;
            return std::exchange(next, nullptr);
        }

        alignas(
            Subscription) std::array<std::byte, InlineSubscriptions * sizeof(Subscription)> buffer;
        std::pmr::monotonic_buffer_resource pool;
        std::pmr::vector<Subscription> subscriptions;
        MEvent* event = nullptr; ///< null when the event let go of it; under ListLock, as next
        Firing* next = nullptr;
    };

    template <auto Handler, class Target>
    static void Call(MEventTarget& target, P& parameters)
    {
        std::invoke(Handler, static_cast<Target&>(target), parameters);
    }

    std::vector<Subscription> subscriptions; ///< in order
    Firing* firings = nullptr;               ///< those under way, linked by next
};

/// An event with at most one subscriber: the latest.
template <class P, class H = MHandlerNoAdditionals>
class MCallback : private MEvent<P, H>
{
public:
    /// As in MEvent, in place of the subscriber before.
    template <auto Handler, std::derived_from<MEventTarget> Target>
    void Subscribe(Target& target, H additions = H())
    {
        const MLockGuard guard(MEventBase::ListLock());
        this->RemoveAll();
        MEvent<P, H>::template Subscribe<Handler>(target, std::move(additions));
    }

    using MEvent<P, H>::Fire;
    using MEvent<P, H>::Remove;
    using MEvent<P, H>::RemoveAll;
};
