#include "tools/render/HostEvents.h"

#include "tools/render/PluginRunner.h"

void HostEvents::AddValue(std::int64_t frame, int index, double value01)
{
    values.push_back({frame, index, value01});
}

void HostEvents::SetDueValues(PluginRunner& runner, std::int64_t position)
{
    for (const Value& value : values)
        if (value.frame <= position)
            runner.GetPlugin().SetParameter(value.index, value.value01, false);
    std::erase_if(values, [position](const Value& value) { return value.frame <= position; });
}

std::int64_t HostEvents::SendDueMessages(PluginRunner& runner, std::int64_t position)
{
    for (; nextMessage < messages.size(); ++nextMessage)
    {
        if (messages[nextMessage].frame > position)
            return messages[nextMessage].frame;
        runner.Send(messages[nextMessage].bytes);
    }
    return Never;
}
