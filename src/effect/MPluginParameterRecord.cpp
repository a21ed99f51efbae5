#include "effect/MPluginParameterRecord.h"

#include <algorithm>
#include <cmath>

#include "foundation/values/MRandom.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

/// Floor, plus 1 from @p threshold on.
double RoundFrom(double value, double threshold) noexcept
{
    const double below = std::floor(value);
    return value - below >= threshold ? below + 1.0 : below;
}

/// Any text as a value of @p min to @p max; beyond the range of an int counts as its end.
std::int32_t ReadInt(const MString& text, std::int32_t min, std::int32_t max) noexcept
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(text.ToInteger(), min, max));
}

/// @p value moved by up to @p span either way, one draw.
double Moved(double value, double span) noexcept
{
    return value + span * 2.0 * MRandom::DrawUniform() - span;
}

} // namespace

void MPluginParameterRecord::SetFloat(const MString& parameterName, double min, double max,
                                      double defaultValue)
{
    type = MParameterType::Float;
    name = key = parameterName;
    range.asFloat = {min, max, defaultValue, defaultValue, defaultValue, defaultValue};
}

void MPluginParameterRecord::SetInt(const MString& parameterName, std::int32_t min,
                                    std::int32_t max, std::int32_t defaultValue)
{
    type = MParameterType::Int;
    name = key = parameterName;
    range.asInt = {min, max, defaultValue, defaultValue, defaultValue};
}

double MPluginParameterRecord::GetNumber() const noexcept
{
    if (type == MParameterType::Int)
        return range.asInt.value;
    return type == MParameterType::Float ? double{range.asFloat.value} : 0.0;
}

void MPluginParameterRecord::SetNumber(double number) noexcept
{
    if (type == MParameterType::Int)
        range.asInt.value = static_cast<std::int32_t>(number);
    else if (type == MParameterType::Float)
        range.asFloat.value = number;
}

double MPluginParameterRecord::Effective() const noexcept
{
    if (type == MParameterType::Int)
        return Has(Modulated) ? range.asInt.alternate : range.asInt.value;
    return Has(Modulated) ? range.asFloat.alternate : range.asFloat.value;
}

void MPluginParameterRecord::SetModulated(bool on) noexcept
{
    // By way of plain numbers: a copy of the object itself would be no single access.
    if (type == MParameterType::Float)
        range.asFloat.alternate = double{range.asFloat.value};
    else if (type == MParameterType::Int)
        range.asInt.alternate = std::int32_t{range.asInt.value};
    flags = on ? flags | Modulated : flags & ~Modulated;
}

void MPluginParameterRecord::Store(MXMLItem& item) const
{
    MString fullKey = "parameter";
    fullKey.Append(key);
    switch (type)
    {
    case MParameterType::Float:
        item.SetAttribute(fullKey, range.asFloat.value);
        break;
    case MParameterType::Int:
        item.SetAttribute(fullKey, range.asInt.value);
        break;
    case MParameterType::Enum:
        fullKey.Append("Enum");
        item.SetAttribute(fullKey, range.asEnum.names[range.asEnum.value]);
        break;
    case MParameterType::Bool:
        item.SetAttribute(fullKey, range.asBool.value ? 1 : 0);
        break;
    case MParameterType::BoolElsewhere:
        if (range.elsewhere != nullptr)
            item.SetAttribute(fullKey, int{*range.elsewhere});
        break;
    case MParameterType::Text:
        item.SetAttribute(fullKey, text);
        break;
    case MParameterType::Empty:
    case MParameterType::Heading:
        break;
    }
}

void MPluginParameterRecord::Load(MXMLItem& item)
{
    MString fullKey = "parameter";
    fullKey.Append(key);
    const auto read = [&](const MString& defaultText)
    { return item.GetAttribute(fullKey, defaultText); };
    const MString* const stored = item.FindAttribute(fullKey);

    switch (type)
    {
    case MParameterType::Float:
    {
        FloatRange& r = range.asFloat;
        const double number =
            (stored != nullptr ? *stored : MString::FromDouble(r.defaultValue, 6)).ToDouble();
        r.value = std::clamp(number, r.min, r.max);
        break;
    }
    case MParameterType::Int:
    {
        IntRange& r = range.asInt;
        r.value = ReadInt(read(MString::FromInteger(r.defaultValue)), r.min, r.max);
        break;
    }
    case MParameterType::Enum:
    {
        EnumRange& r = range.asEnum;
        MString nameKey = fullKey;
        nameKey.Append("Enum");
        r.loadedByName = item.HasAttribute(nameKey);
        if (!r.loadedByName)
        {
            r.value = ReadInt(read(MString::FromInteger(r.defaultValue)), 0, r.count - 1);
            break;
        }
        r.value = r.defaultValue;
        for (std::int32_t i = 0; i < r.count; ++i)
            if (item.GetAttribute() == r.names[i])
                r.value = i;
        break;
    }
    case MParameterType::Bool:
        range.asBool.value =
            read(MString::FromInteger(range.asBool.defaultValue ? 1 : 0)).ToInteger() != 0;
        break;
    case MParameterType::BoolElsewhere:
        if (range.elsewhere != nullptr)
            *range.elsewhere = read("0").ToInteger() != 0 ? 1 : 0;
        break;
    case MParameterType::Text:
        text = read({});
        break;
    case MParameterType::Empty:
    case MParameterType::Heading:
        break;
    }
}

void MPluginParameterRecord::Randomize(double amount) noexcept
{
    if (!Has(Randomisable))
        return;
    switch (type)
    {
    case MParameterType::Float:
    {
        FloatRange& r = range.asFloat;
        r.value = std::clamp(Moved(r.value, (r.max - r.min) * amount), r.min, r.max);
        break;
    }
    case MParameterType::Int:
    {
        IntRange& r = range.asInt;
        const double span = std::trunc((static_cast<double>(r.max) - r.min) * amount);
        const double moved = r.value + RoundFrom(Moved(0.0, span), std::nextafter(0.5, 1.0));
        r.value = static_cast<std::int32_t>(std::clamp<double>(moved, r.min, r.max));
        break;
    }
    case MParameterType::Enum:
    {
        EnumRange& r = range.asEnum;
        const double span = std::trunc(r.count * amount);
        const double moved = r.value + RoundFrom(Moved(0.0, span), std::nextafter(0.5, 1.0));
        r.value = static_cast<std::int32_t>(std::clamp<double>(moved, 0.0, r.count - 1));
        break;
    }
    case MParameterType::Bool:
        if (amount >= 0.5 - 1e-50)
            range.asBool.value = MRandom::DrawBool();
        break;
    case MParameterType::BoolElsewhere:
        if (amount >= 0.5 - 1e-50 && range.elsewhere != nullptr)
            *range.elsewhere = MRandom::DrawBool() ? 1 : 0;
        break;
    case MParameterType::Empty:
    case MParameterType::Heading:
    case MParameterType::Text:
        break;
    }
}
