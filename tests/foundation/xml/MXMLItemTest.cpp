#include "foundation/xml/MXMLItem.h"

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"

namespace
{

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

} // namespace
