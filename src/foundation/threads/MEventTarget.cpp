#include "foundation/threads/MEventTarget.h"

#include "foundation/threads/MEventBase.h"
#include "foundation/threads/MLockGuard.h"

MEventTarget::~MEventTarget()
{
    const MLockGuard guard(MEventBase::ListLock());
    while (!events.empty())
        events.back()->Remove(*this);
}
