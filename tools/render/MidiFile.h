#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

/// A channel message at its time; the third byte of a message of two is unused.
struct MidiEvent
{
    double seconds;
    std::array<std::uint8_t, 3> bytes;
};

/// The channel messages of a standard MIDI file in the order of time.
class MidiFile
{
public:
    /// @throws MException naming @p path, if it cannot be read or is no sound MIDI file.
    static MidiFile Load(const std::filesystem::path& path);

    /// @throws MException if @p file is no sound MIDI file.
    explicit MidiFile(std::span<const std::uint8_t> file);

    const std::vector<MidiEvent>& GetEvents() const noexcept { return events; }
    /// Where its longest track ends.
    double GetSeconds() const noexcept { return seconds; }

private:
    std::vector<MidiEvent> events;
    double seconds = 0.0;
};
