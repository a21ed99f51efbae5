#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "shell/MMIDIControllerAssignment.h"

class MAudioPlugin;
class MXMLItem;

/// What MIDI moves in a plugin: sixteen assignments of controllers and four of notes.
/// Events, edits and loads come under the processing lock. "Learn" takes the last source from a
/// ring that neither side waits for.
class MIDIControllers
{
public:
    static constexpr int AssignmentCount = 16;
    static constexpr int NoteControllerCount = 4;

    /// Where an event came from.
    struct Source
    {
        int channel; ///< plus 1
        int number;  ///< as MMIDIControllerAssignment::controller
    };

    explicit MIDIControllers(MAudioPlugin& controlledPlugin) noexcept : plugin(controlledPlugin) {}

    /// @p moving is -1.0 to 1.0.
    void OnSource(int channel, int number, double moving);
    /// A note that begins; @p semitones of the pitch wheel.
    void OnNote(int channel, int note, double semitones);

    /// Under "Controllers" and "NoteControllers" of @p settings.
    void Store(MXMLItem& settings) const;
    void Load(MXMLItem& settings);

    /// Takes the oldest source that was not taken yet; false if there is none. One thread.
    bool TakeSource(Source& source) noexcept;

    std::array<MMIDIControllerAssignment, AssignmentCount> assignments;
    std::array<MMIDINoteController, NoteControllerCount> noteControllers;

private:
    static constexpr std::uint32_t RingLength = 256;

    MAudioPlugin& plugin;
    /// Packed sources. The writer may overtake a reader that sleeps: then the oldest are gone.
    std::array<std::atomic<std::uint32_t>, RingLength> ring{};
    std::atomic<std::uint32_t> written = 0;
    std::uint32_t taken = 0;
};
