#include "effect/parameters/ParameterValues.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/values/Rounding.h"

namespace parametermappings
{

using Record = MPluginParameterRecord;
using Draft = ParameterRecordBase::Draft;

namespace
{

template <typename Number>
MString Formatted(const Record& record, Number value, const MString& unformatted)
{
    return record.format.IsEmpty() ? unformatted
                                   : MStringFormatter(record.format).Add(value).Result();
}

} // namespace

struct Float
{
    static constexpr MAutomationType Type = MAutomationType::Float;

    static double To01(const Record& from) noexcept
    {
        const Record::FloatRange& range = from.range.asFloat;
        const double x = (range.value - range.min) * (1.0 / (range.max - range.min));
        switch (from.law)
        {
        case MParameterLaw::Squared:
            return std::sqrt(x);
        case MParameterLaw::FourthPower:
            return std::pow(x, 0.25);
        case MParameterLaw::Linear:
            break;
        }
        return x;
    }

    static void From01(Record& to, double value01) noexcept
    {
        Record::FloatRange& range = to.range.asFloat;
        double x = value01;
        if (to.law == MParameterLaw::Squared)
            x = value01 * value01;
        else if (to.law == MParameterLaw::FourthPower)
            x = std::pow(value01, 4.0);
        (to.Has(Record::Modulated) ? range.alternate : range.value) =
            x * (range.max - range.min) + range.min;
    }

    static double GetDefault01(const Record& record) noexcept
    {
        const Record::FloatRange& range = record.range.asFloat;
        return (range.defaultValue - range.min) / (range.max - range.min);
    }

    static MString GetText(const Record& from)
    {
        const double value = from.range.asFloat.value;
        return Formatted(from, value, MString::FromDouble(value, 6));
    }

    static void Parse(Record& to, const MString& text)
    {
        double value = 0.0;
        if (text.ReadDouble(value))
            to.range.asFloat.value = value;
    }

    static void CopyRange(const Record& from, Draft& to) noexcept
    {
        const Record::FloatRange& range = from.range.asFloat;
        const double value = range.value;
        to.record.range.asFloat = {range.min, range.max, range.defaultValue, value, value, value};
    }
};

struct Int
{
    static constexpr MAutomationType Type = MAutomationType::Int;

    static double Place(const Record::IntRange& range, std::int32_t value) noexcept
    {
        return (static_cast<double>(value) - range.min) /
               (static_cast<double>(range.max) - range.min);
    }

    static double ValueAt(const Record::IntRange& range, double value01) noexcept
    {
        return (static_cast<double>(range.max) - range.min) * value01 + range.min;
    }

    static double To01(const Record& from) noexcept
    {
        return Place(from.range.asInt, from.range.asInt.value);
    }

    static void From01(Record& to, double value01) noexcept
    {
        Record::IntRange& range = to.range.asInt;
        const double value = ValueAt(range, value01);
        if (value > -2147483649.0 && value < 2147483648.0)
            (to.Has(Record::Modulated) ? range.alternate : range.value) =
                static_cast<std::int32_t>(value);
    }

    static double ToRestorable01(const Record& from) noexcept
    {
        const Record::IntRange& range = from.range.asInt;
        const std::int32_t value = range.value;
        const auto mapsBack = [&](double x) { return std::trunc(ValueAt(range, x)) == value; };
        const double x = Place(range, value);
        const auto single = static_cast<float>(x);
        if (mapsBack(x) && mapsBack(single))
            return x;
        // Away from the zero, toward which values are cut.
        constexpr float Infinity = std::numeric_limits<float>::infinity();
        const float moved = std::nextafter(single, value < 0 ? -Infinity : Infinity);
        return mapsBack(moved) ? moved : x; // a range may be too wide for 32 bits
    }

    static double GetDefault01(const Record& record) noexcept
    {
        return Place(record.range.asInt, record.range.asInt.defaultValue);
    }

    static MString GetText(const Record& from)
    {
        const std::int32_t value = from.range.asInt.value;
        return Formatted(from, value, MString::FromInteger(value));
    }

    static void Parse(Record& to, const MString& text)
    {
        double value = 0.0;
        if (text.ReadDouble(value))
            to.range.asInt.value = Truncated<std::int32_t>(value);
    }

    static void CopyRange(const Record& from, Draft& to) noexcept
    {
        const Record::IntRange& range = from.range.asInt;
        const std::int32_t value = range.value;
        to.record.range.asInt = {range.min, range.max, range.defaultValue, value, value};
    }
};

struct Enum
{
    static constexpr MAutomationType Type = MAutomationType::Enum;

    static double To01(const Record& from) noexcept
    {
        const Record::EnumRange& range = from.range.asEnum;
        return static_cast<double>(range.value) / (range.count - 1);
    }

    static void From01(Record& to, double value01) noexcept
    {
        Record::EnumRange& range = to.range.asEnum;
        const auto index = Truncated<std::int32_t>(RoundHalfUp(range.count * value01 - 0.5));
        range.value = std::clamp(index, 0, range.count - 1);
    }

    static double GetDefault01(const Record& record) noexcept
    {
        const Record::EnumRange& range = record.range.asEnum;
        return static_cast<double>(range.defaultValue) / (range.count - 1);
    }

    static MString GetText(const Record& from)
    {
        return from.range.asEnum.names[from.range.asEnum.value];
    }

    static void Parse(Record& to, const MString& text)
    {
        Record::EnumRange& range = to.range.asEnum;
        for (std::int32_t i = 0; i < range.count; ++i)
            if (text == range.names[i])
                range.value = i;
    }

    static void CopyRange(const Record& from, Draft& to) noexcept
    {
        const Record::EnumRange& range = from.range.asEnum;
        const std::int32_t value = range.value;
        to.record.range.asEnum = {range.names, range.count, range.defaultValue, value, false};
    }
};

namespace
{

/// What is common to values that are on or off: "1" and "0".
template <typename Mapping>
struct Switch
{
    static constexpr MAutomationType Type = MAutomationType::Bool;

    static MString GetText(const Record& from) { return Mapping::To01(from) != 0.0 ? "1" : "0"; }

    static void Parse(Record& to, const MString& text)
    {
        double value = 0.0;
        if (text.ReadDouble(value))
            Mapping::From01(to, value);
    }
};

} // namespace

struct Bool : Switch<Bool>
{
    static double To01(const Record& from) noexcept { return from.range.asBool.value ? 1.0 : 0.0; }

    static void From01(Record& to, double value01) noexcept
    {
        to.range.asBool.value = value01 >= 0.5;
    }

    static double GetDefault01(const Record& record) noexcept
    {
        return record.range.asBool.defaultValue ? 1.0 : 0.0;
    }

    static void CopyRange(const Record& from, Draft& to) noexcept
    {
        to.record.range.asBool = {from.range.asBool.defaultValue, bool{from.range.asBool.value}};
    }
};

struct Group : Switch<Group>
{
    static double To01(const Record& from) noexcept
    {
        std::uint8_t* const byte = from.range.elsewhere;
        return byte != nullptr && std::atomic_ref(*byte).load(std::memory_order_relaxed) != 0 ? 1.0
                                                                                              : 0.0;
    }

    static void From01(Record& to, double value01) noexcept
    {
        if (std::uint8_t* const byte = to.range.elsewhere)
            std::atomic_ref(*byte).store(value01 >= 0.5 ? 1 : 0, std::memory_order_relaxed);
    }

    static double GetDefault01(const Record& /*record*/) noexcept { return 0.0; }

    static void CopyRange(const Record& from, Draft& to) noexcept
    {
        to.byte = To01(from) != 0.0 ? 1 : 0;
        to.record.range.elsewhere = &to.byte;
    }
};

} // namespace parametermappings

template <typename Base, typename Mapping>
MAutomationType ParameterValueT<Base, Mapping>::GetParameterType(int /*index*/) const
{
    return Mapping::Type;
}

template <typename Base, typename Mapping>
double ParameterValueT<Base, Mapping>::GetParameterDefaultValue(int index) const
{
    return this->Has(index) ? Mapping::GetDefault01(*this->record) : 0.0;
}

template <typename Base, typename Mapping>
double ParameterValueT<Base, Mapping>::To01(const MPluginParameterRecord& from) const noexcept
{
    return Mapping::To01(from);
}

template <typename Base, typename Mapping>
void ParameterValueT<Base, Mapping>::From01(MPluginParameterRecord& to,
                                            double value01) const noexcept
{
    Mapping::From01(to, value01);
}

template <typename Base, typename Mapping>
double
ParameterValueT<Base, Mapping>::ToRestorable01(const MPluginParameterRecord& from) const noexcept
{
    if constexpr (requires { Mapping::ToRestorable01(from); })
        return Mapping::ToRestorable01(from);
    else
        return Mapping::To01(from);
}

template <typename Base, typename Mapping>
MString ParameterValueT<Base, Mapping>::GetPlainText(const MPluginParameterRecord& from) const
{
    return Mapping::GetText(from);
}

template <typename Base, typename Mapping>
void ParameterValueT<Base, Mapping>::ParsePlainText(MPluginParameterRecord& to,
                                                    const MString& text) const
{
    Mapping::Parse(to, text);
}

template <typename Base, typename Mapping>
void ParameterValueT<Base, Mapping>::CopyRange(Draft& to) const noexcept
{
    Mapping::CopyRange(*this->record, to);
}

template class ParameterValueT<ParameterBase, parametermappings::Float>;
template class ParameterValueT<ParameterBase, parametermappings::Int>;
template class ParameterValueT<ParameterBase, parametermappings::Enum>;
template class ParameterValueT<ParameterBase, parametermappings::Bool>;
template class ParameterValueT<ParameterBase, parametermappings::Group>;
template class ParameterValueT<ParameterBaseCustom, parametermappings::Float>;
template class ParameterValueT<ParameterBaseCustom, parametermappings::Bool>;
