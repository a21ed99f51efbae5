#include "tools/render/NotePlan.h"

#include <gtest/gtest.h>

namespace
{

TEST(NotePlan, KeepsTheLongestPieceOfEachNote)
{
    const ScheduledMessage messages[] = {
        {100, {0xE0, 0x00, 0x7F}}, // before the first note, so it counts from its start on
        {200, {0x90, 60, 100}},    {250, {0x80, 60, 0}}, // changes nothing
        {300, {0x90, 62, 0}},                            // a note-off
        {400, {0x95, 64, 1}},                            // on another channel
        {450, {0xE3, 0x00, 0x00}}, {750, {0xE3, 0x00, 0x40}},
        {800, {0x90, 65, 100}},                             // replaced at once
        {800, {0x90, 66, 100}},    {1500, {0x90, 67, 100}}, // behind the end
    };
    const auto notes = PlanNotes(messages, 1000);
    ASSERT_EQ(notes.size(), 4u);

    EXPECT_EQ(notes[0].note, 60);
    EXPECT_EQ(notes[0].startFrame, 200);
    EXPECT_EQ(notes[0].pieceBegin, 200);
    EXPECT_EQ(notes[0].pieceEnd, 400);
    EXPECT_NEAR(notes[0].wheel, 127 * 256 / 16383.0 - 1.0, 1e-4);

    EXPECT_EQ(notes[1].note, 64);
    EXPECT_EQ(notes[1].startFrame, 400);
    EXPECT_EQ(notes[1].pieceBegin, 450);
    EXPECT_EQ(notes[1].pieceEnd, 750);
    EXPECT_EQ(notes[1].wheel, -1.0);

    EXPECT_EQ(notes[2].note, 65);
    EXPECT_EQ(notes[2].pieceBegin, notes[2].pieceEnd);

    EXPECT_EQ(notes[3].note, 66);
    EXPECT_EQ(notes[3].pieceBegin, 800);
    EXPECT_EQ(notes[3].pieceEnd, 1000);
    EXPECT_NEAR(notes[3].wheel, 0.0, 1e-4);
}

} // namespace
