#include "foundation/modules/UserFolders.h"

#include <algorithm>

namespace
{

constexpr std::string_view Blanks = " \t\r";

/// Takes @p start away from the beginning of @p text, if it is there.
bool Take(std::string_view& text, std::string_view start) noexcept
{
    if (!text.starts_with(start))
        return false;
    text.remove_prefix(start.size());
    return true;
}

void SkipBlanks(std::string_view& text) noexcept
{
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
}

/// Reads up to the closing quote; an empty text for what a shell would expand, and without a quote.
std::string ReadQuoted(std::string_view& text)
{
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '"')
        {
            text.remove_prefix(i + 1);
            return value;
        }
        if (text[i] == '$' || text[i] == '`')
            return {};
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        if (text[i] == '\0') // would end the path early
            return {};
        value += text[i];
    }
    return {};
}

/// An empty text if @p line does not name the folder.
std::string ReadLine(std::string_view line, std::string_view name, std::string_view home)
{
    SkipBlanks(line);
    if (!Take(line, "XDG_") || !Take(line, name) || !Take(line, "_DIR=\""))
        return {};
    const bool isInHome = Take(line, "$HOME");
    // "$HOMEs" is another variable.
    if (!line.starts_with('/') && !(isInHome && line.starts_with('"')))
        return {};
    const bool isHome = line.starts_with('"');
    const std::string value = ReadQuoted(line);
    SkipBlanks(line);
    if ((value.empty() && !isHome) || !(line.empty() || line.starts_with('#')))
        return {};
    return (isInHome ? std::string(home) : std::string()) + value;
}

} // namespace

std::string FindUserFolder(std::string_view text, std::string_view name, std::string_view home)
{
    std::string found;
    while (!text.empty())
    {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (std::string folder = ReadLine(line, name, home); !folder.empty())
            found = std::move(folder);
    }
    return found;
}
