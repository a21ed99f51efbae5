#include "tools/render/MidiFile.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

#include <smf.h>

#include "tools/render/Failure.h"
#include "tools/render/MidiScore.h"
#include "tools/render/PlainMidiFile.h"
#include "tools/render/ReadFile.h"

namespace
{

/// Keeps what libsmf has to say in this scope, which would otherwise go to stderr.
class SmfMessages
{
public:
    SmfMessages()
        : handler(g_log_set_handler(Domain,
                                    static_cast<GLogLevelFlags>(
                                        G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION),
                                    &OnMessage, this))
    {
    }
    ~SmfMessages() { g_log_remove_handler(Domain, handler); }
    SmfMessages(const SmfMessages&) = delete;
    SmfMessages& operator=(const SmfMessages&) = delete;

    const std::string& GetFirst() const noexcept { return first; }

private:
    static constexpr const char* Domain = "libsmf";

    static void OnMessage(const char* /*domain*/, GLogLevelFlags /*level*/, const char* message,
                          void* self)
    {
        std::string& first = static_cast<SmfMessages*>(self)->first;
        if (first.empty())
            first = message;
    }

    std::string first;
    unsigned handler;
};

/// smf_delete alone searches each event from the front of its track: the square of their number.
struct SmfDeleter
{
    void operator()(smf_t* song) const
    {
        for (int i = 1; i <= song->number_of_tracks; ++i)
        {
            smf_track_t* const track = smf_get_track_by_number(song, i);
            for (int k = 1; k <= track->number_of_events; ++k)
            {
                smf_event_t* const event = smf_track_get_event_by_number(track, k);
                std::free(event->midi_buffer);
                std::free(event);
            }
            g_ptr_array_set_size(track->events_array, 0);
            track->number_of_events = 0;
        }
        smf_delete(song);
    }
};

} // namespace

MidiFile MidiFile::Load(const std::filesystem::path& path)
{
    try
    {
        return MidiFile(ReadFile(path, MidiScore::MaxBytes));
    }
    catch (const MException& failure)
    {
        throw Failure("cannot play " + Quoted(path), failure.text.ToUTF8());
    }
}

MidiFile::MidiFile(std::span<const std::uint8_t> file)
{
    const std::vector<std::uint8_t> plain = MakePlainMidiFile(MidiScore::Read(file));
    const SmfMessages messages;
    const std::unique_ptr<smf_t, SmfDeleter> song(
        smf_load_from_memory(plain.data(), static_cast<int>(plain.size())));
    if (!song)
        throw Failure("it cannot be read: " + messages.GetFirst());

    smf_rewind(song.get());
    while (const smf_event_t* const event = smf_get_next_event(song.get()))
    {
        seconds = event->time_seconds;
        if (smf_event_is_metadata(event) != 0)
            continue;
        MidiEvent& added = events.emplace_back(MidiEvent{event->time_seconds, {}});
        std::copy_n(event->midi_buffer,
                    std::min(event->midi_buffer_length, static_cast<int>(added.bytes.size())),
                    added.bytes.begin());
    }
}
