#include "foundation/values/MValueNumber.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <limits>
#include <type_traits>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/values/NumberReading.h"
#include "foundation/values/Rounding.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

std::int64_t SaturatedSum(std::int64_t a, std::int64_t b) noexcept
{
    using Range = std::numeric_limits<std::int64_t>;
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b > 0 ? Range::max() : Range::min();
}

std::int64_t SaturatedProduct(std::int64_t a, std::int64_t b) noexcept
{
    using Range = std::numeric_limits<std::int64_t>;
    std::int64_t product = 0;
    if (!__builtin_mul_overflow(a, b, &product))
        return product;
    return (a > 0) == (b > 0) ? Range::max() : Range::min();
}

/// a - b, which needs one bit more than the two.
template <std::integral Whole>
double Difference(Whole a, Whole b) noexcept
{
    const auto distance = [](std::int64_t high, std::int64_t low) {
        return static_cast<double>(static_cast<std::uint64_t>(high) -
                                   static_cast<std::uint64_t>(low));
    };
    return a >= b ? distance(a, b) : -distance(b, a);
}

double Difference(double a, double b) noexcept
{
    return a - b;
}

/// What numbers are read as before they are cut to their type.
template <bool IsIntegral>
using Wide = std::conditional_t<IsIntegral, std::int64_t, double>;

bool IsUsable(const MString& format)
{
    try
    {
        const MStringFormatter trial(format);
        return true;
    }
    catch (const MException&)
    {
        return false;
    }
}

} // namespace

template <typename Stored, typename Computed, bool IsIntegral>
MValueNumber<Stored, Computed, IsIntegral>::MValueNumber(Binding binding, Computed lowest,
                                                         Computed highest)
    : local(binding.GetLocal()),
      variable(binding.GetVariable() != nullptr ? binding.GetVariable() : &local),
      min(lowest),
      max(highest)
{
    TakeDefault();
    const double thousandth = Difference(max, min) * 0.001;
    if constexpr (IsIntegral)
    {
        inc = std::max<Computed>(Truncated<Computed>(thousandth), 1);
        maxInc = Saturated<Computed>(SaturatedProduct(inc, 10));
    }
    else
    {
        inc = thousandth > 0.0 ? thousandth : 1.0;
        maxInc = inc * 10.0;
    }
}

template <typename Stored, typename Computed, bool IsIntegral>
MString MValueNumber<Stored, Computed, IsIntegral>::GetAsString() const
{
    if constexpr (IsIntegral)
        return MString::FromInteger(Get(), 10, 0, u'0');
    else
        return MString::FromDouble(Get(), 6);
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::SetFromString(const MString& text)
{
    Wide<IsIntegral> number{};
    numberreading::Read(text, number);
    Put(Saturated<Computed>(number));
}

template <typename Stored, typename Computed, bool IsIntegral>
bool MValueNumber<Stored, Computed, IsIntegral>::SetDefault()
{
    return Set(defaultValue);
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::Store(MXMLItem& item) const
{
    if constexpr (IsIntegral)
        item.SetAttribute(GetId(), MString::FromInteger(Get()));
    else
        item.SetAttribute(GetId(), Get());
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::Load(MXMLItem& item)
{
    if (!item.HasAttribute(GetId()))
    {
        SetDefault();
        return;
    }
    Wide<IsIntegral> number{};
    if (numberreading::Scan("{0}", item.GetAttribute(), number))
        Put(Saturated<Computed>(number));
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::InitFromXML(MXMLItem& item)
{
    const auto read = [&item](const MString& name, Computed& target)
    {
        Wide<IsIntegral> number{};
        if (!item.HasAttribute(name) || !numberreading::Read(item.GetAttribute(), number))
            return false;
        target = Saturated<Computed>(number);
        return true;
    };

    MStorable::InitFromXML(item);
    read("min", min);
    read("max", max);
    const bool hasDefault = read("default", defaultValue);
    if (hasDefault)
        Put(defaultValue);
    if (Computed number{}; read("value", number))
    {
        Put(number);
        if (!hasDefault)
            defaultValue = number;
    }
    read("inc", inc);
    if (!read("maxinc", maxInc))
        maxInc = std::max(inc, maxInc);
    SetFormat(item.GetAttribute("format", format));
}

template <typename Stored, typename Computed, bool IsIntegral>
MValueContent MValueNumber<Stored, Computed, IsIntegral>::GetContentFrom01(double position) const
{
    return {.text = TextOf(Limited(From01(position)))};
}

template <typename Stored, typename Computed, bool IsIntegral>
bool MValueNumber<Stored, Computed, IsIntegral>::ParseDisplayText(const MString& text)
{
    Wide<IsIntegral> typed{};
    if (!numberreading::Scan(format, text, typed))
        return false;
    const std::optional<Computed> meant = FromTyped(Saturated<Computed>(typed));
    return meant && Set(*meant);
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::Limit()
{
    PutLimited(Limited(Get()));
}

template <typename Stored, typename Computed, bool IsIntegral>
bool MValueNumber<Stored, Computed, IsIntegral>::StepScaled(int steps, double exponent)
{
    const double factor = std::exp2(exponent);
    if constexpr (IsIntegral)
    {
        const std::int64_t size =
            std::min<std::int64_t>(SaturatedProduct(Truncated<std::int64_t>(factor), inc), maxInc);
        return Set(Saturated<Computed>(SaturatedSum(Get(), SaturatedProduct(size, steps))));
    }
    else
        return Set(Get() + std::min(inc * factor, maxInc) * steps);
}

template <typename Stored, typename Computed, bool IsIntegral>
bool MValueNumber<Stored, Computed, IsIntegral>::Step(int steps)
{
    if constexpr (IsIntegral)
    {
        const int direction = (steps > 0) - (steps < 0);
        return Set(Saturated<Computed>(SaturatedSum(Get(), SaturatedProduct(inc, direction))));
    }
    else
        return Set(Get() + steps * inc);
}

template <typename Stored, typename Computed, bool IsIntegral>
double MValueNumber<Stored, Computed, IsIntegral>::Get01() const
{
    if (min == max)
        return 0.0;
    const double position = Difference(Get(), min) / Difference(max, min);
    return std::isnan(position) ? 0.0 : std::clamp(position, 0.0, 1.0);
}

template <typename Stored, typename Computed, bool IsIntegral>
bool MValueNumber<Stored, Computed, IsIntegral>::Set01(double position)
{
    return !std::isnan(position) && Set(From01(position));
}

template <typename Stored, typename Computed, bool IsIntegral>
int MValueNumber<Stored, Computed, IsIntegral>::GetItemCount() const
{
    double count = 0.0;
    if constexpr (IsIntegral)
        count = Difference(max, min) + 1.0;
    else
        count = std::floor(max) - std::ceil(min) + 1.0;
    return std::max(Truncated<int>(count), 0);
}

template <typename Stored, typename Computed, bool IsIntegral>
bool MValueNumber<Stored, Computed, IsIntegral>::Set(Computed newValue)
{
    if constexpr (!IsIntegral)
        if (std::isnan(newValue))
            return false;
    const Stored before = *variable;
    Put(Limited(newValue)); // at once, so that another thread never reads more than the range
    return *variable != before;
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::SetSteps(Computed newInc,
                                                          Computed newMaxInc) noexcept
{
    inc = newInc;
    maxInc = newMaxInc;
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::SetFormat(const MString& newFormat)
{
    if (IsUsable(newFormat))
        format = newFormat;
}

template <typename Stored, typename Computed, bool IsIntegral>
MString MValueNumber<Stored, Computed, IsIntegral>::TextOf(Computed value) const
{
    MStringFormatter formatter(format);
    if constexpr (IsIntegral)
        formatter.Add(std::int64_t{value});
    else
        formatter.Add(value);
    return formatter.Result();
}

template <typename Stored, typename Computed, bool IsIntegral>
Computed MValueNumber<Stored, Computed, IsIntegral>::From01(double position) const
{
    const double range = Difference(max, min);
    if constexpr (IsIntegral)
    {
        if (min >= max)
            return min;
        const double offset = std::max(range * position + 0.5, 0.0);
        if (offset >= range) // as a double the range may lie beyond what it is
            return max;
        // Beyond the signed range on the way, but not at its end.
        return static_cast<Computed>(static_cast<std::uint64_t>(min) +
                                     Truncated<std::uint64_t>(offset));
    }
    else
        return range * position + min;
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::Put(Computed newValue) noexcept
{
    *variable = Saturated<Stored>(newValue);
    changed = true;
}

template <typename Stored, typename Computed, bool IsIntegral>
Computed MValueNumber<Stored, Computed, IsIntegral>::Clamped(Computed value) const noexcept
{
    if constexpr (!IsIntegral)
        if (std::isnan(value))
            value = 0.0;
    // In this order, so that the lower end counts where the ends are the wrong way round.
    if (value > max)
        value = max;
    return value < min ? min : value;
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::PutLimited(Computed limited) noexcept
{
    // Compared as stored, so that an end that has to be rounded is not written forever.
    if (Saturated<Stored>(limited) != *variable)
        Put(limited);
}

template <typename Stored, typename Computed, bool IsIntegral>
void MValueNumber<Stored, Computed, IsIntegral>::TakeDefault() noexcept
{
    PutLimited(Clamped(Get()));
    defaultValue = Get();
}

template class MValueNumber<double, double, false>;
template class MValueNumber<float, double, false>;
template class MValueNumber<std::int32_t, std::int32_t, true>;
template class MValueNumber<std::int16_t, std::int32_t, true>;
template class MValueNumber<std::int64_t, std::int64_t, true>;
