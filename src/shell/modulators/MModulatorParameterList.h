#pragma once

#include <memory>
#include <vector>

#include "effect/parameters/MAutomationAdapter.h"

class MModulator;
class MParameterOwner;

/// All parameters of one modulator, in the order of their indices, which is fixed: hosts keep them.
/// New ones go behind all others of the plugin.
class MModulatorParameterList
{
public:
    /// The modulator and the owner outlive it. @p modulatorIndex is 0 or more.
    MModulatorParameterList(MModulator& modulator, int modulatorIndex,
                            MParameterOwner& parameterOwner);

    const std::vector<std::unique_ptr<MAutomationAdapter>>& GetAdapters() const noexcept
    {
        return adapters;
    }

private:
    std::vector<std::unique_ptr<MAutomationAdapter>> adapters;
};
