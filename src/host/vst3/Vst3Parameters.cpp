#include "host/vst3/Vst3Parameters.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/MAudioPlugin.h"
#include "host/vst3/Vst3Text.h"

namespace Vst3
{

namespace
{

/// What the way through 32 bits may change.
constexpr double LeastChange = 1e-7;

bool IsOn(double value) noexcept
{
    return value >= 0.5;
}

} // namespace

void Parameters::Build()
{
    echoes.resize(static_cast<std::size_t>(plugin.GetParameterCount()) + 1);
    ForgetSet();
}

void Parameters::ForgetSet() noexcept
{
    for (Echo& echo : echoes)
        echo.own = std::numeric_limits<double>::quiet_NaN();
}

void Parameters::Describe(int index, ParameterInfo& info) const
{
    info = {};
    info.unitId = kRootUnitId;
    info.flags = ParameterInfo::kCanAutomate;
    if (index == Count() - 1)
    {
        info.id = BypassId;
        CopyText(info.title, "Bypass");
        CopyText(info.shortTitle, "Bypass");
        info.stepCount = 1;
        info.flags |= ParameterInfo::kIsBypass;
        return;
    }
    info.id = static_cast<ParamID>(index);
    CopyText(info.title, plugin.GetParameterName(index));
    CopyText(info.shortTitle, plugin.GetParameterNameWithoutSection(index));
    CopyText(info.units, plugin.GetParameterUnitsName(index));
    info.stepCount = plugin.GetParameterType(index) == MAutomationType::Bool ? 1 : 0;
    info.defaultNormalizedValue = std::clamp(plugin.GetParameterDefaultValue(index), 0.0, 1.0);
}

MString Parameters::GetText(ParamID id, double value) const
{
    value = std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
    if (id == BypassId)
        return IsOn(value) ? "On" : "Off";
    const MString text = plugin.GetParameterValueNameFrom01(static_cast<int>(id), value);
    return text.IsEmpty() ? MString::FromDouble(value, 4) : text;
}

double Parameters::Parse(ParamID id, const MString& text) const
{
    if (id != BypassId)
        return std::clamp(plugin.ParseParameterValueName(static_cast<int>(id), text), 0.0, 1.0);
    if (text == "On")
        return 1.0;
    if (text == "Off")
        return 0.0;
    double number = Get(id);
    text.ReadDouble(number);
    return IsOn(number) ? 1.0 : 0.0;
}

double Parameters::GetOwn(ParamID id) const
{
    if (id == BypassId)
        return plugin.IsBypassed() ? 1.0 : 0.0;
    return plugin.GetRestorableParameter(static_cast<int>(id));
}

bool Parameters::IsOther(double a, double b) noexcept
{
    return !(std::abs(a - b) <= LeastChange);
}

double Parameters::Get(ParamID id) const
{
    const double own = GetOwn(id);
    const Echo& echo = echoes[PlaceOf(id)];
    return IsOther(own, echo.own) ? own : static_cast<double>(echo.set);
}

void Parameters::Set(ParamID id, double value)
{
    if (!std::isfinite(value))
        return;
    Apply(id, value);
    Echo& echo = echoes[PlaceOf(id)];
    echo.set = std::clamp(value, 0.0, 1.0);
    echo.own = GetOwn(id);
}

void Parameters::Apply(ParamID id, double value) const
{
    if (!std::isfinite(value))
        return;
    if (id == BypassId)
        plugin.SetBypassed(IsOn(value));
    else
        plugin.SetParameter(static_cast<int>(id), std::clamp(value, 0.0, 1.0), false);
}

} // namespace Vst3
