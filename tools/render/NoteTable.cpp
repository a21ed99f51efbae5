#include "tools/render/NoteTable.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>

#include "tools/render/Text.h"

namespace
{

constexpr int HzDecimals = 4;
constexpr int CentDecimals = 5;

void PrintRow(std::ostream& stream, const std::string& start, const std::string& note,
              const std::string& name, const std::string& expected, const std::string& measured,
              const std::string& cents)
{
    stream << text::Right(start, 10) << text::Right(note, 6) << "  " << text::Left(name, 5)
           << text::Right(expected, 14) << text::Right(measured, 14) << text::Right(cents, 13)
           << '\n';
}

/// Rounded to nothing, an error has no sign.
std::string CentText(double cents)
{
    const std::string magnitude = text::Fixed(std::abs(cents), CentDecimals);
    const bool isNothing = magnitude == text::Fixed(0.0, CentDecimals);
    return isNothing ? magnitude : (cents < 0.0 ? '-' : '+') + magnitude;
}

} // namespace

NoteTable::NoteTable(std::span<const PlannedNote> plannedNotes, const ExpectedPitch& pitch,
                     int sampleRate, int edgeFrames)
    : rate(sampleRate)
{
    const auto maxFrames = static_cast<std::int64_t>(MaxMeasuredSeconds * rate);
    for (const PlannedNote& note : plannedNotes)
    {
        const std::int64_t begin = std::min(note.pieceBegin + edgeFrames, note.pieceEnd);
        const std::int64_t end = std::max(note.pieceEnd - edgeFrames, begin);
        rows.push_back({.seconds = static_cast<double>(note.startFrame) / rate,
                        .note = note.note,
                        .expectedHz = pitch.Hz(note.note, note.wheel),
                        .begin = begin,
                        .end = std::min(end, begin + maxFrames)});
    }
}

void NoteTable::Feed(std::span<const float> block)
{
    const std::int64_t blockEnd = position + static_cast<std::int64_t>(block.size());
    for (; current < rows.size() && rows[current].begin < blockEnd; ++current)
    {
        Row& row = rows[current];
        const std::int64_t from = std::max(row.begin, position);
        const std::int64_t to = std::min(row.end, blockEnd);
        if (from < to)
        {
            const auto piece = block.subspan(static_cast<std::size_t>(from - position),
                                             static_cast<std::size_t>(to - from));
            sound.insert(sound.end(), piece.begin(), piece.end());
        }
        if (row.end > blockEnd)
            break;
        FinishRow(row);
    }
    position = blockEnd;
}

void NoteTable::FinishRow(Row& row)
{
    row.measuredHz = meter.Measure(sound, rate);
    // Above half the rate no tone can sound as expected; what comes out is its mirror image.
    if (row.measuredHz && row.expectedHz < 0.5 * rate)
        row.cents = 1200.0 * std::log2(*row.measuredHz / row.expectedHz);
    sound.clear();
}

void NoteTable::Print(std::ostream& stream) const
{
    if (rows.empty())
    {
        stream << "No notes.\n";
        return;
    }
    PrintRow(stream, "Start (s)", "Note", "", "Expected (Hz)", "Measured (Hz)", "Error (cent)");
    const std::size_t shown = rows.size() > MaxNotes ? ShownNotes : rows.size();
    for (const Row& row : std::span(rows).first(shown))
        PrintRow(stream, text::Fixed(row.seconds, 4), std::to_string(row.note),
                 text::NoteName(row.note), text::Fixed(row.expectedHz, HzDecimals),
                 row.measuredHz ? text::Fixed(*row.measuredHz, HzDecimals) : "-",
                 row.cents ? CentText(*row.cents) : "-");
    if (shown < rows.size())
        stream << "       ... and " << rows.size() - shown << " more notes\n";
    PrintWorst(stream);
}

void NoteTable::PrintWorst(std::ostream& stream) const
{
    const Row* worst = nullptr;
    std::size_t count = 0;
    for (const Row& row : rows)
    {
        if (!row.cents)
            continue;
        ++count;
        if (worst == nullptr || std::abs(*row.cents) > std::abs(*worst->cents))
            worst = &row;
    }
    if (worst == nullptr)
    {
        stream << "Worst error: none of the " << rows.size() << " notes could be measured\n";
        return;
    }
    stream << "Worst error: " << text::Fixed(std::abs(*worst->cents), CentDecimals) << " cent ("
           << text::NoteName(worst->note) << " at " << text::Fixed(worst->seconds, 4) << " s; "
           << count << " of " << rows.size() << " notes measured)\n";
}
