#include "foundation/values/ValueTexts.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/values/Rounding.h"

namespace
{

constexpr double LeastMagnitude = 1e-50; ///< what is below counts as zero

bool IsZero(double value) noexcept
{
    return std::abs(value) < LeastMagnitude;
}

std::int64_t RoundedInteger(double value) noexcept
{
    return Truncated<std::int64_t>(RoundHalfUp(value));
}

MString DegreeSign()
{
    return MString::FromCharacter(u'\u00B0');
}

MString GainBy(double gain, const char* fineFormat, const char* coarseFormat)
{
    if (IsZero(gain))
        return "silence";
    const double decibels = 20.0 * std::log10(gain);
    return MStringFormatter(std::abs(decibels) < 10.0 ? fineFormat : coarseFormat)
        .Add(decibels)
        .Result();
}

MString Trimmed(const MString& text)
{
    const auto isBlank = [&text](int index) { return text.CharAt(index) <= u' '; };
    int start = 0;
    int end = text.Length();
    while (start < end && isBlank(start))
        ++start;
    while (end > start && isBlank(end - 1))
        --end;
    return text.Mid(start, end - start);
}

/// A number with nothing behind it.
bool ReadPlainNumber(const MString& text, double& number)
{
    constexpr std::u16string_view Allowed = u"0123456789+-.eE \t";
    for (int i = 0; i < text.Length(); ++i)
        if (Allowed.find(text.CharAt(i)) == std::u16string_view::npos)
            return false;
    return text.ReadDouble(number);
}

/// -1 if there is none.
int FindShape(const MString& name, valuetexts::ShapeNames names)
{
    for (int index = 0; index < valuetexts::ShapeCount; ++index)
        if (name == names(index))
            return index;
    return -1;
}

/// "30% Sine".
struct ShapeShare
{
    double percents = -1.0;
    int index = -1;

    bool Parse(const MString& text, valuetexts::ShapeNames names)
    {
        const int sign = text.Find(u'%');
        index = FindShape(Trimmed(text.Mid(sign + 1, text.Length())), names);
        return sign > 0 && index >= 0 && ReadPlainNumber(text.Mid(0, sign), percents) &&
               percents >= 0.0;
    }
};

} // namespace

namespace valuetexts
{

MString Gain(double gain)
{
    return GainBy(gain, "{0;.2} dB", "{0;.1} dB");
}

MString GainWithoutUnit(double gain)
{
    return GainBy(gain, "{0;.2}", "{0;.1}");
}

MString Percents(double fraction)
{
    return MStringFormatter(std::abs(fraction) < 0.01 ? "{0.2}%" : "{0.1}%")
        .Add(fraction * 100.0)
        .Result();
}

MString Frequency(double hz, const MString& separator)
{
    const double magnitude = std::abs(hz);
    if (magnitude < 1e-5)
        return MStringFormatter("0{0}Hz").Add(separator).Result();
    if (magnitude >= 10000.0)
        return MStringFormatter("{0;.1}{1}kHz").Add(hz * 0.001).Add(separator).Result();
    if (magnitude >= 100.0)
        return MStringFormatter("{0}{1}Hz").Add(RoundedInteger(hz)).Add(separator).Result();
    const char* const format = magnitude < 1.0    ? "{0;.4}{1}Hz"
                               : magnitude < 10.0 ? "{0;.2}{1}Hz"
                                                  : "{0;.1}{1}Hz";
    return MStringFormatter(format).Add(hz).Add(separator).Result();
}

MString Milliseconds(double seconds)
{
    if (IsZero(seconds))
        return "0 ms";
    const double magnitude = std::abs(seconds);
    const double milliseconds = seconds * 1000.0;
    if (magnitude >= 0.01)
        return MStringFormatter("{0} ms").Add(RoundedInteger(milliseconds)).Result();
    const char* const format = magnitude < 0.0001  ? "{0;.3} ms"
                               : magnitude < 0.001 ? "{0;.2} ms"
                                                   : "{0;.1} ms";
    return MStringFormatter(format).Add(milliseconds).Result();
}

MString Pan(double position)
{
    if (IsZero(position))
        return "center";
    return MStringFormatter(position > 0.0 ? "{0}% right" : "{0}% left")
        .Add(Truncated<std::int64_t>(std::abs(position) * 100.0))
        .Result();
}

MString Degrees(double turns)
{
    if (IsZero(turns))
        return MStringFormatter("0{0} (0%)").Add(DegreeSign()).Result();
    return MStringFormatter("{0}{1} ({2.1}%)")
        .Add(RoundedInteger(turns * 360.0))
        .Add(DegreeSign())
        .Add(turns * 100.0)
        .Result();
}

ShapePosition SplitShapePosition(double position) noexcept
{
    constexpr int Last = ShapeCount - 1;
    if (!(position < Last)) // not a number, too
        return {Last - 1, 1.0};
    if (position <= 0.0)
        return {0, 0.0};
    const int index = static_cast<int>(position);
    return {index, position - index};
}

MString Shape(double position, ShapeNames names)
{
    const ShapePosition place = SplitShapePosition(position);
    const int percents = static_cast<int>(RoundHalfUp(place.fraction * 100.0));
    if (percents == 0)
        return names(place.index);
    if (percents == 100)
        return names(place.index + 1);
    return MStringFormatter("{0}% {1}, {2}% {3}")
        .Add(100 - percents)
        .Add(names(place.index))
        .Add(percents)
        .Add(names(place.index + 1))
        .Result();
}

bool ParseShape(const MString& text, ShapeNames names, double& position)
{
    if (const int index = FindShape(Trimmed(text), names); index >= 0)
    {
        position = index;
        return true;
    }
    const int comma = text.Find(u',');
    if (comma < 0)
        return ReadPlainNumber(text, position);

    ShapeShare first;
    ShapeShare second;
    if (!first.Parse(text.Mid(0, comma), names) ||
        !second.Parse(text.Mid(comma + 1, text.Length()), names))
        return false;
    const double sum = first.percents + second.percents;
    if (std::abs(first.index - second.index) != 1 || std::abs(sum - 100.0) > 1.0)
        return false;
    position = (first.index * first.percents + second.index * second.percents) / sum;
    return true;
}

MString Clock(std::int64_t seconds)
{
    const std::int64_t count = std::max<std::int64_t>(seconds, 0);
    return MStringFormatter("{0}:{1;02}:{2;02}")
        .Add(count / 3600)
        .Add(count / 60 % 60)
        .Add(count % 60)
        .Result();
}

MString Version(std::uint32_t version)
{
    MStringFormatter formatter("{0}.{1}.{2}.{3}");
    for (int shift = 24; shift >= 0; shift -= 8)
        formatter.Add(static_cast<int>(version >> shift & 0xFFu));
    return formatter.Result();
}

} // namespace valuetexts
