#include "tools/render/OptionTexts.h"

#include <algorithm>
#include <utility>

#include "tools/render/Failure.h"
#include "tools/render/Text.h"

namespace
{

/// What stands before and behind the first @p separator; both are to be there.
std::optional<std::pair<std::string, std::string>> Split(const std::string& text, char separator)
{
    const std::size_t place = text.find(separator);
    if (place == std::string::npos || place == 0 || place + 1 == text.size())
        return std::nullopt;
    return std::pair(text.substr(0, place), text.substr(place + 1));
}

RenderOptions::Point ReadPoint(const std::string& text)
{
    const auto parts = Split(text, '=');
    const auto seconds = parts ? text::ReadNumber(parts->first) : std::nullopt;
    const auto value01 = parts ? text::ReadNumber(parts->second) : std::nullopt;
    if (!seconds || !value01)
        throw Failure("\"" + text + "\" is not of the form T=V");
    if (*seconds < 0.0 || *seconds > RenderOptions::MaxSeconds)
        throw Failure("the time " + parts->first + " is outside the range of 0 to " +
                      text::Short(RenderOptions::MaxSeconds));
    if (*value01 < 0.0 || *value01 > 1.0)
        throw Failure("the value " + parts->second + " is outside the range of 0 to 1");
    return {*seconds, *value01};
}

RenderOptions::Automation ParseAutomation(const std::string& text)
{
    auto parts = Split(text, ':');
    if (!parts)
        throw Failure("it is not of the form NAME:T=V,T=V");
    RenderOptions::Automation automation{std::move(parts->first), {}};
    const std::string& points = parts->second;
    for (std::size_t begin = 0; begin <= points.size();)
    {
        const std::size_t end = std::min(points.find(',', begin), points.size());
        const auto point = ReadPoint(points.substr(begin, end - begin));
        if (!automation.points.empty() && point.seconds <= automation.points.back().seconds)
            throw Failure("the times do not rise");
        automation.points.push_back(point);
        begin = end + 1;
    }
    return automation;
}

} // namespace

int optiontexts::ReadInteger(const std::string& option, const std::string& text, int min, int max)
{
    const auto value = text::ReadInteger(text);
    if (!value || *value < min || *value > max)
        throw Failure(option + " " + text, "it is not a whole number from " + std::to_string(min) +
                                               " to " + std::to_string(max));
    return static_cast<int>(*value);
}

double optiontexts::ReadPositive(const std::string& option, const std::string& text, double max)
{
    const auto value = text::ReadNumber(text);
    if (!value || !(*value > 0.0) || *value > max)
        throw Failure(option + " " + text,
                      "it is not a number above 0, at most " + text::Short(max));
    return *value;
}

RenderOptions::Setting optiontexts::ReadSetting(const std::string& option, const std::string& text)
{
    const auto parts = Split(text, '=');
    if (!parts)
        throw Failure(option + " " + text, "it is not of the form NAME=VALUE");
    return {parts->first, parts->second, std::nullopt};
}

RenderOptions::Setting optiontexts::ReadSetting01(const std::string& option,
                                                  const std::string& text)
{
    RenderOptions::Setting setting = ReadSetting(option, text);
    setting.value01 = text::ReadNumber(setting.text);
    if (!setting.value01)
        throw Failure(option + " " + text, "the value is not a number");
    return setting;
}

RenderOptions::Automation optiontexts::ReadAutomation(const std::string& option,
                                                      const std::string& text)
{
    try
    {
        return ParseAutomation(text);
    }
    catch (const MException& failure)
    {
        throw Failure(option + " " + text, failure.text.ToUTF8());
    }
}

MChannelMode optiontexts::ReadChannelMode(const std::string& option, const std::string& text)
{
    MChannelMode mode{};
    if (MChannelModeInfo::Find(MString::FromUTF8(text), mode))
        return mode;
    std::string names;
    for (int i = 0; i < MChannelModeInfo::Count; ++i)
        names += (i == 0 ? "\"" : ", \"") +
                 std::string(MChannelModeInfo::Get(static_cast<MChannelMode>(i)).name) + '"';
    throw Failure(option + " " + text, "there is no such mode; there are " + names);
}
