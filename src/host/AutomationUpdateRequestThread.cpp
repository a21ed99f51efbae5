#include "host/AutomationUpdateRequestThread.h"

#include "foundation/threads/MLockGuard.h"

namespace
{

constexpr int PauseMs = 100;

/// Of the process; the sink is called under it.
struct SinkSlot
{
    MLock lock;
    MAudioPluginUpdateRequestSink* sink = nullptr;
};

SinkSlot& GetSinkSlot()
{
    static SinkSlot slot;
    return slot;
}

} // namespace

void MAudioPlugin::SetUpdateRequestSink(MAudioPluginUpdateRequestSink* sink)
{
    SinkSlot& slot = GetSinkSlot();
    const MLockGuard guard(slot.lock);
    slot.sink = sink;
}

MAudioPlugin::AutomationUpdateRequestThread::AutomationUpdateRequestThread(
    MAudioPlugin& watchedPlugin)
    : plugin(watchedPlugin)
{
    Start();
}

MAudioPlugin::AutomationUpdateRequestThread::~AutomationUpdateRequestThread()
{
    RequestStop();
    wake.Unlock();
    Wait(MLock::Infinite);
}

int MAudioPlugin::AutomationUpdateRequestThread::Main()
{
    SinkSlot& slot = GetSinkSlot();
    while (!IsStopRequested())
    {
        if (plugin.HasPendingEditorUpdates())
        {
            const MLockGuard guard(slot.lock);
            if (slot.sink != nullptr)
                slot.sink->RequestUpdate(plugin);
        }
        wake.Lock(PauseMs);
    }
    return 0;
}
