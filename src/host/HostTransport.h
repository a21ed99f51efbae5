#pragma once

#include <optional>

#include "host/MAudioPluginTime.h"

class MAudioPlugin;

/// What a host tells of its transport at the start of a block. What it leaves out stays as it was.
struct HostTime
{
    struct Signature
    {
        int numerator;
        int denominator;
    };

    struct Loop
    {
        double start; ///< quarters
        double end;
    };

    std::optional<double> position = std::nullopt; ///< quarters
    std::optional<double> tempo = std::nullopt;    ///< quarters a minute
    std::optional<double> barStart = std::nullopt; ///< quarters
    std::optional<Signature> signature = std::nullopt;
    std::optional<Loop> loop = std::nullopt; ///< none: the host does not repeat
    bool isPlaying = false;
};

/// Brings the time of a plugin up to date from what its host tells. Numbers that are not finite, or
/// make no sense, count as not told. Owned by an adapter; audio thread.
class HostTransport
{
public:
    /// Quarters by which the position may differ from that of the block before without being a
    /// jump.
    static constexpr double LongestStep = 2.0;

    /// Once a block.
    void Tell(MAudioPlugin& plugin, const HostTime& hostTime);
    /// Takes the position and tempo alone, for events that come before their block.
    static void TellEventTime(MAudioPlugin& plugin, const HostTime& hostTime);

private:
    double lastPosition = 0.0; ///< quarters, of the last block that played
};
