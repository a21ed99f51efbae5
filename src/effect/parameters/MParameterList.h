#pragma once

#include <memory>
#include <vector>

#include "effect/parameters/MAutomationAdapter.h"

class MAudioEffectPlugin;
class MParameterOwner;

/// The parameter objects of an effect, one for each published record and special object, in the
/// order of their indices. The effect has to outlive it.
class MParameterList
{
public:
    MParameterList() = default;

    /// Builds the objects, anew if there were any.
    /// @throws MException "Invalid plugin parameter type."
    void Wire(MAudioEffectPlugin& plugin, MParameterOwner& owner);

    const std::vector<MAutomationAdapter*>& GetAdapters() const noexcept { return adapters; }
    /// Of all adapters.
    int GetParameterCount() const noexcept { return parameterCount; }

private:
    std::vector<std::unique_ptr<MAutomationAdapter>> owned;
    std::vector<MAutomationAdapter*> adapters; ///< also those that the effect owns
    int parameterCount = 0;
};
