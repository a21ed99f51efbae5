#include "tools/render/MidiScore.h"

#include <algorithm>
#include <string>

#include "tools/render/ByteReader.h"
#include "tools/render/Failure.h"

namespace
{

constexpr std::uint8_t Meta = 0xFF;
constexpr std::uint8_t EndOfTrack = 0x2F;
constexpr std::uint8_t Tempo = 0x51;

/// Adds the events of one track to a score.
class TrackReader
{
public:
    TrackReader(ByteReader& trackBytes, MidiScore& target) : reader(trackBytes), score(target) {}

    void Read()
    {
        while (!ReadEvent())
            ;
        score.endTick = std::max(score.endTick, static_cast<std::uint32_t>(tick));
    }

private:
    /// Returns whether it was the end of the track.
    bool ReadEvent()
    {
        if (reader.IsAtEnd())
            reader.Fail("has no end of track");
        tick += reader.Quantity();
        if (tick > MidiScore::MaxTicks)
            reader.Fail("lasts longer than 2147483647 ticks");

        // Strictly, meta events end running status. Files that rely on it all the same are played
        // as they are meant.
        std::uint8_t status = runningStatus;
        if (reader.Peek() >= 0x80)
            status = reader.Byte();
        else if (status == 0)
            reader.Fail("has a data byte where an event should begin");

        if (status == Meta)
            return ReadMeta();
        if (status == 0xF0 || status == 0xF7)
            reader.Bytes(reader.Quantity()); // system exclusive
        else if (status > 0xF0)
            reader.Fail("has an event that MIDI files cannot hold");
        else
            ReadChannelMessage(status);
        return false;
    }

    bool ReadMeta()
    {
        const std::uint8_t type = reader.Byte();
        const auto data = reader.Bytes(reader.Quantity());
        if (type == EndOfTrack)
            return true;
        if (type != Tempo)
            return false;
        if (data.size() != 3 || (data[0] | data[1] | data[2]) == 0)
            reader.Fail("has a tempo change that gives no tempo");
        Add({static_cast<std::uint32_t>(tick), 6, {Meta, Tempo, 3, data[0], data[1], data[2]}});
        return false;
    }

    void ReadChannelMessage(std::uint8_t status)
    {
        const std::uint8_t kind = status & 0xF0;
        const bool isShort = kind == 0xC0 || kind == 0xD0;
        const auto data = reader.Bytes(isShort ? 1 : 2);
        if (std::ranges::any_of(data, [](std::uint8_t byte) { return byte >= 0x80; }))
            reader.Fail("has an event that begins inside another");
        runningStatus = status;
        Add({static_cast<std::uint32_t>(tick),
             static_cast<std::uint8_t>(1 + data.size()),
             {status, data.front(), data.back()}});
    }

    void Add(const MidiScore::Event& event)
    {
        if (score.events.size() == MidiScore::MaxEvents)
            throw Failure("it has more than " + std::to_string(MidiScore::MaxEvents) + " events");
        score.events.push_back(event);
    }

    ByteReader& reader;
    MidiScore& score;
    std::int64_t tick = 0;
    std::uint8_t runningStatus = 0;
};

struct Header
{
    std::uint32_t tracks;
    std::uint32_t ticksPerQuarter;
};

/// The bytes of the chunk of type @p id that comes next; others before it are passed over.
std::span<const std::uint8_t> TakeChunk(ByteReader& file, const std::string& id,
                                        const std::string& name)
{
    for (;;)
    {
        if (file.GetRest() < 8)
            throw Failure("it is cut off: " + name + " is missing");
        const auto type = file.Bytes(4);
        const std::uint32_t length = file.Number(4);
        const bool isWanted = std::ranges::equal(
            type, id, {}, {}, [](char character) { return static_cast<std::uint8_t>(character); });
        if (length > file.GetRest())
            throw Failure("it is cut off: " + (isWanted ? name : std::string("a chunk")) +
                          " should have " + std::to_string(length) + " bytes, but only " +
                          std::to_string(file.GetRest()) + " follow");
        const auto bytes = file.Bytes(length);
        if (isWanted)
            return bytes;
    }
}

Header ReadHeader(ByteReader& file)
{
    ByteReader header(TakeChunk(file, "MThd", "the header"), "the header");
    if (header.GetRest() < 6)
        header.Fail("is too short");
    const std::uint32_t format = header.Number(2);
    const std::uint32_t tracks = header.Number(2);
    const std::uint32_t division = header.Number(2);
    if (format == 2)
        throw Failure("it is of format 2 (independent patterns); only 0 and 1 can be played");
    if (format > 2)
        header.Fail("names an unknown format, " + std::to_string(format));
    if (tracks == 0)
        throw Failure("it has no tracks");
    if (division >= 0x8000)
        throw Failure("it counts time in SMPTE frames; only ticks per quarter can be played");
    if (division == 0)
        header.Fail("gives no ticks per quarter");
    return {tracks, division};
}

} // namespace

MidiScore MidiScore::Read(std::span<const std::uint8_t> file)
{
    constexpr std::array<std::uint8_t, 4> Magic{'M', 'T', 'h', 'd'};
    if (file.size() < Magic.size() || !std::ranges::equal(file.first(Magic.size()), Magic))
        throw Failure("it is not a MIDI file");
    if (file.size() > MaxBytes)
        throw Failure("it has more than 64 MiB");

    ByteReader fileReader(file, "the file");
    const Header header = ReadHeader(fileReader);
    MidiScore score;
    score.ticksPerQuarter = header.ticksPerQuarter;
    for (std::uint32_t track = 1; track <= header.tracks; ++track)
    {
        const std::string name = "track " + std::to_string(track);
        ByteReader reader(TakeChunk(fileReader, "MTrk", name), name);
        TrackReader(reader, score).Read();
    }
    std::ranges::stable_sort(score.events, {}, &Event::tick);
    return score;
}
