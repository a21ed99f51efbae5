#pragma once

#include <cstdint>
#include <vector>

struct MidiScore;

/// Writes @p score as a MIDI file of one track, in which each event has its status byte.
///
/// The library that reads MIDI files takes much for granted: it counts the lengths of meta events
/// in one byte, loses tracks behind unknown chunks, plays what is left of a truncated one, and its
/// tempo map costs the square of the events unless all come in order. It only gets to see this.
std::vector<std::uint8_t> MakePlainMidiFile(const MidiScore& score);
