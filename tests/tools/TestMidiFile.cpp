#include "tests/tools/TestMidiFile.h"

namespace testmidi
{

Bytes operator+(Bytes first, const Bytes& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes Header(int format, int tracks, int division)
{
    const auto low = [](int number) { return static_cast<std::uint8_t>(number); };
    return Chunk("MThd", {low(format >> 8), low(format), low(tracks >> 8), low(tracks),
                          low(division >> 8), low(division)});
}

Bytes Chunk(const std::string& id, const Bytes& data)
{
    Bytes chunk(id.begin(), id.end());
    for (int shift = 24; shift >= 0; shift -= 8)
        chunk.push_back(static_cast<std::uint8_t>(data.size() >> shift));
    return std::move(chunk) + data;
}

Bytes Track(const Bytes& events, std::uint8_t endDelta)
{
    return Chunk("MTrk", events + Bytes{endDelta, 0xFF, 0x2F, 0});
}

Bytes File(const Bytes& events, std::uint8_t endDelta)
{
    return Header(0, 1, 96) + Track(events, endDelta);
}

Bytes Tempo(std::uint32_t microsecondsPerQuarter)
{
    return {0,
            0xFF,
            0x51,
            3,
            static_cast<std::uint8_t>(microsecondsPerQuarter >> 16),
            static_cast<std::uint8_t>(microsecondsPerQuarter >> 8),
            static_cast<std::uint8_t>(microsecondsPerQuarter)};
}

} // namespace testmidi
