#include "tools/render/MidiFile.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/tools/TestMidiFile.h"
#include "tools/render/Text.h"

namespace
{

using namespace testmidi;

/// Seconds and bytes in the order in which they are played.
std::string Describe(const MidiFile& file)
{
    std::string description;
    for (const MidiEvent& event : file.GetEvents())
    {
        description += text::Fixed(event.seconds, 3) + ":";
        for (const int byte : event.bytes)
            description.append(" ").append(std::to_string(byte));
        description += "; ";
    }
    return description + "end " + text::Fixed(file.GetSeconds(), 3);
}

/// What the reader says against @p bytes; empty if nothing.
std::string Complaint(const Bytes& bytes)
{
    try
    {
        const MidiFile file(bytes);
        return {};
    }
    catch (const MException& failure)
    {
        return failure.text.ToUTF8();
    }
}

Bytes Repeat(std::uint8_t byte, std::size_t count)
{
    Bytes bytes;
    bytes.resize(count, byte);
    return bytes;
}

TEST(MidiFile, ReadsWhatCanBeHeard)
{
    struct Case
    {
        const char* what;
        Bytes bytes;
        const char* expected;
    };
    const Bytes on = {0, 0x90, 60, 100};
    const Bytes off = {96, 0x80, 60, 64};
    const Case cases[] = {
        {"a note", File(on + off, 96), "0.000: 144 60 100; 0.500: 128 60 64; end 1.000"},
        {"messages of two bytes", File({0, 0xC3, 5, 96, 0xD1, 7}),
         "0.000: 195 5 0; 0.500: 209 7 0; end 0.500"},
        {"running status", File({0, 0x91, 60, 9, 96, 60, 0, 96, 64, 9}),
         "0.000: 145 60 9; 0.500: 145 60 0; 1.000: 145 64 9; end 1.000"},
        {"running status across a text", File(on + Bytes{0, 0xFF, 1, 1, 'x', 96, 60, 0}),
         "0.000: 144 60 100; 0.500: 144 60 0; end 0.500"},
        {"tempo changes", File(Tempo(1000000) + on + Bytes{96, 0xFF, 0x51, 3, 3, 208, 144} + off),
         "0.000: 144 60 100; 1.250: 128 60 64; end 1.250"},
        {"two tempo changes at once", File(Tempo(9000) + Tempo(1000000) + off),
         "1.000: 128 60 64; end 1.000"},
        {"a tempo change in the second track",
         Header(1, 2, 96) + Track(off) + Track(Tempo(2000000)), "2.000: 128 60 64; end 2.000"},
        {"tracks in the order of time, the first one first",
         Header(1, 3, 96) + Track({96, 0x90, 1, 1, 96, 0x90, 2, 2}) +
             Track({0, 0x90, 3, 3, 96, 0x90, 4, 4}) + Track({96, 0x90, 5, 5}, 127),
         "0.000: 144 3 3; 0.500: 144 1 1; 0.500: 144 4 4; 0.500: 144 5 5; 1.000: 144 2 2; "
         "end 1.161"},
        {"times of several bytes", File({0x81, 0x40, 0x90, 60, 1, 0x80, 0x80, 0x80, 0x60, 60, 0}),
         "1.000: 144 60 1; 1.500: 144 60 0; end 1.500"},
        {"a long text", File(Bytes{0, 0xFF, 1, 0x82, 0x2C} + Repeat('x', 300) + on),
         "0.000: 144 60 100; end 0.000"},
        {"system exclusive messages",
         File(Bytes{0, 0xF0, 2, 1, 0xF7, 96, 0xF7, 0, 0, 0xF7, 1, 0xF8} + on),
         "0.500: 144 60 100; end 0.500"},
        {"chunks of other types",
         Header(1, 2, 96) + Chunk("XFIH", {1, 2}) + Track(on) + Chunk("DATA", {}) + Track(off),
         "0.000: 144 60 100; 0.500: 128 60 64; end 0.500"},
        {"a longer header", Chunk("MThd", {0, 0, 0, 1, 0, 96, 1, 2}) + Track(off),
         "0.500: 128 60 64; end 0.500"},
        {"bytes behind the end of track", Header(0, 1, 96) + Chunk("MTrk", {0, 0xFF, 0x2F, 0, 9}),
         "end 0.000"},
        {"bytes behind the last track", File(off) + Bytes{1, 2, 3}, "0.500: 128 60 64; end 0.500"},
    };
    for (const Case& row : cases)
    {
        ASSERT_EQ(Complaint(row.bytes), "") << row.what;
        EXPECT_EQ(Describe(MidiFile(row.bytes)), row.expected) << row.what;
    }
}

TEST(MidiFile, RefusesWhatItCannotPlay)
{
    struct Case
    {
        const char* what;
        Bytes bytes;
        const char* complaint; ///< part of it
    };
    const Bytes track = Track({0, 0x90, 60, 100});
    const Bytes header = Header(0, 1, 96);
    const Bytes longest = {0xFF, 0xFF, 0xFF, 0x7F, 0x90, 1, 1};
    const Case cases[] = {
        {"another kind of file", {'R', 'I', 'F', 'F', 0, 0}, "not a MIDI file"},
        {"format 2", Header(2, 1, 96) + track, "format 2"},
        {"format 3", Header(3, 1, 96) + track, "unknown format, 3"},
        {"no tracks", Header(1, 0, 96), "no tracks"},
        {"no ticks", Header(0, 1, 0) + track, "no ticks per quarter"},
        {"SMPTE time", Header(0, 1, 0xE728) + track, "SMPTE"},
        {"short header", Chunk("MThd", {0, 0, 0, 1}) + track, "header is too short"},
        {"missing track", Header(1, 2, 96) + track, "track 2 is missing"},
        {"no end of track", header + Chunk("MTrk", {0, 0x90, 60, 100}), "track 1 has no end"},
        {"empty track", header + Chunk("MTrk", {}), "track 1 has no end"},
        {"data byte first", header + Chunk("MTrk", {0, 60, 100}), "data byte"},
        {"status byte as data", File({0, 0x90, 60, 0x90}), "begins inside another"},
        {"system message", File({0, 0xF8}), "cannot hold"},
        {"time of five bytes", File({0x81, 0x81, 0x81, 0x81, 0, 0x90, 60, 1}), "four bytes"},
        {"text beyond the track", File({0, 0xFF, 1, 99, 'x'}), "middle of an event"},
        {"exclusive message beyond the track", File({0, 0xF0, 99, 1}), "middle of an event"},
        {"tempo of two bytes", File({0, 0xFF, 0x51, 2, 1, 1}), "tempo"},
        {"tempo of nothing", File(Tempo(0)), "tempo"},
        {"too many ticks",
         File(longest + longest + longest + longest + longest + longest + longest + longest +
              Bytes{9, 0x90, 1, 1}),
         "2147483647 ticks"},
    };
    for (const Case& row : cases)
        EXPECT_NE(Complaint(row.bytes).find(row.complaint), std::string::npos)
            << row.what << ": " << Complaint(row.bytes);
}

TEST(MidiFile, RefusesATruncatedFileWhereverItIsCut)
{
    const Bytes whole =
        Header(1, 2, 96) + Track(Tempo(500000) + Bytes{0, 0xFF, 1, 3, 'a', 'b', 'c'}) +
        Track({0, 0x90, 60, 100, 0x81, 0x40, 60, 0, 0, 0xF0, 2, 1, 0xF7, 0, 0xC0, 1});
    ASSERT_EQ(Complaint(whole), "");
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_NE(
            Complaint(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))),
            "")
            << length;
}

TEST(MidiFile, BridgesGapsThatTakeMoreThanFourBytes)
{
    // Two texts of the longest wait each, of which only the wait remains.
    const Bytes wait = {0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 1, 0};
    const MidiFile file(Header(0, 1, 32767) + Track(wait + wait + Bytes{1, 0x90, 60, 1}));
    ASSERT_EQ(file.GetEvents().size(), 1u);
    EXPECT_DOUBLE_EQ(file.GetEvents()[0].seconds, (2.0 * 0x0FFFFFFF + 1.0) / (2.0 * 32767.0));
}

TEST(MidiFile, TakesTimeInProportionToItsSize)
{
    // Notes before tempo changes, which is the worst case of libraries.
    Bytes notes;
    Bytes tempos;
    for (int i = 0; i < 100000; ++i)
    {
        notes = std::move(notes) + Bytes{1, 0x90, 60, 1};
        if (i % 10 == 0)
            tempos = std::move(tempos) + Tempo(500000) + Bytes{10, 0xFF, 1, 0};
    }
    const auto start = std::chrono::steady_clock::now();
    const MidiFile file(Header(1, 2, 96) + Track(notes) + Track(tempos));
    EXPECT_EQ(file.GetEvents().size(), 100000u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(MidiFile, RefusesMoreEventsThanAnyMusicHas)
{
    Bytes events = {0, 0x90, 60, 1};
    for (int i = 0; i < 1 << 20; ++i)
        events.insert(events.end(), {0, 60, 1});
    EXPECT_NE(Complaint(File(events)).find("more than 1048576 events"), std::string::npos);
}

} // namespace
