#include "tools/render/HostEvents.h"

#include "tools/hosting/HostedPlugin.h"

void HostEvents::AddValue(std::int64_t frame, int index, double value01)
{
    values.push_back({frame, index, value01});
}

void HostEvents::SetDueValues(HostedPlugin& plugin, std::int64_t position)
{
    for (const Value& value : values)
        if (value.frame <= position)
            plugin.Set01(value.index, value.value01);
    std::erase_if(values, [position](const Value& value) { return value.frame <= position; });
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
