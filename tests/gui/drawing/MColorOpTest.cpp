#include "gui/drawing/MColorOp.h"

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"

namespace
{

TEST(MColorOp, IsFoundByItsName)
{
    for (int op = 0; op <= 16; ++op)
        EXPECT_EQ(static_cast<int>(ParseColorOp(NameOf(static_cast<MColorOp>(op)))), op);
    EXPECT_EQ(ParseColorOp("addandoverflow"), MColorOp::AddAndOverflow);
    EXPECT_EQ(ParseColorOp("Difference"), MColorOp::Difference);
    EXPECT_TRUE(NameOf(static_cast<MColorOp>(17)).IsEmpty());
    EXPECT_EQ(ParseBitmapFill("VPattern"), MBitmapFill::VPattern);
    EXPECT_EQ(ParseHorizontalAlignment("Center"), MAlignment::Center);
    EXPECT_EQ(ParseHorizontalAlignment("Right"), MAlignment::Right);
    EXPECT_EQ(ParseVerticalAlignment("Top"), MAlignment::Top);
}

template <typename Parse>
void ExpectFailure(Parse parse, const char* name, const char* text)
{
    try
    {
        parse(name);
        ADD_FAILURE() << name;
    }
    catch (const MException& failure)
    {
        EXPECT_EQ(failure.text.ToUTF8(), text);
        EXPECT_EQ(failure.code, MException::BadData);
    }
}

TEST(MColorOp, TellsWhichNameIsNone)
{
    ExpectFailure(ParseColorOp, "Blend", "Invalid MColorOp identifier to parse (Blend).");
    ExpectFailure(ParseBitmapFill, "", "Invalid MBitmapFill identifier to parse ().");
    ExpectFailure(ParseHorizontalAlignment, "Top", "Invalid MAlignment identifier to parse (Top).");
    ExpectFailure(ParseVerticalAlignment, "Left", "Invalid MAlignment identifier to parse (Left).");
}

} // namespace
