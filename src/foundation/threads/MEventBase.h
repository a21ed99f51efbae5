#pragma once

#include <concepts>
#include <type_traits>
#include <typeinfo>

class MEventTarget;
class MLock;

/// A parameter structure of any type by reference, for whoever fires an event without knowing its
/// type. Remembers the type, so that nobody reads one structure as another.
class MEventParameters
{
public:
    template <class P>
    requires(!std::is_const_v<P> &&
             !std::same_as<P, MEventParameters>) explicit MEventParameters(P& parameters) noexcept
        : address(&parameters),
          type(&typeid(P))
    {
    }

    /// Null if they are no P.
    template <class P>
    P* As() const noexcept
    {
        return *type == typeid(P) ? static_cast<P*>(address) : nullptr;
    }

private:
    void* address;
    const std::type_info* type;
};

/// What targets subscribe to: the base of events, callbacks and the event queue.
/// Each target knows the events that may call it. The lists on both sides are guarded by one lock
/// for all events, which is never held while a handler runs; all operations are for any thread.
class MEventBase
{
public:
    MEventBase() = default;
    virtual ~MEventBase() = default;
    MEventBase(const MEventBase&) = delete;
    MEventBase& operator=(const MEventBase&) = delete;

    /// Calls the subscribers. Parameters of another type than the event's reach nobody.
    virtual void Fire(MEventParameters parameters) = 0;
    /// Drops all subscriptions, also for firings under way. Derived classes do this in their
    /// destructors.
    virtual void RemoveAll() noexcept = 0;
    /// Drops all subscriptions of @p target, also for firings under way.
    virtual void Remove(MEventTarget& target) noexcept = 0;

    static MLock& ListLock() noexcept;

protected:
    /// Tells @p target of one more subscription. ListLock held, as in the next two.
    void Attach(MEventTarget& target);
    /// Takes back one Attach.
    void Detach(MEventTarget& target) noexcept;
    /// Takes back all of them.
    void DetachAll(MEventTarget& target) noexcept;
};
