#include "effect/StockValueTexts.h"

#include <cmath>

#include "foundation/values/ValueTexts.h"

namespace
{

/// The text of a gain that is the value to the power of @p exponent.
void PowerGain(MString& result, MPluginParameterRecord& record, const MString& input,
               double exponent)
{
    MRelaxed<double>& value = record.range.asFloat.value;
    if (input.IsEmpty())
    {
        result = valuetexts::Gain(std::pow(value, exponent));
        return;
    }
    result.Clear();
    double decibels = 0.0;
    if (input.ReadDouble(decibels))
        value = std::pow(std::pow(10.0, decibels / 20.0), 1.0 / exponent);
}

} // namespace

namespace valuetexts
{

void LinearGain(MString& result, MPluginParameterRecord& record, const MString& input,
                const MString& /*format*/)
{
    PowerGain(result, record, input, 1.0);
}

void SquaredGain(MString& result, MPluginParameterRecord& record, const MString& input,
                 const MString& /*format*/)
{
    PowerGain(result, record, input, 2.0);
}

void FourthPowerGain(MString& result, MPluginParameterRecord& record, const MString& input,
                     const MString& /*format*/)
{
    PowerGain(result, record, input, 4.0);
}

void OptionalFrequency(MString& result, MPluginParameterRecord& record, const MString& input,
                       const MString& /*format*/)
{
    MRelaxed<double>& value = record.range.asFloat.value;
    if (input.IsEmpty())
    {
        const bool isOff = std::abs(value - record.range.asFloat.min) < 1e-6;
        result = isOff ? MString("Disabled") : Frequency(std::pow(10.0, value), " ");
        return;
    }
    result.Clear();
    double hz = 0.0;
    if (input.ReadDouble(hz) && hz > 0.0)
        value = std::log10(hz);
}

} // namespace valuetexts
