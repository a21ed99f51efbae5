#include "tools/render/SlotWalk.h"

#include <cmath>
#include <utility>

#include "tools/render/InProcessPlugin.h"

SlotWalk::SlotWalk(std::unique_ptr<InProcessPlugin> walkingPlugin)
    : plugin(std::move(walkingPlugin)),
      morph(plugin->GetShell())
{
}

SlotWalk::~SlotWalk() = default;

std::vector<std::byte> SlotWalk::SaveState()
{
    return plugin->SaveState();
}

void SlotWalk::Follow(std::span<const RenderOptions::PlaceInTime> path, double step,
                      const Listener& listener)
{
    last.assign(static_cast<std::size_t>(plugin->GetParameterCount()), 0.0);
    for (int index = 0; index < plugin->GetParameterCount(); ++index)
        last[static_cast<std::size_t>(index)] = plugin->Get01(index);
    for (std::size_t i = 0; i < path.size(); ++i)
    {
        const auto& [end, to] = path[i];
        const auto& [start, from] = path[i > 0 ? i - 1 : 0];
        for (int steps = 1; start + steps * step < end; ++steps)
        {
            const double share = steps * step / (end - start);
            MoveTo({std::lerp(from.x, to.x, share), std::lerp(from.y, to.y, share)});
            Tell(start + steps * step, listener);
        }
        MoveTo(to);
        Tell(end, listener);
    }
}

void SlotWalk::Tell(double seconds, const Listener& listener)
{
    for (int index = 0; index < plugin->GetParameterCount(); ++index)
        if (const double value01 = plugin->Get01(index);
            std::exchange(last[static_cast<std::size_t>(index)], value01) != value01)
            listener(seconds, index, value01);
}
