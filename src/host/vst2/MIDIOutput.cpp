#include "host/vst2/MIDIOutput.h"

#include <algorithm>
#include <span>
#include <tuple>

using namespace Vst2;

MIDIOutput::MIDIOutput() : record(std::make_unique<Record>())
{
    events.reserve(MIDIQueue::Capacity);
}

const VstEvents* MIDIOutput::Pack() noexcept
{
    const std::vector<MIDIQueue::Message>& messages = queue.Take();
    if (messages.empty())
        return nullptr;
    events.clear();
    for (const auto& [offset, bytes] : messages)
    {
        VstMidiEvent& event = events.emplace_back();
        event.deltaFrames = offset;
        event.midiData = {bytes[0], bytes[1], bytes[2]};
    }

    const std::span<VstEvent*> pointers(record->head.events.data(), events.size());
    std::ranges::transform(events, pointers.begin(),
                           [](VstMidiEvent& event) { return reinterpret_cast<VstEvent*>(&event); });
    // Their addresses tell in which order those of one offset came.
    std::ranges::sort(pointers, {},
                      [](const VstEvent* event) { return std::tuple(event->deltaFrames, event); });
    record->head.numEvents = static_cast<std::int32_t>(events.size());
    return &record->head;
}
