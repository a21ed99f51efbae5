#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// A channel message at the output sample before which it takes effect.
struct ScheduledMessage
{
    std::int64_t frame;
    std::array<std::uint8_t, 3> bytes;
};

/// A note as the monophonic oscillator plays it: up to the next note of any channel, whatever the
/// note-offs say. Pitch wheel movements cut it into pieces of constant pitch.
struct PlannedNote
{
    std::int64_t startFrame;
    int note;
    // The longest piece; empty if another note begins at once.
    std::int64_t pieceBegin = 0;
    std::int64_t pieceEnd = 0;
    double wheel = 0.0; ///< -1.0 to 1.0
};

/// The notes of @p messages, which are in the order of time, that begin before @p totalFrames.
std::vector<PlannedNote> PlanNotes(std::span<const ScheduledMessage> messages,
                                   std::int64_t totalFrames);
