#include "foundation/values/MValueFrequency.h"

#include <cmath>

#include "foundation/values/ValueTexts.h"

namespace
{

constexpr double UsualHz = 1000.0;
constexpr double UsualLogarithm = 2.0; ///< 100 Hz

} // namespace

MValueFrequency::MValueFrequency(Binding binding, double lowest, double highest)
    : MValueDouble(binding.Or(UsualHz), lowest, highest)
{
    SetSteps(1.0, 100.0);
    TakeLogarithms();
}

void MValueFrequency::InitFromXML(MXMLItem& item)
{
    MValueDouble::InitFromXML(item);
    TakeLogarithms();
}

double MValueFrequency::Get01() const
{
    if (GetMin() == GetMax())
        return 1.0;
    const double position = (std::log10(Get()) - logMin) / (logMax - logMin);
    return std::isfinite(position) ? position : 0.0;
}

bool MValueFrequency::Set01(double position)
{
    const double hz = From01(position);
    if (std::isnan(hz))
        return false;
    const bool isOther = hz != Get();
    Set(hz);
    return isOther;
}

MString MValueFrequency::TextOf(double value) const
{
    return valuetexts::Frequency(value, " ");
}

double MValueFrequency::From01(double position) const
{
    return std::pow(10.0, (logMax - logMin) * position + logMin);
}

void MValueFrequency::TakeLogarithms() noexcept
{
    logMin = std::log10(GetMin());
    logMax = std::log10(GetMax());
}

MValueFrequencyLog::MValueFrequencyLog(Binding binding, double lowestHz, double highestHz)
    : MValueDouble(binding.Or(UsualLogarithm), std::log10(lowestHz), std::log10(highestHz))
{
}

MString MValueFrequencyLog::TextOf(double value) const
{
    return valuetexts::Frequency(std::pow(10.0, value), " ");
}

std::optional<double> MValueFrequencyLog::FromTyped(double typed) const
{
    if (typed > 0.0)
        return std::log10(typed);
    return std::nullopt;
}

MValueFrequencyLinear::MValueFrequencyLinear(Binding binding, double lowest, double highest)
    : MValueDouble(binding.Or(UsualHz), lowest, highest)
{
}

MString MValueFrequencyLinear::TextOf(double value) const
{
    return valuetexts::Frequency(value, " ");
}
