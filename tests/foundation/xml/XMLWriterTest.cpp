#include "foundation/xml/XMLWriter.h"

#include <string>

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/threads/MException.h"
#include "tests/foundation/xml/Trees.h"

namespace
{

std::string Written(const MXMLItem& item, bool isCompact, const MString& encoding = "utf-8")
{
    MMemoryStream stream;
    item.Save(stream, isCompact, encoding);
    stream.Seek(0, MStream::FromStart);
    const auto bytes = stream.GetData();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void MakeSmallTree(MXMLItem& root)
{
    root.SetAttribute("b", "<\"&'>\n\r\t ");
    root.SetAttribute("A", 1);
    MXMLItem& sub = root.AddSubItem("sub");
    sub.SetText("one & two");
    sub.AddSubItem("leaf").AddSubItem("deep");
    root.AddSubItem("empty");
}

TEST(XMLWriter, WritesTheCompactForm)
{
    MXMLItem root("root");
    MakeSmallTree(root);
    EXPECT_EQ(Written(root, true), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                   "<root A=\"1\" b=\"&lt;&quot;&amp;&apos;&gt;&#10;\r\t \">"
                                   "<sub>one &amp; two<leaf><deep/></leaf></sub>\n"
                                   "<empty/>\n"
                                   "</root>\n");
}

TEST(XMLWriter, WritesTheReadableForm)
{
    MXMLItem root("root");
    MakeSmallTree(root);
    EXPECT_EQ(Written(root, false), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                    "<root A=\"1\" b=\"&lt;&quot;&amp;&apos;&gt;&#10;\r\t \">\n"
                                    "\t<sub>\n"
                                    "\t\tone &amp; two\n"
                                    "\t\t<leaf>\n"
                                    "\t\t\t<deep/>\n"
                                    "\t\t</leaf>\n"
                                    "\t</sub>\n"
                                    "\t<empty/>\n"
                                    "</root>\n");
}

TEST(XMLWriter, BreaksTextAtTheFirstBlankFrom60CharactersOn)
{
    const std::string sixty(60, 'x');
    MXMLItem root("a");
    root.SetText(MString::FromUTF8(sixty + " " + sixty.substr(1) + " y " + sixty + sixty + " z"));
    EXPECT_EQ(Written(root, false), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a>\n\t" + sixty +
                                        "\n\t" + sixty.substr(1) + " y\n\t" + sixty + sixty +
                                        "\n\tz\n</a>\n");
}

TEST(XMLWriter, WritesInTheEncodingAskedFor)
{
    MXMLItem root("a");
    root.SetAttribute("b", MString::FromUTF8("\xC3\xA9"));
    EXPECT_EQ(Written(root, true, "ISO-8859-1"),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a b=\"\xE9\"/>\n");
    EXPECT_EQ(Written(root, true, "utf-16").substr(0, 4), std::string("\xFF\xFE<\0", 4));
    EXPECT_THROW(Written(root, true, "runes"), MException);
}

TEST(XMLWriter, WhatIsNoCharacterLeavesTheRestWhole)
{
    struct Case
    {
        std::u16string text;
        std::u16string readBack; ///< from UTF-8
    };
    const Case cases[] = {
        {u"\U0001D11E", u"\U0001D11E"},
        {u"a\xD834", u"a"}, // the quote or the tag behind it stays
        {u"\xD834"
         u"b\xDD1E"
         u"c",
         u"bc"},
        {u"\xDD1E\xD834", u""},
        {u"\xD834\xD834\xDD1E&", u"\U0001D11E&"},
        {u"\U0010FE22\U0010FE3Cx\U0010FE26gt;\U0010FE41", u"\"<x&gt;A"}, // bytes
        {u"\U0010FEC3\U0010FEA9", u"\u00E9"},                            // two that are a character
    };
    const auto make = [](std::u16string_view text)
    {
        MString made;
        for (const char16_t unit : text)
            made.Append(unit);
        return made;
    };
    for (const Case& row : cases)
        for (const bool isCompact : {true, false})
        {
            MXMLItem root("a");
            root.SetAttribute("b", make(row.text));
            root.SetAttribute("c", "kept");
            root.AddSubItem("d").SetText(make(u"x" + row.text + u"x"));
            MMemoryStream stream;
            root.Save(stream, isCompact, "utf-8");
            stream.Seek(0, MStream::FromStart);
            MXMLItem loaded("");
            loaded.Load(stream);
            EXPECT_EQ(loaded.GetRequiredAttribute("b").ToUTF8(), make(row.readBack).ToUTF8());
            EXPECT_EQ(loaded.GetRequiredAttribute("c"), "kept");
            const MString& text = loaded.GetRequiredSubItem("d").GetText();
            EXPECT_EQ(text.Mid(text.CharAt(0) == u' ', text.Length()).ToUTF8(),
                      make(u"x" + row.readBack + u"x").ToUTF8());
        }
}

TEST(XMLWriter, RefusesAnItemWithoutAName)
{
    MXMLItem root("a");
    root.AddSubItem("");
    EXPECT_THROW(Written(root, true), MException);
    EXPECT_THROW(Written(root, false), MException);
}

TEST(XMLWriter, ComesBackThroughTheParser)
{
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i)
    {
        MXMLItem root("root");
        MakeRandomTree(root, random);
        const std::string outline = Outline(root);
        for (const char* const encoding : {"utf-8", "utf-16"})
            ASSERT_EQ(Parsed(Written(root, true, encoding)), outline) << encoding;

        // Indentation puts a blank before each text, once.
        MXMLItem indented("");
        MMemoryStream stream;
        root.Save(stream, false, "utf-8");
        stream.Seek(0, MStream::FromStart);
        indented.Load(stream);
        ASSERT_EQ(Parsed(Written(indented, false)), Outline(indented));
        ASSERT_EQ(Outline(indented).size() >= outline.size(), true);

        MMemoryStream packed;
        root.SaveCompressed(packed, "utf-8");
        packed.Seek(0, MStream::FromStart);
        MXMLItem loaded("");
        loaded.LoadCompressed(packed);
        ASSERT_EQ(Outline(loaded), outline);
    }
}

} // namespace
