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
    const MString expected = unit.empty() ? value.GetName() : MString::FromUTF8(unit);
    if (typed.empty() || Abbreviates(typed, expected))
        return;
    throw Failure("the unit \"" + typed + "\" is not known here; give the number " +
                  (unit.empty() ? "alone" : "in " + unit));
}

/// Where the value of @p text lies; nothing if there is none in it.
std::optional<double> Parse(const PluginParameter& value, const std::string& text)
{
    const MString typed = MString::FromUTF8(text);
    // The ends of a range may show words, such as "Disabled".
    for (const double end : {0.0, 1.0})
        if (typed == MString::FromUTF8(value.GetTextAt(end)))
            return end;

    MAudioPlugin& plugin = *value.plugin;
    const double present = plugin.GetRestorableParameter(value.index);
    const double parsed = plugin.ParseParameterValueName(value.index, typed);
    if (parsed != present && parsed != value.Get01())
        return parsed;
    // The present value is the answer to unreadable texts, too. They follow it elsewhere.
    plugin.SetParameter(value.index, present < 0.5 ? 1.0 : 0.0, true);
    const bool isRead = plugin.ParseParameterValueName(value.index, typed) != value.Get01();
    plugin.SetParameter(value.index, present, true);
    return isRead ? std::optional(parsed) : std::nullopt;
}

/// All words that it shows, to choose from.
std::string ListWords(const PluginParameter& value)
{
    constexpr int Steps = 240; // meets each of 2 to 6, 9, 11, 13, 16 or 17 entries, and more
    std::string words, last;
    for (int i = 0; i <= Steps; ++i)
    {
        const std::string shown = value.GetTextAt(static_cast<double>(i) / Steps);
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
        if (value.GetType() == MAutomationType::Int && typed->number != std::trunc(typed->number))
            throw Failure("it takes whole numbers only");
    }
    if (*parsed < -RangeTolerance || *parsed > 1.0 + RangeTolerance)
        throw Failure("it is outside the range of " + value.GetTextAt(0.0) + " to " +
                      value.GetTextAt(1.0));
    value.Set01(std::clamp(*parsed, 0.0, 1.0));
}
