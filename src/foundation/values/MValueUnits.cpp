#include "foundation/values/MValueUnits.h"

#include <cmath>

#include "foundation/values/ValueTexts.h"

namespace
{

constexpr double Percent = 0.01;
constexpr double Millisecond = 0.001;
constexpr double Degree = 0.002777777777777778; ///< of a turn

} // namespace

// The steps are those of single precision: as a double 0.0004f lies a little beside 0.0004.

MValueVolume::MValueVolume(Binding binding, double lowest, double highest)
    : MValueDouble(binding.Or(1.0), lowest, highest)
{
    SetSteps(0.0004f, 0.1f);
}

MString MValueVolume::TextOf(double value) const
{
    return valuetexts::Gain(value);
}

std::optional<double> MValueVolume::FromTyped(double typed) const
{
    return std::pow(10.0, typed * 0.05);
}

MValuePercents::MValuePercents(Binding binding, double lowest, double highest)
    : MValueDouble(binding, lowest, highest)
{
}

MString MValuePercents::TextOf(double value) const
{
    return valuetexts::Percents(value);
}

std::optional<double> MValuePercents::FromTyped(double typed) const
{
    return typed * Percent;
}

MValuePan::MValuePan(Binding binding, double lowest, double highest)
    : MValueDouble(binding, lowest, highest)
{
    SetSteps(0.01f, 0.1f);
}

MString MValuePan::TextOf(double value) const
{
    return valuetexts::Pan(value);
}

std::optional<double> MValuePan::FromTyped(double typed) const
{
    return typed * Percent;
}

MValueDegreesFrom01::MValueDegreesFrom01(Binding binding, double lowest, double highest)
    : MValueDouble(binding, lowest, highest)
{
}

MString MValueDegreesFrom01::TextOf(double value) const
{
    return valuetexts::Degrees(value);
}

std::optional<double> MValueDegreesFrom01::FromTyped(double typed) const
{
    return typed * Degree;
}

MValueTimeMS::MValueTimeMS(Binding binding, double lowest, double highest)
    : MValueDouble(binding, lowest, highest)
{
    SetSteps(0.001f, 0.01f);
}

MString MValueTimeMS::TextOf(double value) const
{
    return valuetexts::Milliseconds(value);
}

std::optional<double> MValueTimeMS::FromTyped(double typed) const
{
    return typed * Millisecond;
}

MValuePitch::MValuePitch(Binding binding, double lowest, double highest)
    : MValueDouble(binding, lowest, highest)
{
    SetSteps(0.1f, 1.0);
    SetFormat("{0;+.02}");
}
