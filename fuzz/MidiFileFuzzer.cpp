// Reads strangers' MIDI files. Whatever comes, events arrive in the order of time, or the reader
// refuses the file.

#include <cstdlib>
#include <span>

#include "foundation/threads/MException.h"
#include "tools/render/MidiFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try
    {
        const MidiFile file(std::span(data, size));
        double last = 0.0;
        for (const MidiEvent& event : file.GetEvents())
        {
            // The negation also catches what is no number.
            const bool isSound = event.bytes[0] >= 0x80 && event.bytes[0] < 0xF0 &&
                                 event.bytes[1] < 0x80 && event.bytes[2] < 0x80;
            if (!(event.seconds >= last) || !isSound)
                std::abort();
            last = event.seconds;
        }
        if (!(file.GetSeconds() >= last))
            std::abort();
    }
    catch (const MException&) // refused, as it may be
    {
    }
    return 0;
}
