#include "effect/parameters/MAutomationAdapter.h"

#include <algorithm>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/values/MRandom.h"

void MAutomationAdapter::SetParameters(std::span<const IndexedValue> values, bool quiet)
{
    for (const auto& [index, value01] : values)
        SetParameter(index, value01, quiet);
}

MString MAutomationAdapter::GetParameterName(int index) const
{
    const MString section = GetParameterSection(index);
    const MString name = GetParameterNameWithoutSection(index);
    return section.IsEmpty() ? name : MStringFormatter("{0} ({1})").Add(name).Add(section).Result();
}

MString MAutomationAdapter::GetParameterNameWithoutSection(int /*index*/) const
{
    return {};
}

MString MAutomationAdapter::GetParameterSection(int /*index*/) const
{
    return {};
}

MString MAutomationAdapter::GetParameterID(int index) const
{
    const MString section = GetParameterSection(index);
    const MString name = GetParameterNameWithoutSection(index);
    return section.IsEmpty() ? name : MStringFormatter("{0}.{1}").Add(section).Add(name).Result();
}

MString MAutomationAdapter::GetParameterValueName(int /*index*/) const
{
    return {};
}

MString MAutomationAdapter::GetParameterValueNameFrom01(int /*index*/, double /*value01*/) const
{
    return {};
}

double MAutomationAdapter::ParseParameterValueName(int index, const MString& /*text*/) const
{
    return GetParameter(index);
}

MString MAutomationAdapter::GetParameterUnitsName(int /*index*/) const
{
    return {}; // hosts show it beside the value's text, which has it already
}

bool MAutomationAdapter::IsModulatable(int /*index*/) const
{
    return false;
}

void MAutomationAdapter::SetModulated(int /*index*/, bool /*on*/) {}

MAutomationType MAutomationAdapter::GetParameterType(int /*index*/) const
{
    return MAutomationType::Float;
}

double MAutomationAdapter::GetParameterDefaultValue(int index) const
{
    return Has(index) ? 0.5 : 0.0;
}

bool MAutomationAdapter::IsRandomisable(int /*index*/) const
{
    return false;
}

void MAutomationAdapter::Randomize(double amount)
{
    for (int index = 0; index < count; ++index)
    {
        if (!IsRandomisable(index))
            continue;
        const double move = (2.0 * MRandom::DrawUniform() - 1.0) * amount;
        SetParameter(index, std::clamp(GetParameter(index) + move, 0.0, 1.0), false);
    }
}

double MAutomationAdapter::GetRestorableParameter(int index) const
{
    return GetParameter(index);
}
