#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Receives MIDI as named operations and passes them on to its listeners.
/// Common arguments: offset in samples from the start of the block; time in quarters; channel 0 to
/// 15; note and controller number 0 to 127; velocity, pressure and controller values 0.0 to 1.0.
/// On the audio thread, or under the processing lock; listeners are added before the first event.
class MMIDIProcessorBase
{
public:
    static constexpr std::uint32_t AllChannels = 0xFFFFFFFFu;

    MMIDIProcessorBase() = default;
    virtual ~MMIDIProcessorBase() = default;
    MMIDIProcessorBase(const MMIDIProcessorBase&) = delete;
    MMIDIProcessorBase& operator=(const MMIDIProcessorBase&) = delete;

    /// @p listener, not owned, gets the events of each channel whose bit in @p channelMask is set.
    void AddListener(MMIDIProcessorBase& listener, std::uint32_t channelMask);

    virtual void ProcessNote(int offset, double time, int channel, int note, double velocity,
                             bool on);
    virtual void ProcessAllNotesOff(int offset, double time);
    virtual void ProcessChannelNotesOff(int offset, double time, int channel);
    /// @p note is -1 for pressure on the whole channel.
    virtual void ProcessPressure(int offset, double time, int channel, int note, double value);
    virtual void ProcessProgramChange(int offset, double time, int channel, int program);
    virtual void ProcessVolume(int offset, double time, int channel, double value);
    virtual void ProcessPan(int offset, double time, int channel, double value);
    /// @p value is -1.0 to 1.0.
    virtual void ProcessPitchWheel(int offset, double time, int channel, double value);
    /// Returns whether anyone took it.
    virtual bool ProcessMIDIController(int offset, double time, int channel, int number,
                                       double value);
    /// @p bytes points at a status byte and two data bytes, the last of which may be unused.
    /// Returns whether anyone took it.
    virtual bool ProcessMIDIEvent(int offset, const std::uint8_t* bytes);
    /// An event that is no MIDI, as the host standard lays it out; for all listeners, whatever
    /// their channels. Returns whether anyone took it.
    virtual bool ProcessRawEvent(int offset, std::span<const std::byte> event);

    double GetPressure() const noexcept { return lastPressure; }
    double GetVolume() const noexcept { return volume; }
    double GetPan() const noexcept { return pan; }
    int GetProgram() const noexcept { return lastProgram; }
    double GetPitch() const noexcept { return pitch; }

private:
    struct Listener
    {
        MMIDIProcessorBase* processor;
        std::uint32_t channelMask;
    };

    /// Calls the member @p operation of every listener to @p channel; returns whether one answered
    /// true.
    template <typename Result, typename... Arguments>
    bool Forward(int channel, Result (MMIDIProcessorBase::*operation)(Arguments...),
                 Arguments... arguments);

    std::vector<Listener> listeners;
    double lastPressure = 0.5; ///< on a whole channel
    double volume = 1.0;       ///< the last controller 7
    double pan = 0.5;          ///< the last controller 10
    int lastProgram = -1;      ///< -1 before any
    double pitch = 0.0;        ///< the last pitch wheel, -1.0 to 1.0
};
