#include "tools/render/NotePlan.h"

#include "shell/midi/MMIDIProcessor.h"

namespace
{

/// Collects notes from decoded MIDI.
class Planner final : public MMIDIProcessorBase
{
public:
    void SetFrame(std::int64_t newFrame) noexcept { frame = newFrame; }

    void ProcessNote(int /*offset*/, double /*time*/, int /*channel*/, int note,
                     double /*velocity*/, bool on) override
    {
        if (!on)
            return;
        EndPiece();
        notes.push_back({.startFrame = frame,
                         .note = note,
                         .pieceBegin = frame,
                         .pieceEnd = frame,
                         .wheel = wheel});
    }

    void ProcessPitchWheel(int /*offset*/, double /*time*/, int /*channel*/, double value) override
    {
        EndPiece();
        wheel = value;
    }

    std::vector<PlannedNote> Finish(std::int64_t totalFrames)
    {
        frame = totalFrames;
        EndPiece();
        return std::move(notes);
    }

private:
    void EndPiece()
    {
        if (!notes.empty() && frame - pieceBegin > notes.back().pieceEnd - notes.back().pieceBegin)
        {
            notes.back().pieceBegin = pieceBegin;
            notes.back().pieceEnd = frame;
            notes.back().wheel = wheel;
        }
        pieceBegin = frame;
    }

    std::int64_t frame = 0;
    std::int64_t pieceBegin = 0;
    double wheel = 0.0;
    std::vector<PlannedNote> notes;
};

} // namespace

std::vector<PlannedNote> PlanNotes(std::span<const ScheduledMessage> messages,
                                   std::int64_t totalFrames)
{
    MMIDIProcessor processor;
    Planner planner;
    processor.AddListener(planner, MMIDIProcessorBase::AllChannels);
    for (const ScheduledMessage& message : messages)
    {
        if (message.frame >= totalFrames)
            break;
        planner.SetFrame(message.frame);
        processor.ProcessMIDIEvent(0, message.bytes.data());
    }
    return planner.Finish(totalFrames);
}
