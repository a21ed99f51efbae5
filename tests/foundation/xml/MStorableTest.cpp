#include "foundation/xml/MStorable.h"

#include <memory>

#include <gtest/gtest.h>

#include "foundation/xml/MXMLItem.h"

namespace
{

/// Leaves all to the base but its text.
class Word : public MStorable
{
public:
    MString GetAsString() const override { return word; }
    void SetFromString(const MString& text) override { word = text; }
    bool SetDefault() override
    {
        word = "default";
        return true;
    }

    MString word = "first";
};

TEST(MStorable, StoresItsTextUnderItsName)
{
    MXMLItem item("Settings");
    Word word;
    word.Store(item);
    EXPECT_EQ(item.GetAttribute("value", "").ToUTF8(), "first");
    word.SetFromString("second");
    word.Load(item);
    EXPECT_EQ(word.word.ToUTF8(), "first");
    word.SetId("other");
    word.Load(item);
    EXPECT_EQ(word.word.ToUTF8(), "default");
}

TEST(MStorable, KeepsItsCompanionForLife)
{
    const auto companion = std::make_shared<int>(1);
    {
        Word word;
        word.SetCompanion(companion);
        EXPECT_EQ(companion.use_count(), 2);
    }
    EXPECT_EQ(companion.use_count(), 1);
}

} // namespace
