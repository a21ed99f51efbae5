#include "persistence/MConfigurationFile.h"

#include "tests/persistence/ConfigurationFolder.h"

namespace
{

void SetKey(MConfigurationFile& file, const char* key, const char* value)
{
    file.Change([&](MXMLItem& item) { item.SetAttribute(key, MString::FromUTF8(value)); });
}

TEST(MConfigurationFile, AChangeKeepsAllElse)
{
    const ConfigurationFolder folder;
    MConfigurationFile file(folder.GetName(), "C.xml");
    EXPECT_EQ(file.Get("a", "missing"), "missing");
    EXPECT_EQ(folder.List(), "") << "reading leaves no traces";
    SetKey(file, "a", "caf\xC3\xA9 <&>");
    EXPECT_EQ(folder.ReadText("C.xml"), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                        "<Configuration a=\"caf\xC3\xA9 &lt;&amp;&gt;\"/>\n");

    // Another program, with another object, adds what this one does not know.
    MConfigurationFile other(folder.GetName(), "C.xml");
    other.Change(
        [](MXMLItem& item)
        {
            item.AddSubItem("List").AddSubItem("Row").SetAttribute("n", "1");
            item.GetOrAddSubItem("Product").SetAttribute("Key", 7);
        });
    EXPECT_EQ(file.Get("Product", "Key", "missing"), "7");
    EXPECT_EQ(file.Get("List", "Key", "missing"), "missing");
    EXPECT_EQ(file.Get("Nobody", "Key", "missing"), "missing");
    SetKey(file, "b", "2");
    EXPECT_EQ(other.Get("b", ""), "2");
    MXMLItem whole("");
    other.Change([&](MXMLItem& item) { whole.CopyContents(item); });
    EXPECT_EQ(whole.GetRequiredSubItem("List").GetRequiredSubItem("Row").GetAttribute("n", ""),
              "1");

    const std::string before = folder.ReadText("C.xml");
    EXPECT_EQ(Thrown(
                  [&]
                  {
                      file.Change(
                          [](MXMLItem& item)
                          {
                              item.Clear();
                              throw MException("Changed my mind.");
                          });
                  }),
              "Changed my mind.");
    EXPECT_EQ(folder.ReadText("C.xml"), before);
    EXPECT_EQ(file.Get("b", ""), "2");
}

TEST(MConfigurationFile, WhatIsNotUnderstoodIsReadAsNothingAndNeverReplaced)
{
    struct Case
    {
        std::string contents;
        const char* refusal; ///< null if there is nothing to lose
    };
    std::string deep = "<Configuration>";
    for (int i = 0; i < 600; ++i)
        deep += "<a>";
    const Case cases[] = {
        {"", nullptr},
        {"<Configuration/>", nullptr},
        {"no xml", "Text outside of any element."},
        {"<!-- only a remark -->", "The XML does not contain any elements."},
        {"<Other a=\"1\"/>", "Invalid file contents. There is no element \"Configuration\"."},
        {"<Configuration a=\"1\"></Other>", "Invalid file contents."},
        {deep, "Invalid file contents."},
    };
    for (const Case& row : cases)
    {
        const ConfigurationFolder folder;
        folder.WriteText("C.xml", row.contents);
        MConfigurationFile file(folder.GetName(), "C.xml");
        EXPECT_EQ(file.Get("a", "default"), "default") << row.contents;
        const std::string thrown = Thrown([&] { SetKey(file, "b", "2"); });
        if (row.refusal == nullptr)
        {
            EXPECT_EQ(thrown, "nothing") << row.contents;
            EXPECT_EQ(file.Get("b", "default"), "2");
            continue;
        }
        const std::string start = "File \"" + files::PathJoin(folder.GetName(), "C.xml").ToUTF8() +
                                  "\" could not be changed. " + row.refusal;
        EXPECT_EQ(thrown.substr(0, start.size()), start);
        EXPECT_EQ(folder.ReadText("C.xml"), row.contents);
        folder.WriteText("C.xml", "<Configuration a=\"mended\"/>");
        EXPECT_EQ(file.Get("a", "default"), "mended");
    }
}

TEST(MConfigurationFile, WithoutAFolderThereAreDefaults)
{
    MConfigurationFile file(MString(), "C.xml");
    EXPECT_EQ(file.Get("a", "default"), "default");
    EXPECT_EQ(Thrown([&] { SetKey(file, "a", "1"); }), "Could not retrieve system path.");
}

} // namespace
