#include "foundation/threads/MEventBase.h"

#include <algorithm>
#include <vector>

#include "foundation/threads/MEventTarget.h"
#include "foundation/threads/MLock.h"

namespace
{
// Ready before any code runs, since there may be events among the static objects.
constinit MLock listLock;
} // namespace

MLock& MEventBase::ListLock() noexcept
{
    return listLock;
}

void MEventBase::Attach(MEventTarget& target)
{
    target.events.push_back(this);
}

void MEventBase::Detach(MEventTarget& target) noexcept
{
    // From the back, where the latest ones are: queued items come and go.
    const auto link = std::find(target.events.rbegin(), target.events.rend(), this);
    if (link != target.events.rend())
        target.events.erase(std::next(link).base());
}

void MEventBase::DetachAll(MEventTarget& target) noexcept
{
    std::erase(target.events, this);
}
