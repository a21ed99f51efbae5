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

/// A number from 0 to 1 that @p name stands for.
double ReadShare(const char* name, const std::string& text)
{
    const auto value = text::ReadNumber(text);
    if (!value)
        throw Failure(std::string("the ") + name + ' ' + text + " is not a number");
    if (*value < 0.0 || *value > 1.0)
        throw Failure(std::string("the ") + name + ' ' + text + " is outside the range of 0 to 1");
    return *value;
}

RenderOptions::Place ParsePlace(const std::string& text, char separator)
{
    const auto parts = Split(text, separator);
    if (!parts)
        throw Failure("\"" + text + "\" is not of the form X" + separator + "Y");
    return {ReadShare("place", parts->first), ReadShare("place", parts->second)};
}

/// What @p read makes of each T and what stands behind it, in T=V,T=V with rising T.
template <typename Read>
auto ReadTimes(const std::string& text, const char* form, Read read)
{
    std::vector<decltype(read(0.0, text))> points;
    for (std::size_t begin = 0; begin <= text.size();)
    {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string point = text.substr(begin, end - begin);
        const auto parts = Split(point, '=');
        const auto seconds = parts ? text::ReadNumber(parts->first) : std::nullopt;
        if (!seconds)
            throw Failure("\"" + point + "\" is not of the form " + form);
        if (*seconds < 0.0 || *seconds > RenderOptions::MaxSeconds)
            throw Failure("the time " + parts->first + " is outside the range of 0 to " +
                          text::Short(RenderOptions::MaxSeconds));
        if (!points.empty() && *seconds <= points.back().seconds)
            throw Failure("the times do not rise");
        points.push_back(read(*seconds, parts->second));
        begin = end + 1;
    }
    return points;
}

RenderOptions::Automation ParseAutomation(const std::string& text)
{
    auto parts = Split(text, ':');
    if (!parts)
        throw Failure("it is not of the form NAME:T=V,T=V");
    return {std::move(parts->first),
            ReadTimes(parts->second, "T=V",
                      [](double seconds, const std::string& value) {
                          return RenderOptions::Point{seconds, ReadShare("value", value)};
                      })};
}

/// What @p parse makes of @p text; its complaint with the @p option in front.
template <typename Parse>
auto Naming(const std::string& option, const std::string& text, Parse parse)
{
    try
    {
        return parse();
    }
    catch (const MException& failure)
    {
        throw Failure(option + " " + text, failure.text.ToUTF8());
    }
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
    return Naming(option, text, [&text] { return ParseAutomation(text); });
}

RenderOptions::Place optiontexts::ReadPlace(const std::string& option, const std::string& text)
{
    return Naming(option, text, [&text] { return ParsePlace(text, ','); });
}

std::vector<RenderOptions::PlaceInTime> optiontexts::ReadPath(const std::string& option,
                                                              const std::string& text)
{
    const auto read = [](double seconds, const std::string& place) {
        return RenderOptions::PlaceInTime{seconds, ParsePlace(place, ':')};
    };
    return Naming(option, text, [&] { return ReadTimes(text, "T=X:Y", read); });
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
