#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <vector>

#include "tools/render/ExpectedPitch.h"
#include "tools/render/FrequencyMeter.h"
#include "tools/render/NotePlan.h"

/// Measures each planned note from the rendered sound while it comes, and sets the result against
/// the expected frequency. Keeps the sound of one note at a time.
class NoteTable
{
public:
    /// For notes of a sound at @p sampleRate Hz. The first and last @p edgeFrames of each may still
    /// be mixed with the note before or behind it, and are not measured.
    NoteTable(std::span<const PlannedNote> plannedNotes, const ExpectedPitch& pitch, int sampleRate,
              int edgeFrames = 0);

    /// Takes the next block of the channel that sounds at the expected pitch.
    void Feed(std::span<const float> block);

    /// After the last block.
    void Print(std::ostream& stream) const;

private:
    /// Longer pieces are measured from their first seconds only.
    static constexpr double MaxMeasuredSeconds = 2.0;
    /// A longer table shows the first ShownNotes only.
    static constexpr std::size_t MaxNotes = 60;
    static constexpr std::size_t ShownNotes = 50;

    struct Row
    {
        double seconds; ///< of its start
        int note;
        double expectedHz;
        std::int64_t begin, end; ///< frames to measure
        std::optional<double> measuredHz = std::nullopt;
        std::optional<double> cents = std::nullopt; ///< error
    };

    void FinishRow(Row& row);
    void PrintWorst(std::ostream& stream) const;

    std::vector<Row> rows;
    int rate;
    std::int64_t position = 0; ///< frames fed
    std::size_t current = 0;   ///< row whose sound comes next
    std::vector<float> sound;  ///< of that row, as far as it has come
    FrequencyMeter meter;
};
