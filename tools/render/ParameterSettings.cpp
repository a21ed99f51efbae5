#include "tools/render/ParameterSettings.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "tools/render/Failure.h"
#include "tools/render/ParameterText.h"
#include "tools/render/PluginParameter.h"
#include "tools/render/Text.h"

void ParameterSettings::SetText(const std::string& name, const std::string& text)
{
    Read("--set " + name + "=" + text, name, text);
}

void ParameterSettings::SetShape(const std::string& text)
{
    Read("--shape " + text, "Shape", text);
}

void ParameterSettings::Read(const std::string& option, const std::string& name,
                             const std::string& text)
{
    const PluginParameter value = Find(name);
    try
    {
        ReadParameterText(value, text);
    }
    catch (const MException& failure)
    {
        throw Failure(option, failure.text.ToUTF8());
    }
}

void ParameterSettings::Set01(const std::string& name, double value01)
{
    const PluginParameter value = Find(name);
    if (!(value01 >= 0.0 && value01 <= 1.0))
        throw Failure("--set01 " + name + "=" + text::Short(value01),
                      "it is outside the range of 0 to 1");
    value.Set01(value01);
}

PluginParameter ParameterSettings::Find(const std::string& name) const
{
    for (const PluginParameter& value : GetParameters())
        if (MString::FromUTF8(value.GetName()) == MString::FromUTF8(name))
            return value;
    throw Failure("there is no parameter \"" + name + "\"; there are " + ListNames());
}

void ParameterSettings::List(std::ostream& stream) const
{
    constexpr std::size_t Gap = 2;
    using Row = std::array<std::string, 4>;
    std::vector<Row> rows = {{"Parameter", "Value", "Normalised", "Range"}};
    for (const PluginParameter& value : GetParameters())
        rows.push_back({value.GetName(), value.GetText(), text::Fixed(value.Get01(), 4),
                        value.GetTextAt(0.0) + " to " + value.GetTextAt(1.0)});

    std::array<std::size_t, 3> widths{};
    for (const Row& row : rows)
        for (std::size_t column = 0; column < widths.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size() + Gap);
    for (const Row& row : rows)
    {
        for (std::size_t column = 0; column < widths.size(); ++column)
            stream << text::Left(row[column], widths[column]);
        stream << row.back() << '\n';
    }
}

std::vector<PluginParameter> ParameterSettings::GetParameters() const
{
    std::vector<PluginParameter> parameters;
    parameters.reserve(static_cast<std::size_t>(plugin.GetParameterCount()));
    for (int index = 0; index < plugin.GetParameterCount(); ++index)
        parameters.push_back({&plugin, index});
    return parameters;
}

std::string ParameterSettings::ListNames() const
{
    std::string names;
    for (const PluginParameter& value : GetParameters())
        names += (names.empty() ? "" : ", ") + value.GetName();
    return names;
}
