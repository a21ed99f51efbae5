#include "shell/modulators/MModulatorParameters.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "effect/parameters/MParameterOwner.h"
#include "shell/modulators/ModulatorTexts.h"

namespace
{

double To01(const MModulatorParameter& of, double number) noexcept
{
    return (number - of.min) / (of.max - of.min);
}

/// Reaches both ends exactly: where its band ends, a filter is left out.
double From01(const MModulatorParameter& of, double value01) noexcept
{
    return std::lerp(of.min, of.max, std::clamp(value01, 0.0, 1.0));
}

MString Numbered(const char* text, int modulatorIndex)
{
    MString numbered = text;
    numbered.Append(MString::FromInteger(modulatorIndex + 1));
    return numbered;
}

} // namespace

MModulatorParameters::MModulatorParameters(int modulatorIndex,
                                           std::vector<MModulatorParameter> published,
                                           MParameterOwner& parameterOwner)
    : MAutomationAdapter(static_cast<int>(published.size())),
      place(modulatorIndex),
      parameters(std::move(published))
{
    SetOwner(&parameterOwner);
}

MString MModulatorParameters::GetSection(int modulatorIndex)
{
    return Numbered("Modulator ", modulatorIndex);
}

MString MModulatorParameters::GetIDPrefix(int modulatorIndex)
{
    MString prefix = Numbered("Modulator", modulatorIndex);
    prefix.Append(".");
    return prefix;
}

void MModulatorParameters::SetParameter(int index, double value01, bool quiet)
{
    if (!Has(index) || std::isnan(value01))
        return;
    *At(index).number = From01(At(index), value01);
    if (!quiet)
        GetOwner()->OnCustomParameterChanged(*this);
}

double MModulatorParameters::GetParameter(int index) const
{
    return Has(index) ? To01(At(index), *At(index).number) : 0.0;
}

MString MModulatorParameters::GetParameterNameWithoutSection(int index) const
{
    return Has(index) ? MString(At(index).name) : MString();
}

MString MModulatorParameters::GetParameterSection(int index) const
{
    return Has(index) ? GetSection(place) : MString();
}

MString MModulatorParameters::GetParameterID(int index) const
{
    if (!Has(index))
        return {};
    MString id = GetIDPrefix(place);
    if (At(index).group != nullptr)
    {
        id.Append(At(index).group);
        id.Append(".");
    }
    id.Append(At(index).key);
    return id;
}

MString MModulatorParameters::GetParameterValueName(int index) const
{
    return Has(index) ? At(index).text->show(*At(index).number) : MString();
}

MString MModulatorParameters::GetParameterValueNameFrom01(int index, double value01) const
{
    return Has(index) ? At(index).text->show(From01(At(index), value01)) : MString();
}

double MModulatorParameters::ParseParameterValueName(int index, const MString& text) const
{
    double number = 0.0;
    if (!Has(index))
        return 0.0;
    return At(index).text->read(text, number) ? To01(At(index), number) : GetParameter(index);
}

MAutomationType MModulatorParameters::GetParameterType(int /*index*/) const
{
    return MAutomationType::Float;
}

double MModulatorParameters::GetParameterDefaultValue(int index) const
{
    return Has(index) ? To01(At(index), At(index).defaultNumber) : 0.0;
}
