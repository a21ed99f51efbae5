#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/MIDIQueue.h"
#include "host/vst2/Vst2Records.h"

namespace Vst2
{

/// What a plugin sends to its host: messages gather in a queue and leave behind the block, all in
/// one record and by rising offset, as hosts do not sort. Packing does not allocate.
class MIDIOutput
{
public:
    MIDIOutput();

    MIDIQueue& GetQueue() noexcept { return queue; }
    /// Empties the queue into a record that is valid until the next call; null if there is nothing.
    /// Audio thread.
    const VstEvents* Pack() noexcept;

private:
    /// VstEvents with room for a full queue.
    struct Record
    {
        VstEvents head;
        std::array<VstEvent*, MIDIQueue::Capacity> more;
    };

    MIDIQueue queue;
    std::vector<VstMidiEvent> events; ///< of the record
    std::unique_ptr<Record> record;
};

} // namespace Vst2
