#include "effect/parameters/MParameterList.h"

#include <algorithm>
#include <span>
#include <utility>

#include "effect/MAudioEffectPlugin.h"
#include "effect/parameters/MParameterOwner.h"
#include "effect/parameters/ParameterADSR.h"
#include "effect/parameters/ParameterSignalGenerator.h"
#include "effect/parameters/ParameterValues.h"
#include "foundation/threads/MException.h"

namespace
{

using Adapter = std::unique_ptr<MAutomationAdapter>;

MException InvalidType()
{
    return MException("Invalid plugin parameter type.");
}

/// Null for a record that has no place between 0.0 and 1.0.
Adapter MakeParameter(MAudioEffectPlugin& plugin, MPluginParameterRecord& record,
                      MParameterOwner& owner, int index)
{
    switch (record.type)
    {
        using enum MParameterType;
    case Empty:
    case Text:
        return nullptr;
    case Float:
        return std::make_unique<ParameterFloatT<ParameterBase>>(plugin, record, owner, index);
    case Int:
        return std::make_unique<ParameterIntT<ParameterBase>>(plugin, record, owner, index);
    case Enum:
        return std::make_unique<ParameterEnumT<ParameterBase>>(plugin, record, owner, index);
    case Bool:
        return std::make_unique<ParameterBoolT<ParameterBase>>(plugin, record, owner, index);
    case BoolElsewhere:
        return std::make_unique<ParameterGroupT<ParameterBase>>(plugin, record, owner, index);
    case Heading:
        break;
    }
    throw InvalidType();
}

/// Null for a record that brings its own.
Adapter MakeSpecial(const MPluginSpecialRecord& special, MParameterOwner& owner)
{
    using Generator = ParameterSpecialBase<MSignalGenerator, MSignalGeneratorEditor>;
    using ADSR = ParameterSpecialBase<MADSR, MADSREditor>;
    switch (special.kind)
    {
    case MSpecialKind::SignalGenerator:
        return std::make_unique<ParameterSignalGeneratorT<Generator>>(special, &owner);
    case MSpecialKind::ADSR:
        return std::make_unique<ParameterADSRT<ADSR>>(special, &owner);
    case MSpecialKind::ParameterObject:
        return nullptr;
    }
    throw InvalidType();
}

} // namespace

void MParameterList::Wire(MAudioEffectPlugin& plugin, MParameterOwner& owner)
{
    const MPluginInfo& info = plugin.GetInfo();
    MParameterList wired;
    for (std::int32_t i = 0; i < info.CountParameters(); ++i)
        wired.Add(plugin, *info.FindParameter(i), owner, i);
    for (const MPluginSpecialRecord& special :
         std::span(info.specials, static_cast<std::size_t>(info.specialCount)))
        wired.Add(special, owner);
    plugin.SetLock(owner.GetProcessingLock());
    *this = std::move(wired);
}

void MParameterList::Add(MAudioEffectPlugin& plugin, MPluginParameterRecord& record,
                         MParameterOwner& owner, int index)
{
    const int place = static_cast<int>(adapters.size());
    if (record.Has(MPluginParameterRecord::SectionStart) &&
        (sectionStarts.empty() || sectionStarts.back() != place))
        sectionStarts.push_back(place);
    if (!record.Has(MPluginParameterRecord::Published))
        return;
    if (Adapter adapter = MakeParameter(plugin, record, owner, index))
    {
        Append(*adapter);
        owned.push_back(std::move(adapter));
    }
}

void MParameterList::Add(const MPluginSpecialRecord& special, MParameterOwner& owner)
{
    if (Adapter adapter = MakeSpecial(special, owner))
    {
        Append(*adapter);
        owned.push_back(std::move(adapter));
        return;
    }
    auto& ready = *static_cast<MAutomationAdapter*>(special.data);
    ready.SetOwner(&owner);
    ready.SetTemporary(false);
    Append(ready);
}

void MParameterList::Append(MAutomationAdapter& adapter)
{
    adapter.SetFirstIndex(parameterCount);
    adapters.push_back(&adapter);
    parameterCount += adapter.GetCount();
}

MAutomationAdapter* MParameterList::FindAdapter(int index) const noexcept
{
    if (index < 0 || index >= parameterCount)
        return nullptr;
    const auto above =
        std::ranges::upper_bound(adapters, index, {}, &MAutomationAdapter::GetFirstIndex);
    return *std::prev(above);
}
