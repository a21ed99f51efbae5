#include "tools/render/ParameterText.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "tools/render/Failure.h"
#include "tools/render/PluginParameter.h"
#include "tools/render/Text.h"

namespace
{

/// Positions that close outside the range are rounding of their text.
constexpr double RangeTolerance = 1e-9;

/// Meet each of 2 to 6, 9, 11, 13, 16 or 17 entries, and more.
constexpr int FineSteps = 240;

/// Not so for a shape, which has a name at both ends.
bool ShowsNumbers(const PluginParameter& value)
{
    return text::ReadNumberWithUnit(value.GetTextAt(0.0)) ||
           text::ReadNumberWithUnit(value.GetTextAt(1.0));
}

/// The unit in which the parser takes numbers. A display may scale it ("kHz" for "Hz"), so it is
/// the shortest of those shown in the range; empty if none is.
std::string BaseUnit(const PluginParameter& value)
{
    constexpr int Steps = 8;
    std::string shortest;
    for (int i = 0; i <= Steps; ++i)
    {
        const auto shown =
            text::ReadNumberWithUnit(value.GetTextAt(static_cast<double>(i) / Steps));
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

void CheckUnit(const PluginParameter& value, const std::string& typed)
{
    const std::string unit = BaseUnit(value);
    // "Cents" shows no unit, but a user may well write one.
    const MString expected = MString::FromUTF8(unit.empty() ? value.GetName() : unit);
    if (typed.empty() || Abbreviates(typed, expected) ||
        (value.plugin->CutsTexts() && Abbreviates(unit, MString::FromUTF8(typed))))
        return;
    throw Failure("the unit \"" + typed + "\" is not known here; give the number " +
                  (unit.empty() ? "alone" : "in " + unit));
}

/// Parameters that count, but do not say so, show no fractions anywhere.
bool TakesWholeNumbers(const PluginParameter& value)
{
    if (value.plugin->CountSteps(value.index) > 0)
        return true;
    const auto isFraction = [&value](double place)
    { return value.GetTextAt(place).find('.') != std::string::npos; };
    constexpr int Steps = 16;
    for (int i = 0; i <= Steps; ++i)
        if (isFraction(static_cast<double>(i) / Steps))
            return false;
    constexpr double Short = 0.001; // of times, only the shortest show decimals
    return !isFraction(Short);
}

/// The number that is shown at @p value01, with a "k" in front of its unit worked in.
std::optional<double> ShownNumber(const PluginParameter& value, double value01)
{
    const auto shown = text::ReadNumberWithUnit(value.GetTextAt(value01));
    if (!shown)
        return std::nullopt;
    return shown->number * (shown->unit.starts_with('k') ? 1000.0 : 1.0);
}

/// Halves the way from @p low to @p high, which show numbers on either side of @p wanted.
double Narrow(const PluginParameter& value, double wanted, double low, double high)
{
    constexpr int Halvings = 40;
    const bool isRising = ShownNumber(value, low) < wanted;
    for (int i = 0; i < Halvings; ++i)
    {
        const double middle = (low + high) / 2.0;
        const auto shown = ShownNumber(value, middle);
        if (!shown || *shown == wanted)
            return middle;
        ((*shown < wanted) == isRising ? low : high) = middle;
    }
    return high;
}

/// Parse for plugins that read no texts: looks for the place where @p text, or its number, shows.
std::optional<double> Search(const PluginParameter& value, const std::string& text)
{
    const MString typed = MString::FromUTF8(text);
    const auto number = text::ReadNumberWithUnit(text);
    std::optional<double> before;
    for (int i = 0; i <= FineSteps; ++i)
    {
        const double place = static_cast<double>(i) / FineSteps;
        const auto here = number ? ShownNumber(value, place) : std::nullopt;
        if (typed == MString::FromUTF8(value.GetTextAt(place)) || (here && here == number->number))
            return place;
        if (here && before && (*before < number->number) != (*here < number->number))
            return Narrow(value, number->number, static_cast<double>(i - 1) / FineSteps, place);
        before = here;
    }
    return std::nullopt;
}

/// Where the value of @p text lies; nothing if there is none in it.
std::optional<double> Parse(const PluginParameter& value, const std::string& text)
{
    const MString typed = MString::FromUTF8(text);
    // The ends of a range may show words, such as "Disabled".
    for (const double end : {0.0, 1.0})
        if (typed == MString::FromUTF8(value.GetTextAt(end)))
            return end;

    const double present = value.Get01();
    const std::optional<double> parsed = value.Parse(text);
    if (!parsed)
        return Search(value, text);
    if (*parsed != present)
        return parsed;
    // The present value is the answer to unreadable texts, too. They follow it elsewhere.
    value.Set01(present < 0.5 ? 1.0 : 0.0);
    const bool isRead = value.Parse(text) != value.Get01();
    value.Set01(present);
    return isRead ? parsed : std::nullopt;
}

/// All words that it shows, to choose from.
std::string ListWords(const PluginParameter& value)
{
    std::string words, last;
    for (int i = 0; i <= FineSteps; ++i)
    {
        const std::string shown = value.GetTextAt(static_cast<double>(i) / FineSteps);
        if (shown != last && !text::ReadNumberWithUnit(shown))
            words += (words.empty() ? "" : ", ") + shown;
        last = shown;
    }
    return words;
}

MException NoValue(const PluginParameter& value)
{
    std::string what = "it is no value; one looks like \"" + value.GetTextAt(0.5) + '"';
    if (!ShowsNumbers(value))
        what += "; there are " + ListWords(value);
    return Failure(what);
}

} // namespace

void ReadParameterText(const PluginParameter& value, const std::string& text)
{
    const std::optional<double> parsed = Parse(value, text);
    if (!parsed || std::isnan(*parsed))
        throw NoValue(value);
    if (const auto typed = text::ReadNumberWithUnit(text); typed && ShowsNumbers(value))
    {
        CheckUnit(value, typed->unit);
        if (TakesWholeNumbers(value) && typed->number != std::trunc(typed->number))
            throw Failure("it takes whole numbers only");
    }
    if (*parsed < -RangeTolerance || *parsed > 1.0 + RangeTolerance)
        throw Failure("it is outside the range of " + value.GetTextAt(0.0) + " to " +
                      value.GetTextAt(1.0));
    value.Set01(std::clamp(*parsed, 0.0, 1.0));
}
