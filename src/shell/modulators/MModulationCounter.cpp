#include "shell/modulators/MModulationCounter.h"

#include <cstddef>
#include <utility>

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

double MModulationCounter::Drop(int index)
{
    Holders* const holders = Find(index);
    if (holders == nullptr || holders->count == 0 || --holders->count > 0)
        return -1.0;
    writer.SetModulated(index, false);
    return std::exchange(holders->backup, -1.0);
}

void MModulationCounter::Release(int index)
{
    const double backup = Drop(index);
    if (backup >= 0.0 && !writer.HasAlternate(index))
        writer.SetParameter(index, backup);
}

void MModulationCounter::Forget(int index)
{
    Drop(index);
}
