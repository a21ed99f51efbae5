#include "foundation/strings/MStringSlab.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

/// Texts of all lengths up to the longest that share a slab, and some beyond.
std::vector<std::string> Spellings()
{
    std::vector<std::string> spellings;
    for (std::size_t length = 0; length < 200; ++length)
        spellings.emplace_back(length, static_cast<char>('a' + length % 26));
    return spellings;
}

MString Make(MStringSlab& slab, const std::string& spelling)
{
    return slab.Make(std::u16string(spelling.begin(), spelling.end()));
}

TEST(MStringSlab, MakesTextsThatOutliveIt)
{
    std::vector<MString> texts;
    {
        MStringSlab slab;
        for (const std::string& spelling : Spellings())
            texts.push_back(Make(slab, spelling));
    }
    for (std::size_t i = 0; i < texts.size(); i += 2) // in part the last of their slabs
        texts[i].Clear();
    for (std::size_t i = 1; i < texts.size(); i += 2)
        EXPECT_EQ(texts[i].ToUTF8(), Spellings()[i]);
}

TEST(MStringSlab, FillsASlabWithTheShortestTexts)
{
    MStringSlab slab;
    std::vector<MString> texts;
    for (std::size_t i = 0; i < MStringSlab::SlabBytes; ++i)
        texts.push_back(slab.Make(u"x"));
    for (const MString& text : texts)
        ASSERT_EQ(text.ToUTF8(), "x");
}

TEST(MStringSlab, LeavesATextThatIsChangedToItself)
{
    MStringSlab slab;
    MString first = Make(slab, "first");
    const MString copy = first;
    const MString second = Make(slab, "second");
    first.Append("!");
    first.AppendFill(500, u'?');
    EXPECT_EQ(copy.ToUTF8(), "first");
    EXPECT_EQ(second.ToUTF8(), "second");
    EXPECT_EQ(first.Mid(0, 7).ToUTF8(), "first!?");
}

} // namespace
