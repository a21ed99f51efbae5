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

    /// The number of a source that is a note.
    static constexpr int Note = MMIDIControllerAssignment::PitchBend + 1;

    /// Where an event came from.
    struct Source
    {
        int channel; ///< plus 1
        int number;  ///< as MMIDIControllerAssignment::controller, or Note
    };

    explicit MIDIControllers(MAudioPlugin& controlledPlugin) noexcept : plugin(controlledPlugin) {}

    /// @p moving is -1.0 to 1.0.
    void OnSource(int channel, int number, double moving);
    /// A note that begins; @p semitones of the pitch wheel.
    void OnNote(int channel, int note, double semitones);

    /// Under "Controllers" and "NoteControllers" of @p settings.
    void Store(MXMLItem& settings) const;
    void Load(MXMLItem& settings);

    /// Takes the oldest source that was not taken yet; false if there is none. One thread, which is
    /// that of LearnController and LearnNoteChannel, too.
    bool TakeSource(Source& source) noexcept;
    /// "Learn": channel and controller of row @p index become those of the last source but notes
    /// that was not taken yet; the channel of a note controller becomes that of the last note.
    /// Takes all sources, so an editor takes those from before as it begins. False if there was
    /// none, or no such row. Under the processing lock, not on the audio thread.
    bool LearnController(int index) noexcept;
    bool LearnNoteChannel(int index) noexcept;
    /// Lets row @p index move parameter @p parameterIndex of the plugin. Likewise.
    void AssignController(int index, int parameterIndex);
    void AssignNoteController(int index, int parameterIndex);

    std::array<MMIDIControllerAssignment, AssignmentCount> assignments;
    std::array<MMIDINoteController, NoteControllerCount> noteControllers;

private:
    static constexpr std::uint32_t RingLength = 256;

    void PostSource(int channel, int number) noexcept;
    /// The last of those not taken yet that are, or are not, notes. Takes all.
    bool TakeLast(bool isNote, Source& source) noexcept;

    MAudioPlugin& plugin;
    /// Packed sources. The writer may overtake a reader that sleeps: then the oldest are gone.
    std::array<std::atomic<std::uint32_t>, RingLength> ring{};
    std::atomic<std::uint32_t> written = 0;
    std::uint32_t taken = 0;
};
