#pragma once

#include <cstdint>

/// What a plugin asks of the host standard that runs it. Each adapter implements it; a plugin
/// without one, as in a tool, asks nothing.
class MAudioPluginAdapter
{
public:
    /// Reports that the user moved a parameter. GUI thread.
    virtual void SendAutomation(int index, double value01) = 0;
    virtual void SendBypassAutomation(bool isBypassed) = 0;
    /// Sends three bytes of MIDI to the host behind the present block. Audio thread.
    virtual void GenerateMIDIEvent(int offset, const std::uint8_t* bytes) = 0;
    /// Returns whether the host gave the editor this size, in pixels.
    virtual bool ChangeEditorSize(int width, int height) = 0;
    /// Tells the host that the latency is another. Not on the audio thread.
    virtual void LatencyChanged() {}
    /// Whether what the host sets is left out, as while its own echo comes back. Any thread.
    virtual bool IgnoresHostParameters() const noexcept { return false; }

protected:
    ~MAudioPluginAdapter() = default;
};
