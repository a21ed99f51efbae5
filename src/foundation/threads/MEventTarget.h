#pragma once

#include <vector>

class MEventBase;

/// What may receive events: the base of everything with handlers. Its end unsubscribes it from all
/// of them. It has to end on the thread that fires them, since by then the parts of a derived class
/// are gone. Identity matters, so it is not copied.
class MEventTarget
{
public:
    MEventTarget() = default;
    virtual ~MEventTarget();
    MEventTarget(const MEventTarget&) = delete;
    MEventTarget& operator=(const MEventTarget&) = delete;

private:
    friend MEventBase;

    /// One for each subscription or queued item, under MEventBase::ListLock; all of them alive.
    std::vector<MEventBase*> events;
};
