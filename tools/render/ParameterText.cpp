#include "tools/render/ParameterText.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "effect/MPluginParameterRecord.h"
#include "tools/render/Failure.h"
#include "tools/render/Text.h"

namespace
{

/// Of the range of a float: values that close outside are rounding of their text.
constexpr double RangeTolerance = 1e-9;

/// The unit in which the parser takes numbers. A display may scale it ("kHz" for "Hz"), so it is
/// the shortest of those shown in the range; empty if none is.
std::string BaseUnit(const MPluginParameterRecord& record)
{
    constexpr int Steps = 8;
    std::string shortest;
    for (int i = 0; i <= Steps; ++i)
    {
        const auto shown =
            text::ReadNumberWithUnit(ShownAt(record, static_cast<double>(i) / Steps));
        if (shown && !shown->unit.empty() &&
            (shortest.empty() || shown->unit.size() < shortest.size()))
            shortest = shown->unit;
    }
    return shortest;
}

/// "semitone" for "semitones" will do.
bool Abbreviates(const std::string& typed, const MString& unit)
{
    const MString text = MString::FromUTF8(typed);
    return unit.Mid(0, text.Length()) == text;
}

void CheckUnit(const MPluginParameterRecord& record, const std::string& typed)
{
    const std::string unit = BaseUnit(record);
    // "Cents" shows no unit, but a user may well write one.
    const MString expected = unit.empty() ? record.name : MString::FromUTF8(unit);
    if (typed.empty() || Abbreviates(typed, expected))
        return;
    throw Failure("the unit \"" + typed + "\" is not known here; give the number " +
                  (unit.empty() ? "alone" : "in " + unit));
}

/// The value of the parser; not a number if it reads none.
double Parse(const MPluginParameterRecord& record, const std::string& text)
{
    MPluginParameterRecord copy = record;
    const MString typed = MString::FromUTF8(text);
    if (copy.type == MParameterType::Int)
    {
        double number = std::numeric_limits<double>::quiet_NaN();
        typed.ReadDouble(number);
        return number;
    }
    copy.range.asFloat.value = std::numeric_limits<double>::quiet_NaN();
    copy.ParseValueText(typed);
    if (!std::isnan(copy.range.asFloat.value))
        return copy.range.asFloat.value;
    // The ends of a range may show words, such as "Disabled".
    for (const double end : {0.0, 1.0})
        if (typed == MString::FromUTF8(ShownAt(record, end)))
            return end == 0.0 ? record.range.asFloat.min : record.range.asFloat.max;
    return std::numeric_limits<double>::quiet_NaN();
}

MException OutOfRange(const MPluginParameterRecord& record)
{
    return Failure("it is outside the range of " + ShownAt(record, 0.0) + " to " +
                   ShownAt(record, 1.0));
}

void Assign(MPluginParameterRecord::FloatRange& range, double value,
            const MPluginParameterRecord& record)
{
    const double tolerance = RangeTolerance * (range.max - range.min);
    if (value < range.min - tolerance || value > range.max + tolerance)
        throw OutOfRange(record);
    range.value = std::clamp(value, range.min, range.max);
}

void Assign(MPluginParameterRecord::IntRange& range, double value,
            const MPluginParameterRecord& record)
{
    if (value != std::trunc(value))
        throw Failure("it takes whole numbers only");
    if (value < range.min || value > range.max)
        throw OutOfRange(record);
    range.value = static_cast<std::int32_t>(value);
}

} // namespace

std::string ShownAt(const MPluginParameterRecord& record, double value01)
{
    MPluginParameterRecord copy = record;
    copy.Set01(value01);
    return copy.GetValueText().ToUTF8();
}

void ReadParameterText(MPluginParameterRecord& record, const std::string& text)
{
    const auto typed = text::ReadNumberWithUnit(text);
    const double value = Parse(record, text);
    if (std::isnan(value))
        throw Failure("it is no value; one looks like \"" + ShownAt(record, 0.5) + "\"");
    if (typed)
        CheckUnit(record, typed->unit);
    if (record.type == MParameterType::Int)
        Assign(record.range.asInt, value, record);
    else
        Assign(record.range.asFloat, value, record);
}
