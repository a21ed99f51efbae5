#pragma once

#include <array>
#include <cstddef>

#include "host/MIDIQueue.h"
#include "host/vst3/Vst3Process.h"

class MAudioPlugin;

namespace Vst3
{

/// Takes the events of a host to the plugin. While the plugin prepares itself, which the audio
/// thread does not wait for, they are kept for the next block; what does not fit is dropped.
/// Owned by the adapter; the audio thread. Does not allocate.
class InputEvents
{
public:
    static constexpr std::size_t Capacity = 128;

    /// The events of a block of @p samples; @p list may be null.
    void Deliver(MAudioPlugin& plugin, IEventList* list, int samples);

private:
    static void Send(MAudioPlugin& plugin, const Event& event);

    std::array<Event, Capacity> kept{};
    std::size_t keptCount = 0;
};

/// What a channel message is for a host: a note, a pressure, or a controller. Returns whether it is
/// any of these.
bool MakeEvent(const MIDIQueue::Message& message, Event& event) noexcept;

} // namespace Vst3
