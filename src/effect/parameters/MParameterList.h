#pragma once

#include <memory>
#include <vector>

#include "effect/parameters/MAutomationAdapter.h"

class MAudioEffectPlugin;
class MParameterOwner;
struct MPluginParameterRecord;
struct MPluginSpecialRecord;

/// The parameter objects of an effect, one for each published record and special object, in the
/// order of their indices. The effect has to outlive it.
class MParameterList
{
public:
    MParameterList() = default;

    /// Builds the objects, anew if there were any, and lets @p plugin share the processing lock of
    /// @p owner. Only before the first block.
    /// @throws MException "Invalid plugin parameter type."; the list then stays as it was.
    void Wire(MAudioEffectPlugin& plugin, MParameterOwner& owner);

    const std::vector<MAutomationAdapter*>& GetAdapters() const noexcept { return adapters; }
    /// Places in GetAdapters at which a section of the list begins.
    const std::vector<int>& GetSectionStarts() const noexcept { return sectionStarts; }
    /// Of all adapters.
    int GetParameterCount() const noexcept { return parameterCount; }
    /// The adapter to which the parameter @p index belongs; null outside the list.
    MAutomationAdapter* FindAdapter(int index) const noexcept;

private:
    void Add(MAudioEffectPlugin& plugin, MPluginParameterRecord& record, MParameterOwner& owner,
             int index);
    void Add(const MPluginSpecialRecord& special, MParameterOwner& owner);
    void Append(MAutomationAdapter& adapter);

    std::vector<std::unique_ptr<MAutomationAdapter>> owned;
    std::vector<MAutomationAdapter*> adapters; ///< also those that the effect owns
    std::vector<int> sectionStarts;
    int parameterCount = 0;
};
