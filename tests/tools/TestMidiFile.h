#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// Pieces from which tests put MIDI files together.
namespace testmidi
{

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes first, const Bytes& second);

Bytes Header(int format, int tracks, int division);
/// A chunk of type @p id round @p data.
Bytes Chunk(const std::string& id, const Bytes& data);
/// A track of @p events; an end of track follows after @p endDelta ticks.
Bytes Track(const Bytes& events, std::uint8_t endDelta = 0);
/// One track at 96 ticks a quarter, that is 192 a second.
Bytes File(const Bytes& events, std::uint8_t endDelta = 0);

/// A tempo change at once.
Bytes Tempo(std::uint32_t microsecondsPerQuarter);

} // namespace testmidi
