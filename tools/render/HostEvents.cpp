#include "tools/render/HostEvents.h"

#include <algorithm>

#include "tools/hosting/HostedPlugin.h"

void HostEvents::AddValue(std::int64_t frame, int index, double value01)
{
    const auto behind = std::ranges::upper_bound(values, frame, {}, &Value::frame);
    values.insert(behind, {frame, index, value01});
}

void HostEvents::SetDueValues(HostedPlugin& plugin, std::int64_t position)
{
    for (; nextValue < values.size() && values[nextValue].frame <= position; ++nextValue)
        plugin.Set01(values[nextValue].index, values[nextValue].value01);
}

std::int64_t HostEvents::SendDueMessages(HostedPlugin& plugin, std::int64_t position)
{
    for (; nextMessage < messages.size(); ++nextMessage)
    {
        if (messages[nextMessage].frame > position)
            return messages[nextMessage].frame;
        plugin.Send(messages[nextMessage].bytes, 0);
    }
    return Never;
}
