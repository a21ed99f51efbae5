#include "persistence/presets/MPresetManagerBase.h"

#include "foundation/limits.h"
#include "tests/persistence/presets/PresetTest.h"

namespace
{

TEST_F(PresetTest, ChangesReachTheFileAndKeepAllOtherItems)
{
    MPresetManagerBase manager(owner, "", folder.GetName());
    EXPECT_EQ(folder.List(), "") << "reading leaves no traces";
    MXMLItem& first = manager.AddFolder(manager.GetRoot(), "a");
    MXMLItem& b = manager.AddPreset(first, "b");
    owner.state = 2;
    manager.AddPreset(manager.AddFolder(first, "c"), "d");
    MXMLItem& e = manager.AddPreset(manager.GetRoot(), "e");
    EXPECT_EQ(ReadOutline(), "a{b c{d}}e");
    EXPECT_EQ(StateOf(manager, "a/b"), 1);

    owner.state = 3;
    EXPECT_EQ(&manager.ReplacePreset(b), &b);
    EXPECT_EQ(&manager.RenamePreset(b, "B"), &b);
    EXPECT_EQ(&manager.RenameFolder(first, "A"), &first);
    manager.DeletePreset(e);
    manager.DeletePreset(*manager.Find("A/c/d"));
    manager.DeleteFolder(manager.GetRoot());
    EXPECT_EQ(ReadOutline(), "A{B c{}}");
    EXPECT_EQ(Outline(manager.GetRoot()), "A{B c{}}");
    EXPECT_EQ(StateOf(MPresetManagerBase(owner, "", folder.GetName()), "A/B"), 3);
    manager.DeleteFolder(first);
    EXPECT_EQ(ReadOutline(), "");
    EXPECT_EQ(manager.GetGeneration(), 0);
}

TEST_F(PresetTest, NamesHoldAnyCharacters)
{
    struct Case
    {
        const char* what;
        std::u16string_view name;
        std::u16string_view stored;
    };
    const Case cases[] = {
        {"empty", u"", u""},
        {"entities and quotes", u"&lt;<\"'>&#10;&", u"&lt;<\"'>&#10;&"},
        {"controls", {u"\0 \x01\t\r\n\x1F", 7}, {u"\0 \x01\t\r\n\x1F", 7}},
        {"slashes", u"/a//b/", u"/a//b/"},
        {"accents and an emoji", u"\u00E9\u0301\U0001F3B9", u"\u00E9\u0301\U0001F3B9"},
        {"halves of a pair",
         u"a\xDC00\xD800"
         u"b",
         u"ab"},
        {"raw quote, less-than and lead byte", u"a\U0010FE22\U0010FE3C\U0010FEF0b", u"ab"},
        {"mark of order", u"\uFEFFa", u"a"},
    };
    for (const Case& row : cases)
    {
        Write("<presets/>");
        MPresetManagerBase manager(owner, "", folder.GetName());
        MXMLItem& inner = manager.AddFolder(manager.GetRoot(), MString::FromUTF16(row.name));
        manager.AddPreset(inner, MString::FromUTF16(row.name));
        const MPresetManagerBase fresh(owner, "", folder.GetName());
        const std::vector<MXMLItem*> presets = fresh.ListPresets();
        ASSERT_EQ(presets.size(), 1u) << row.what;
        for (const MXMLItem* const item : {presets[0], presets[0]->GetParent()})
        {
            const MString& name = presettree::GetName(*item);
            std::u16string units;
            for (int i = 0; i < name.Length(); ++i)
                units += name.CharAt(i);
            EXPECT_EQ(units, row.stored) << row.what;
        }
        EXPECT_EQ(fresh.Find(MPresetManagerBase::GetPath(*presets[0])), presets[0]) << row.what;
        EXPECT_EQ(Outline(manager.GetRoot()), Outline(fresh.GetRoot())) << row.what;
    }
}

TEST_F(PresetTest, TextsOfTheOwnerCannotBreakTheFile)
{
    struct : MPresetBase
    {
        void Store(MXMLItem& preset) override
        {
            preset.SetAttribute("ExchangeIndex", MString::FromUTF16(u"1\xD800"));
        }
        void Load(MXMLItem& /*preset*/) override {}
    } careless;
    MPresetManagerBase manager(careless, "", folder.GetName());
    manager.AddPreset(manager.GetRoot(), "a");
    EXPECT_EQ(ReadOutline(), "a");
}

TEST_F(PresetTest, WhatCannotBeReadIsToldAndNeverWrittenOver)
{
    struct Case
    {
        std::string contents;
        const char* failure; ///< its start
    };
    std::string deep = "<presets>";
    for (int i = 0; i < limits::XMLDepth; ++i)
        deep += "<Directory>";
    const Case cases[] = {
        {"", "nothing"},
        {"<presets/>", "nothing"},
        {"no xml", "Text outside of any element."},
        {"<!-- only a remark -->", "The XML does not contain any elements."},
        {"<other/>", "Invalid file contents. There is no element \"presets\"."},
        {"<presets><preset name=\"a\" compressed=\"1\">78", "Invalid file contents."},
        {"<presets><preset name=\"a\"/>", "Invalid file contents. The file is not complete."},
        {"<presets><preset name=\"", "Invalid file contents."},
        {"<presets><Directory Name=\"a\"></presets>", "Invalid file contents."},
        {"<presets><a \xF4\x8F\xB8\xBC=\"1\"/></presets>", "Invalid file contents. Names"},
        {deep, "Invalid file contents. Elements are nested too deeply."},
    };
    for (const Case& row : cases)
    {
        Write("<presets><preset name=\"kept\"/></presets>");
        MPresetManagerBase manager(owner, "", folder.GetName());
        Write(row.contents);
        const auto expectFailure = [&](const std::string& thrown)
        { EXPECT_EQ(thrown.substr(0, std::string(row.failure).size()), row.failure); };
        expectFailure(Thrown([&] { MPresetManagerBase(owner, "", folder.GetName()).LoadFile(); }));
        expectFailure(Thrown([&] { manager.AddPreset(manager.GetRoot(), "new"); }));
        if (row.failure == std::string("nothing"))
            EXPECT_EQ(ReadOutline(), row.contents.empty() ? "kept new" : "new") << row.contents;
        else
        {
            EXPECT_EQ(Read(), row.contents);
            EXPECT_EQ(Outline(manager.GetRoot()), "kept");
        }
    }
    MPresetManagerBase nowhere(owner, "", MString());
    EXPECT_EQ(Thrown([&] { nowhere.AddPreset(nowhere.GetRoot(), "a"); }),
              "Could not retrieve system path.");
}

TEST_F(PresetTest, PlainPresetsGoOutCompressed)
{
    Write(
        "<presets><preset name=\"a\" State=\"5\" ExchangeIndex=\"7\"><preset State=\"8\"/></preset>"
        "<Directory Name=\"f\"><preset name=\"b\" State=\"6\"/></Directory>"
        "<preset name=\"c\" compressed=\"\">  41 </preset></presets>");
    MPresetManagerBase manager(owner, "", folder.GetName());
    EXPECT_EQ(StateOf(manager, "a"), 5);
    manager.AddPreset(manager.GetRoot(), "d");
    EXPECT_EQ(Read().find("State"), std::string::npos);

    const MPresetManagerBase fresh(owner, "", folder.GetName());
    for (const MPresetManagerBase* const each : {&std::as_const(manager), &fresh})
    {
        EXPECT_EQ(StateOf(*each, "a"), 5);
        EXPECT_EQ(StateOf(*each, "f/b"), 6);
        const MXMLItem& a = *each->Find("a");
        EXPECT_TRUE(a.GetSubItems().empty());
        EXPECT_EQ(a.GetAttribute("ExchangeIndex", "none"), "7");
        EXPECT_EQ(each->Find("c")->GetText().ToUTF8(), " 41");
    }
    // Zlib's header for level 9, and no more than digits.
    const std::string digits = manager.Find("a")->GetText().ToUTF8();
    EXPECT_EQ(digits.substr(0, 4), "78DA");
    EXPECT_EQ(digits.find_first_not_of("0123456789ABCDEF"), std::string::npos);
}

TEST_F(PresetTest, CompressionStopsAtAPresetWithoutName)
{
    MXMLItem root("presets");
    MXMLItem& inner = root.AddSubItem("Directory");
    MXMLItem* const presets[] = {&inner.AddSubItem("preset"), &inner.AddSubItem("preset"),
                                 &root.AddSubItem("preset")};
    presets[0]->SetAttribute("name", "a");
    presets[1]->SetAttribute("compressed", 1);
    presets[2]->SetAttribute("name", "c");
    EXPECT_EQ(presettree::CompressPresets(root), 0);
    EXPECT_TRUE(presets[0]->HasAttribute("compressed"));
    EXPECT_FALSE(presets[2]->HasAttribute("compressed"));
    presets[1]->SetAttribute("name", "b");
    EXPECT_EQ(presettree::CompressPresets(root), 1);
    EXPECT_TRUE(presets[1]->GetText().IsEmpty());
    EXPECT_TRUE(presets[2]->HasAttribute("compressed"));
}

TEST_F(PresetTest, BrokenPresetsLeaveTheOwnerAlone)
{
    const MPresetManagerBase manager(owner, "", folder.GetName());
    const char* const texts[] = {
        "", "7", "78DG", "6162", "78DA0300", "78DAABB0", "78DA03000000 0001"};
    for (const char* const text : texts)
    {
        MXMLItem preset("preset");
        preset.SetAttribute("compressed", 0);
        preset.SetText(text);
        EXPECT_NE(Thrown([&] { manager.LoadPreset(preset); }), "nothing") << text;
        EXPECT_EQ(owner.state, 1) << text;
    }
}

TEST_F(PresetTest, ExportedFoldersComeBackExactly)
{
    Write(
        "<presets><Directory Name=\"from\" Colour=\"1\"><preset name=\"p\" State=\"4\"/><Directory "
        "Name=\"empty\"/><Directory Name=\"in\"><preset name=\"q\" compressed=\"\">6162</preset>"
        "<other/></Directory></Directory><Directory Name=\"to\"><preset name=\"old\"/></Directory>"
        "</presets>");
    MPresetManagerBase manager(owner, "", folder.GetName());
    const auto child = [&](std::size_t i) -> MXMLItem&
    { return *manager.GetRoot().GetSubItems()[i]; };
    presettree::CompressPresets(child(0)); // as the first save will
    const auto exportTo = [&](const MXMLItem& item, const char* name)
    {
        manager.Export(item, files::PathJoin(folder.GetName(), name));
        return folder.ReadText(name);
    };
    const std::string exported = exportTo(child(0), "x.mpresets");
    EXPECT_EQ(exported.find("<Directory Colour=\"1\" Name=\"from\">"), exported.find('\n') + 1);
    const MString exportedName = files::PathJoin(folder.GetName(), "x.mpresets");

    EXPECT_EQ(&manager.Import(child(1), exportedName), &child(1));
    EXPECT_EQ(ReadOutline(), "from{p empty{}in{q }}to{p empty{}in{q }}");
    EXPECT_EQ(StateOf(manager, "to/p"), 4);
    manager.Import(manager.GetRoot(), exportedName);
    EXPECT_EQ(ReadOutline(), "p empty{}in{q }");

    // Twice read and written, the subtree is what it was.
    const std::string whole = exportTo(manager.GetRoot(), "y.mpresets");
    manager.Import(manager.AddFolder(manager.GetRoot(), "f"),
                   files::PathJoin(folder.GetName(), "y.mpresets"));
    const std::string again = exportTo(*manager.GetRoot().GetSubItems().back(), "z.mpresets");
    const auto inner = [](const std::string& text)
    { return text.substr(text.find("\t<"), text.rfind("</") - text.find("\t<")); };
    EXPECT_EQ(inner(again), inner(whole));

    const std::string before = Read();
    folder.WriteText("broken", "<Directory><preset");
    for (const char* const name : {"broken", "missing"})
        EXPECT_NE(
            Thrown([&] { manager.Import(child(0), files::PathJoin(folder.GetName(), name)); }),
            "nothing");
    EXPECT_EQ(Read(), before);
}

TEST_F(PresetTest, NextAndPreviousWalkRound)
{
    MPresetManagerBase manager(owner, "", folder.GetName());
    EXPECT_EQ(manager.FindNext(nullptr), nullptr);
    EXPECT_EQ(manager.FindPrevious(nullptr), nullptr);
    Write(FileOf("x{}a y{z{b}c}u{}d"));
    manager.LoadFile();
    std::string forwards;
    std::string backwards;
    const MXMLItem* next = nullptr;
    const MXMLItem* previous = nullptr;
    for (int i = 0; i < 6; ++i)
    {
        next = manager.FindNext(next);
        previous = manager.FindPrevious(previous);
        forwards += presettree::GetName(*next).ToUTF8();
        backwards += presettree::GetName(*previous).ToUTF8();
    }
    EXPECT_EQ(forwards, "abcdab");
    EXPECT_EQ(backwards, "dcbadc");
}

TEST_F(PresetTest, PathsAreFoundInWhateverCaseUnlessOneIsExact)
{
    Write(FileOf("x{y/z}x/y{w z W}R\xC3\xA9sum\xC3\xA9"));
    const MPresetManagerBase manager(owner, "", folder.GetName());
    const std::vector<MXMLItem*> all = manager.ListPresets();
    const std::pair<const char*, MXMLItem*> cases[] = {
        {"x/y/z", all[0]}, {"x/y/w", all[1]},  {"x/y/W", all[3]}, {"X/Y/Z", all[0]},
        {"x", nullptr},    {"x/y/", nullptr},  {"", nullptr},     {"/x/y/z", nullptr},
        {"z", nullptr},    {"resume", all[4]},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(manager.Find(path), expected) << path;
}

TEST_F(PresetTest, AChangeIsAppliedToWhatOthersHaveWritten)
{
    struct Case
    {
        const char* what;
        int renamed; ///< which preset of "f{a=1 a=2}b=3"
        const char* after;
        const char* outline;
    };
    const Case cases[] = {
        {"all in another order", 2, "b=3 f{a=2 a=1}c=4", "new f{a a}c"},
        {"other contents", 2, "f{}b=9", "f{}new"},
        {"only one of another case", 2, "B=3", "B"},
        {"the first of two gone", 1, "f{a=2}", "f{new}"},
        {"the second of two gone", 1, "f{a=1}", "f{a}"},
        {"two folders now", 1, "f{}f{a=1 a=2}", "f{}f{a new}"},
        {"two folders, neither as before", 1, "f{a=2}f{a=2}", "f{a}f{a}"},
        {"the folder gone", 1, "a=2", "a"},
    };
    for (const Case& row : cases)
    {
        Write(FileOf("f{a=1 a=2}b=3"));
        MPresetManagerBase manager(owner, "", folder.GetName());
        const int generation = manager.GetGeneration();
        MXMLItem& renamed = *manager.ListPresets()[static_cast<std::size_t>(row.renamed)];
        const std::string path = MPresetManagerBase::GetPath(renamed).ToUTF8();
        Write(FileOf(row.after));
        const bool isFound = std::string(row.outline).find("new") != std::string::npos;
        EXPECT_EQ(Thrown([&] { manager.RenamePreset(renamed, "new"); }),
                  isFound ? "nothing" : "Could not find preset \"" + path + "\".")
            << row.what;
        EXPECT_EQ(ReadOutline(), row.outline) << row.what;
        EXPECT_EQ(Outline(manager.GetRoot()), row.outline) << row.what;
        EXPECT_NE(manager.GetGeneration(), generation) << row.what;
    }
}

TEST_F(PresetTest, NothingIsWrittenThatCouldNotBeReadAgain)
{
    std::string deep;
    for (int i = 2; i < limits::XMLDepth; ++i)
        deep.insert(0, "f{").append("}");
    Write(FileOf(deep));
    MPresetManagerBase manager(owner, "", folder.GetName());
    MXMLItem* innermost = &manager.GetRoot();
    while (!innermost->GetSubItems().empty())
        innermost = innermost->GetSubItems().back().get();
    MXMLItem& last = manager.AddFolder(*innermost, "last");
    const std::string before = Read();
    EXPECT_EQ(Thrown([&] { manager.AddPreset(last, "a"); }),
              "Invalid file contents. Elements are nested too deeply.");
    EXPECT_EQ(Read(), before);
    EXPECT_EQ(ReadOutline(), Outline(manager.GetRoot()));
}

} // namespace
