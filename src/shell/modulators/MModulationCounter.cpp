#include "shell/modulators/MModulationCounter.h"

#include <cstddef>

void MModulationCounter::Resize(int parameterCount)
{
    parameters.resize(static_cast<std::size_t>(parameterCount));
}

MModulationCounter::Holders* MModulationCounter::Find(int index) noexcept
{
    const auto place = static_cast<std::size_t>(index); // negative ones lie behind all
    return place < parameters.size() ? &parameters[place] : nullptr;
}

void MModulationCounter::Acquire(int index, double backup)
{
    Holders* const holders = Find(index);
    if (holders == nullptr)
        return;
    if (holders->backup < 0.0)
        holders->backup = backup;
    if (++holders->count == 1)
        writer.SetModulated(index, true);
}

void MModulationCounter::Release(int index)
{
    Holders* const holders = Find(index);
    if (holders == nullptr || holders->count == 0 || --holders->count > 0)
        return;
    writer.SetModulated(index, false);
    if (holders->backup >= 0.0 && !writer.HasAlternate(index))
        writer.SetParameter(index, holders->backup);
    holders->backup = -1.0;
}
