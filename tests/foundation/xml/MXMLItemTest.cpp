#include "foundation/xml/MXMLItem.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/streams/MZLibStream.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItemIterator.h"
#include "tests/TemporaryFolder.h"
#include "tests/foundation/xml/Trees.h"

namespace
{

/// The text that @p action fails with; empty if it does not.
template <typename Action>
std::string FailureOf(Action&& action)
{
    try
    {
        action();
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8();
    }
    return {};
}

TEST(MXMLItem, KeepsOneAttributeANameInSortedOrder)
{
    MXMLItem item("settings");
    for (const char* const name : {"wet", "Dry", "note", "Pitch"})
        item.SetAttribute(name, MString(name));
    item.SetAttribute("WET", 0.5);

    ASSERT_EQ(item.GetAttributes().size(), 4u);
    const char* const sorted[] = {"Dry", "note", "Pitch", "wet"};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(item.GetAttributes()[i].name.ToUTF8(), sorted[i]);
    EXPECT_EQ(item.GetAttribute("Wet", "").ToUTF8(), "0.500000000000");
    item.RemoveAttribute("NOTE");
    EXPECT_EQ(item.GetAttribute("note", "none").ToUTF8(), "none");
}

TEST(MXMLItem, FindsForTheNextGetAndForgetsWithEveryChange)
{
    MXMLItem item("settings");
    item.SetAttribute("a", 1);
    EXPECT_FALSE(item.HasAttribute("b"));
    EXPECT_THROW(static_cast<void>(item.GetAttribute()), MException);
    EXPECT_TRUE(item.HasAttribute("A"));
    EXPECT_EQ(item.GetAttribute().ToUTF8(), "1");
    item.RemoveAttribute("a");
    EXPECT_THROW(static_cast<void>(item.GetAttribute()), MException);

    EXPECT_FALSE(item.HasSubItem("Shape"));
    EXPECT_THROW(static_cast<void>(item.GetSubItem()), MException);
    MXMLItem& first = item.AddSubItem("Shape");
    item.AddSubItem("shape");
    EXPECT_TRUE(item.HasSubItem("SHAPE"));
    EXPECT_EQ(&item.GetSubItem(), &first) << "the first of the name";
    EXPECT_EQ(&item.GetOrAddSubItem("shape"), &first);
    EXPECT_EQ(first.GetParent(), &item);
    item.Clear();
    EXPECT_TRUE(item.GetSubItems().empty());
    EXPECT_THROW(static_cast<void>(item.GetSubItem()), MException);
}

TEST(MXMLItem, TellsWhatIsRequiredAndMissing)
{
    MXMLItem item("settings");
    EXPECT_EQ(FailureOf([&] { static_cast<void>(item.GetRequiredAttribute("Dry")); }),
              "Could not find required attribute (Dry).");
    EXPECT_EQ(FailureOf([&] { static_cast<void>(item.GetRequiredSubItem("Shape")); }),
              "Could not find required subitem (Shape).");
    item.SetAttribute("dry", 1);
    EXPECT_EQ(item.GetRequiredAttribute("Dry").ToUTF8(), "1");
    EXPECT_EQ(&item.GetRequiredSubItem("shape"), &item.AddSubItem("Shape"));
}

TEST(MXMLItem, LinksItsSubitems)
{
    MXMLItem root("root");
    MXMLItem& first = root.AddSubItem("a");
    MXMLItem& second = root.AddSubItem("b");
    MXMLItem& third = second.AddSubItem("c");
    EXPECT_EQ(first.GetNextSibling(), &second);
    EXPECT_EQ(first.GetPreviousSibling(), nullptr);
    EXPECT_EQ(second.GetPreviousSibling(), &first);
    EXPECT_EQ(second.GetNextSibling(), nullptr);
    EXPECT_EQ(root.GetDepth(), 0);
    EXPECT_EQ(third.GetDepth(), 2);

    MXMLItem& last = root.AddSubItem("d");
    root.RemoveSubItem(second);
    EXPECT_EQ(first.GetNextSibling(), &last);
    EXPECT_EQ(last.GetPreviousSibling(), &first);
    EXPECT_FALSE(root.HasSubItem("b"));
    root.RemoveSubItem(last);
    EXPECT_EQ(first.GetNextSibling(), nullptr);
    root.RemoveSubItem(first);
    EXPECT_EQ(root.AddSubItem("e").GetPreviousSibling(), nullptr);
}

TEST(MXMLItem, IsWalkedOverByName)
{
    MXMLItem root("root");
    for (const char* const name : {"a", "b", "A", "c"})
        root.AddSubItem(name);
    const auto walk = [&root](const MString& name)
    {
        std::string names;
        MXMLItemIterator item(root, name);
        for (item.Begin(); item.IsValid(); item.Next())
            names += item.Current().GetName().ToUTF8();
        return names;
    };
    EXPECT_EQ(walk(""), "abAc");
    EXPECT_EQ(walk("a"), "aA");
    EXPECT_EQ(walk("d"), "");

    MXMLItemIterator item(root);
    EXPECT_FALSE(item.IsValid());
    EXPECT_EQ(FailureOf([&] { static_cast<void>(item.Current()); }),
              "XML item iterator has not been initialized.");
}

/// The tree in compressed bytes as Outline shows it, or the text of the failure.
std::string LoadedFrom(std::span<const std::byte> packed)
{
    MMemoryStream stream = MMemoryStream::Refer(packed);
    MXMLItem item("");
    const std::string failure = FailureOf([&] { item.LoadCompressed(stream); });
    return failure.empty() ? Outline(item) : failure;
}

TEST(MXMLItem, RefusesCompressedDataThatAreNotWhole)
{
    MXMLItem root("root");
    root.SetAttribute("text", "long enough to be cut off in many places");
    root.AddSubItem("sub");
    MMemoryStream stream;
    root.SaveCompressed(stream, "utf-8");
    stream.Seek(0, MStream::FromStart);
    std::vector<std::byte> packed(stream.GetData().begin(), stream.GetData().end());
    const std::span<const std::byte> whole = packed;
    const std::string outline = Outline(root);

    constexpr std::size_t ChecksumBytes = 4;
    EXPECT_EQ(LoadedFrom({}), "The XML does not contain any elements.");
    for (std::size_t length = 1; length < whole.size() - ChecksumBytes; ++length)
        ASSERT_EQ(LoadedFrom(whole.first(length)), "Source compressed stream has invalid content.")
            << length;
    for (std::size_t length = whole.size() - ChecksumBytes; length <= whole.size(); ++length)
        EXPECT_EQ(LoadedFrom(whole.first(length)), outline) << "the tree is whole";

    packed.back() ^= std::byte{1};
    EXPECT_EQ(LoadedFrom(packed), "Source compressed stream has invalid content.");
    packed.back() ^= std::byte{1};
    packed.push_back(std::byte{0});
    EXPECT_EQ(LoadedFrom(packed), outline) << "what follows does not matter";
}

TEST(MXMLItem, RefusesWhatInflatesWithoutEnd)
{
    MMemoryStream packed;
    {
        MZLibStream deflated(packed, MZLibStream::Direction::Write);
        const std::vector<std::byte> blanks(1 << 20, std::byte{' '});
        for (std::int64_t left = limits::InflatedTreeBytes; left >= 0;
             left -= static_cast<std::int64_t>(blanks.size()))
            deflated.Write(blanks);
        deflated.Finish();
    }
    packed.Seek(0, MStream::FromStart);
    EXPECT_EQ(LoadedFrom(packed.GetData()), "Source compressed stream is too long.");
}

TEST(MXMLItem, KeepsBytesAsText)
{
    std::vector<std::byte> bytes(1000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(i * i % 251);
    MXMLItem item("data");
    for (const bool isCompressed : {false, true})
    {
        item.StoreBytes(bytes, isCompressed);
        EXPECT_EQ(item.LoadBytes(isCompressed), bytes);
        item.StoreBytes({}, isCompressed);
        EXPECT_TRUE(item.LoadBytes(isCompressed).empty());
    }
    item.StoreBytes(std::span(bytes).first(4), false);
    EXPECT_EQ(item.GetText().ToUTF8(), "00010409");
    item.SetText(" 0\n1 02 ");
    EXPECT_EQ(item.LoadBytes(false), (std::vector{std::byte{1}, std::byte{2}}));
    for (const char* const broken : {"0", "0G", "00 1", "x", "3\xC4\xB1"})
    {
        item.SetText(MString::FromUTF8(broken)); // the last one ends in U+0131
        EXPECT_EQ(FailureOf([&] { static_cast<void>(item.LoadBytes(false)); }),
                  "Could not read required data from stream.")
            << broken;
    }
}

TEST(MXMLItem, GoesToAFileAndComesBack)
{
    const TemporaryFolder folder;
    const MString name = MString::FromUTF8((folder / "settings.xml").generic_string());
    MXMLItem item("settings");
    item.SetAttribute("a", 0.25);
    item.Save(name, "utf-8");

    MXMLItem loaded("other");
    loaded.AddSubItem("gone");
    MStdFileStream file(name, MStdFileStream::Opening::Existing);
    loaded.Load(file);
    EXPECT_EQ(Outline(loaded), "settings a=[0.250000000000]");

    const auto before = folder.Read("settings.xml");
    EXPECT_NE(FailureOf([&] { item.Save(name, "runes"); }), "");
    item.AddSubItem("");
    EXPECT_EQ(FailureOf([&] { item.Save(name, "utf-8"); }), "XML entity cannot have empty name.");
    EXPECT_EQ(folder.Read("settings.xml"), before) << "the old file stays";
    EXPECT_NE(FailureOf([&] { item.Save("", "utf-8"); }), "");
}

} // namespace
