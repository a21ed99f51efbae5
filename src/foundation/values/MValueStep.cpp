#include "foundation/values/MValueStep.h"

#include <algorithm>
#include <cmath>

#include "foundation/values/Rounding.h"
#include "foundation/values/ValueTexts.h"
#include "foundation/xml/MXMLItem.h"

MValueStepDouble::MValueStepDouble(Binding binding, double initialStep, double lowest,
                                   double highest)
    : MValueDouble(binding, lowest, highest)
{
    SetSteps(initialStep, std::max(initialStep, initialStep * 10.0));
    SetStep(initialStep);
    MValueStepDouble::Limit();
}

void MValueStepDouble::InitFromXML(MXMLItem& item)
{
    MValueDouble::InitFromXML(item);
    double newStep = 0.0;
    if (item.HasAttribute("step") && item.GetAttribute().ReadDouble(newStep))
        SetStep(newStep);
}

double MValueStepDouble::Limited(double value) const
{
    const double snapped = step * RoundHalfUp(value * invStep);
    return MValueDouble::Limited(invStep != 0.0 && !std::isnan(snapped) ? snapped : value);
}

void MValueStepDouble::SetStep(double newStep) noexcept
{
    step = newStep;
    const double inverse = 1.0 / newStep;
    invStep = std::isfinite(inverse) ? inverse : 0.0;
}

MString MValueStepPercents::TextOf(double value) const
{
    return valuetexts::Percents(value);
}

std::optional<double> MValueStepPercents::FromTyped(double typed) const
{
    return typed * 0.01;
}
