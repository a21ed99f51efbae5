#include "effect/MPluginInfo.h"

#include "effect/MPluginParameterRecord.h"

std::int32_t MPluginInfo::CountParameters() const noexcept
{
    return (flags & IndirectParameters) != 0 ? parameterPointerCount : parameterCount;
}

MPluginParameterRecord* MPluginInfo::FindParameter(std::intptr_t index) const noexcept
{
    if (index < 0 || index >= CountParameters())
        return nullptr;
    return (flags & IndirectParameters) != 0 ? parameterPointers[index] : parameters + index;
}
