#include "tools/render/NoteTable.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/tools/Signals.h"
#include "tools/render/InProcessPlugin.h"

namespace
{

constexpr int Rate = 48000;

/// The table for @p notes played as @p sound, which comes in blocks of @p blockFrames.
std::string TableOf(const std::vector<PlannedNote>& notes, std::span<const float> sound,
                    std::size_t blockFrames)
{
    const InProcessPlugin plugin; // at its defaults
    NoteTable table(notes, ExpectedPitch(plugin, 2), Rate);
    for (; !sound.empty(); sound = sound.subspan(std::min(blockFrames, sound.size())))
        table.Feed(sound.first(std::min(blockFrames, sound.size())));
    std::ostringstream stream;
    table.Print(stream);
    return stream.str();
}

TEST(NoteTable, TellsHowFarTheSoundIsFromTheNote)
{
    const double sharpHz = 440.0 * std::exp2(10.0 / 1200.0); // 10 cent above A4
    std::vector<float> sound = MakeSine(12000, sharpHz, Rate);
    const auto second = MakeSine(12000, 261.6255653, Rate);
    sound.insert(sound.end(), second.begin(), second.end());
    const std::vector<PlannedNote> notes = {
        {.startFrame = 0, .note = 69, .pieceBegin = 0, .pieceEnd = 12000},
        {.startFrame = 12000, .note = 61, .pieceBegin = 12000, .pieceEnd = 12000},
        {.startFrame = 12000, .note = 60, .pieceBegin = 12000, .pieceEnd = 24000},
    };
    for (const std::size_t blockFrames : {1u, 7u, 512u, 100000u})
        EXPECT_EQ(TableOf(notes, sound, blockFrames),
                  " Start (s)  Note        Expected (Hz) Measured (Hz) Error (cent)\n"
                  "    0.0000    69  A4         440.0000      442.5489    +10.00000\n"
                  "    0.2500    61  C#4        277.1826             -            -\n"
                  "    0.2500    60  C4         261.6256      261.6256      0.00000\n"
                  "Worst error: 10.00000 cent (A4 at 0.0000 s; 2 of 3 notes measured)\n")
            << blockFrames;
}

TEST(NoteTable, CountsTheWheel)
{
    const auto sound = MakeSine(24000, 440.0, Rate);
    const std::string table =
        TableOf({{.startFrame = 0, .note = 70, .pieceBegin = 0, .pieceEnd = 24000, .wheel = -0.5}},
                sound, 512);
    EXPECT_NE(table.find("440.0000      440.0000      0.00000\n"), std::string::npos) << table;
}

TEST(NoteTable, CutsLongTablesButCountsAllNotes)
{
    constexpr std::int64_t Frames = 480;
    std::vector<PlannedNote> notes(61);
    for (std::int64_t begin = 0; PlannedNote & note : notes)
    {
        note = {.startFrame = begin, .note = 69, .pieceBegin = begin, .pieceEnd = begin + Frames};
        begin += Frames;
    }
    std::vector<float> sound = MakeSine(61u * Frames, 440.0, Rate);
    std::fill(sound.end() - Frames, sound.end(), 0.0f);
    const std::string table = TableOf(notes, sound, 512);
    // A heading, fifty notes, one line for the others and one for the worst.
    EXPECT_EQ(std::ranges::count(table, '\n'), 53);
    EXPECT_NE(table.find("11 more notes"), std::string::npos);
    EXPECT_NE(table.find("60 of 61 notes measured"), std::string::npos);

    notes.pop_back();
    EXPECT_EQ(std::ranges::count(TableOf(notes, sound, 512), '\n'), 62);
}

TEST(NoteTable, ComparesNothingAboveHalfTheRate)
{
    // Such a tone comes out as another one.
    const std::string table =
        TableOf({{.startFrame = 0, .note = 127, .pieceBegin = 0, .pieceEnd = 24000, .wheel = 6.0}},
                MakeSine(24000, 20000.0, Rate), 512);
    EXPECT_NE(table.find("25087.7079    20000.0000            -\n"), std::string::npos) << table;
    EXPECT_NE(table.find("none of the 1 notes"), std::string::npos) << table;
}

} // namespace
