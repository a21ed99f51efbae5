#include "tests/foundation/xml/Trees.h"

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLParser.h"

namespace
{

int Draw(std::mt19937& random, int count)
{
    return static_cast<int>(random() % static_cast<unsigned>(count));
}

/// A name of letters, digits and a few signs; or a value with blanks, markup and foreign letters.
MString MakeRandomText(std::mt19937& random, bool isName)
{
    constexpr std::u16string_view NameCharacters = u"abcXYZ019.:_-?&;é漢";
    constexpr std::u16string_view ValueCharacters = u" <>&'\"=/!#10;amp\n\t\rxé漢";
    const std::u16string_view characters = isName ? NameCharacters : ValueCharacters;
    MString text = isName ? "n" : "";
    for (int left = Draw(random, 20); left > 0; --left)
        text.Append(characters[static_cast<std::size_t>(
            Draw(random, static_cast<int>(characters.size())))]);
    return text;
}

/// As a text comes back from a file: single blanks, none at the end.
MString Collapse(const MString& text)
{
    MString collapsed;
    for (int i = 0; i < text.Length(); ++i)
        if (text.CharAt(i) > u' ')
            collapsed.Append(text.CharAt(i));
        else if (collapsed.IsEmpty() || collapsed.CharAt(collapsed.Length() - 1) != u' ')
            collapsed.Append(u' ');
    if (!collapsed.IsEmpty() && collapsed.CharAt(collapsed.Length() - 1) == u' ')
        collapsed.Erase(collapsed.Length() - 1, 1);
    return collapsed;
}

template <typename Load>
std::string OutlineOf(std::string_view source, Load&& load)
{
    MXMLItem item("");
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(source)));
    try
    {
        load(item, stream);
    }
    catch (const MException& failure)
    {
        EXPECT_EQ(failure.code, MException::BadData) << source;
        return failure.text.ToUTF8();
    }
    return Outline(item);
}

} // namespace

std::string Outline(const MXMLItem& item)
{
    std::string outline = item.GetName().ToUTF8();
    for (const MAttribute& attribute : item.GetAttributes())
        outline.append(" ")
            .append(attribute.name.ToUTF8())
            .append("=[")
            .append(attribute.value.ToUTF8())
            .append("]");
    if (!item.GetText().IsEmpty())
        outline.append("(").append(item.GetText().ToUTF8()).append(")");
    const char* separator = "{";
    for (const auto& subItem : item.GetSubItems())
    {
        outline.append(separator).append(Outline(*subItem));
        separator = ",";
    }
    if (!item.GetSubItems().empty())
        outline.append("}");
    return outline;
}

std::string Parsed(std::string_view source)
{
    return OutlineOf(source, [](MXMLItem& item, MStream& stream) { item.Load(stream); });
}

std::string ParsedWithin(const MMLLimits& limits, std::string_view source)
{
    return OutlineOf(source, [&limits](MXMLItem& item, MStream& stream)
                     { MXMLParser(item, limits).Parse(stream); });
}

void MakeRandomTree(MXMLItem& item, std::mt19937& random, int depth)
{
    for (int left = Draw(random, 5); left > 0; --left)
        item.SetAttribute(MakeRandomText(random, true), MakeRandomText(random, false));
    if (Draw(random, 2) == 0)
        item.SetText(Collapse(MakeRandomText(random, false)));
    if (depth > 0)
        for (int left = Draw(random, 4); left > 0; --left)
            MakeRandomTree(item.AddSubItem(MakeRandomText(random, true)), random, depth - 1);
}
