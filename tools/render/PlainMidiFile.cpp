#include "tools/render/PlainMidiFile.h"

#include <array>
#include <initializer_list>
#include <span>
#include <utility>

#include "tools/render/MidiScore.h"

namespace
{

constexpr std::uint32_t MaxQuantity = 0x0FFFFFFF; ///< 28 bits in four bytes

class PlainWriter
{
public:
    explicit PlainWriter(std::uint32_t ticksPerQuarter)
    {
        Put({'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 0, 0, 1});
        Put({static_cast<std::uint8_t>(ticksPerQuarter >> 8),
             static_cast<std::uint8_t>(ticksPerQuarter)});
        Put({'M', 'T', 'r', 'k', 0, 0, 0, 0});
    }

    void PutEvent(std::uint32_t tick, std::span<const std::uint8_t> event)
    {
        std::uint32_t delta = tick - lastTick;
        lastTick = tick;
        for (; delta > MaxQuantity; delta -= MaxQuantity)
        {
            PutQuantity(MaxQuantity);
            Put({0xFF, 0x01, 0}); // an empty text, to bridge the gap
        }
        PutQuantity(delta);
        bytes.insert(bytes.end(), event.begin(), event.end());
    }

    std::vector<std::uint8_t> Finish(std::uint32_t endTick)
    {
        PutEvent(endTick, std::array<std::uint8_t, 3>{0xFF, 0x2F, 0});
        const std::size_t length = bytes.size() - TrackStart;
        for (std::size_t i = 0; i < 4; ++i)
            bytes[TrackStart - 1 - i] = static_cast<std::uint8_t>(length >> 8 * i);
        return std::move(bytes);
    }

private:
    static constexpr std::size_t TrackStart = 22; ///< behind both chunk headers

    void Put(std::initializer_list<std::uint8_t> more) { bytes.insert(bytes.end(), more); }

    void PutQuantity(std::uint32_t quantity)
    {
        for (int shift = 21; shift > 0; shift -= 7)
            if (quantity >> shift != 0)
                bytes.push_back(static_cast<std::uint8_t>(quantity >> shift | 0x80));
        bytes.push_back(quantity & 0x7F);
    }

    std::vector<std::uint8_t> bytes;
    std::uint32_t lastTick = 0;
};

} // namespace

std::vector<std::uint8_t> MakePlainMidiFile(const MidiScore& score)
{
    PlainWriter writer(score.ticksPerQuarter);
    for (const MidiScore::Event& event : score.events)
        writer.PutEvent(event.tick, std::span(event.bytes).first(event.length));
    return writer.Finish(score.endTick);
}
