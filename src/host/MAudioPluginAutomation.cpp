#include "host/MAudioPluginAutomation.h"

#include <algorithm>
#include <cmath>

#include "foundation/threads/MLockGuard.h"

namespace
{

constexpr double LeastChange = 1e-7; ///< a host that echoes 32-bit values is off by less

} // namespace

MAudioPluginAutomation::AutomationAdapter*
MAudioPluginAutomation::FindAdapter(int index) const noexcept
{
    const auto behind = std::ranges::upper_bound(adapters, index, {},
                                                 [](const AutomationAdapter* adapter)
                                                 { return adapter->GetFirstIndex(); });
    return behind == adapters.begin() ? nullptr : *(behind - 1);
}

template <typename Result, typename... Parameters, typename... Arguments>
Result MAudioPluginAutomation::Ask(int index,
                                   Result (AutomationAdapter::*operation)(int, Parameters...) const,
                                   const Arguments&... arguments) const
{
    const AutomationAdapter* adapter = FindAdapter(index);
    return adapter != nullptr
               ? (adapter->*operation)(index - adapter->GetFirstIndex(), arguments...)
               : Result();
}

void MAudioPluginAutomation::SetParameter(int index, double value01, bool quiet)
{
    if (interpolation.Write(index, value01, quiet))
        return;
    if (AutomationAdapter* adapter = FindAdapter(index); adapter != nullptr)
        adapter->SetParameter(index - adapter->GetFirstIndex(), value01, quiet);
}

void MAudioPluginAutomation::SetParameters(AutomationAdapter& adapter,
                                           std::span<const AutomationAdapter::IndexedValue> values,
                                           bool quiet)
{
    if (adapter.GetCount() > 1) // values that stand alone may be on their way in a block
        return adapter.SetParameters(values, quiet);
    for (const auto& [index, value01] : values)
        SetParameter(adapter.GetFirstIndex() + index, value01, quiet);
}

double MAudioPluginAutomation::GetParameter(int index) const
{
    if (const auto diverted = interpolation.GetDiverted(index))
        return *diverted;
    return Ask(index, &AutomationAdapter::GetParameter);
}

double MAudioPluginAutomation::GetRestorableParameter(int index) const
{
    if (const auto diverted = interpolation.GetDiverted(index))
        return *diverted;
    return Ask(index, &AutomationAdapter::GetRestorableParameter);
}

MString MAudioPluginAutomation::GetParameterName(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterName);
}

MString MAudioPluginAutomation::GetParameterSection(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterSection);
}

MString MAudioPluginAutomation::GetParameterNameWithoutSection(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterNameWithoutSection);
}

MString MAudioPluginAutomation::GetParameterID(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterID);
}

MString MAudioPluginAutomation::GetParameterValueName(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterValueName);
}

MString MAudioPluginAutomation::GetParameterValueNameFrom01(int index, double value01) const
{
    return Ask(index, &AutomationAdapter::GetParameterValueNameFrom01, value01);
}

double MAudioPluginAutomation::ParseParameterValueName(int index, const MString& text) const
{
    return Ask(index, &AutomationAdapter::ParseParameterValueName, text);
}

MString MAudioPluginAutomation::GetParameterUnitsName(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterUnitsName);
}

MAutomationType MAudioPluginAutomation::GetParameterType(int index) const
{
    const AutomationAdapter* adapter = FindAdapter(index);
    return adapter != nullptr ? adapter->GetParameterType(index - adapter->GetFirstIndex())
                              : MAutomationType::Float;
}

double MAudioPluginAutomation::GetParameterDefaultValue(int index) const
{
    return Ask(index, &AutomationAdapter::GetParameterDefaultValue);
}

bool MAudioPluginAutomation::IsModulatable(int index) const
{
    return Ask(index, &AutomationAdapter::IsModulatable);
}

void MAudioPluginAutomation::SetModulated(int index, bool on)
{
    if (AutomationAdapter* adapter = FindAdapter(index); adapter != nullptr)
        adapter->SetModulated(index - adapter->GetFirstIndex(), on);
}

void MAudioPluginAutomation::SetParameterIfChanged(int index, double value01, bool quiet)
{
    if (std::abs(value01 - GetParameter(index)) > LeastChange)
        SetParameter(index, value01, quiet);
}

int MAudioPluginAutomation::FindParameter(const MString& id) const
{
    return FindByText(&AutomationAdapter::GetParameterID, id);
}

int MAudioPluginAutomation::FindParameterByName(const MString& name) const
{
    return FindByText(&AutomationAdapter::GetParameterName, name);
}

int MAudioPluginAutomation::FindByText(MString (AutomationAdapter::*text)(int) const,
                                       const MString& wanted) const
{
    for (const AutomationAdapter* adapter : adapters)
        for (int index = 0; index < adapter->GetCount(); ++index)
            if ((adapter->*text)(index) == wanted)
                return adapter->GetFirstIndex() + index;
    return -1;
}

void MAudioPluginAutomation::AddAdapter(AutomationAdapter& adapter)
{
    adapters.push_back(&adapter);
    {
        const MLockGuard guard(adapterLock);
        pendingEditorUpdates.reserve(adapters.size());
    }
    adapter.SetFirstIndex(parameterCount);
    parameterCount += adapter.GetCount();
}

void MAudioPluginAutomation::AddTemporaryAdapter(std::unique_ptr<AutomationAdapter> adapter)
{
    adapter->SetTemporary(true);
    temporaryAdapters.push_back(std::move(adapter));
    AddAdapter(*temporaryAdapters.back());
}

void MAudioPluginAutomation::DestroyTemporaryAutomationAdapters()
{
    OnTemporaryAdaptersEnd();
    {
        const MLockGuard guard(adapterLock);
        pendingEditorUpdates.clear();
    }
    for (; !temporaryAdapters.empty(); temporaryAdapters.pop_back())
    {
        interpolation.Forget(*temporaryAdapters.back());
        std::erase(adapters, temporaryAdapters.back().get());
    }
    parameterCount =
        adapters.empty() ? 0 : adapters.back()->GetFirstIndex() + adapters.back()->GetCount();
}

void MAudioPluginAutomation::NeedUpdateEditor(AutomationAdapter& adapter)
{
    const MLockGuard guard(adapterLock);
    // Full only if adapters are noted that were never added, which no editor shows.
    if (pendingEditorUpdates.size() < pendingEditorUpdates.capacity() &&
        std::ranges::find(pendingEditorUpdates, &adapter) == pendingEditorUpdates.end())
        pendingEditorUpdates.push_back(&adapter);
}

std::vector<MAudioPluginAutomation::AutomationAdapter*>
MAudioPluginAutomation::TakePendingEditorUpdates()
{
    if (!HasPendingEditorUpdates())
        return {};
    std::vector<AutomationAdapter*> taken;
    taken.reserve(adapters.size());
    const MLockGuard guard(adapterLock);
    taken.swap(pendingEditorUpdates);
    return taken;
}

bool MAudioPluginAutomation::HasPendingEditorUpdates() const
{
    const MLockGuard guard(adapterLock);
    return !pendingEditorUpdates.empty();
}
