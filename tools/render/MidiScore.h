#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// What can be heard of a MIDI file: channel messages and tempo changes in the order of time, in
/// the order of the tracks within one tick.
struct MidiScore
{
    // Larger files are no music, and would take gigabytes when they are loaded.
    static constexpr std::size_t MaxBytes = 64u << 20;
    static constexpr std::size_t MaxEvents = 1u << 20;
    static constexpr std::int64_t MaxTicks = 0x7FFFFFFF;

    struct Event
    {
        std::uint32_t tick;
        std::uint8_t length;               ///< of bytes in use
        std::array<std::uint8_t, 6> bytes; ///< from the status byte on, as the file has them
    };

    /// Reads @p file, a standard MIDI file of format 0 or 1. Chunks of unknown types, system
    /// exclusive messages and other meta events are passed over.
    /// @throws MException that says what is wrong, and in which track.
    static MidiScore Read(std::span<const std::uint8_t> file);

    std::uint32_t ticksPerQuarter = 1; ///< 1 to 32767
    std::uint32_t endTick = 0;         ///< of the longest track
    std::vector<Event> events;
};
