#include "host/HostTransport.h"

#include <algorithm>
#include <cmath>

#include "host/MAudioPlugin.h"

namespace
{

constexpr double DefaultTempo = 120.0; ///< for event times alone, while no host tells another

bool IsNumber(const std::optional<double>& value) noexcept
{
    return value && std::isfinite(*value);
}

bool IsTempo(const std::optional<double>& value) noexcept
{
    return IsNumber(value) && *value > 0.0;
}

/// The start of a bar as the nearest unit of @p denominator, so that a host's rounding goes.
double RoundBarStart(double barStart, int denominator) noexcept
{
    const int units = std::max(1, denominator / 4);
    const double scaled = units * barStart;
    const double below = std::floor(scaled);
    const double whole = scaled - below >= 0.5 ? below + 1.0 : below;
    return units > 1 ? whole / units : whole;
}

bool IsLoop(const std::optional<HostTime::Loop>& loop) noexcept
{
    constexpr double LeastLength = 1e-20; // quarters
    return loop && std::isfinite(loop->start) && std::isfinite(loop->end) &&
           loop->end - LeastLength > loop->start;
}

} // namespace

void HostTransport::TellEventTime(MAudioPlugin& plugin, const HostTime& hostTime)
{
    MAudioPluginTime& time = plugin.GetTime();
    if (IsNumber(hostTime.position))
        time.position = *hostTime.position;
    if (IsTempo(hostTime.tempo))
        time.tempo = *hostTime.tempo;
    if (hostTime.signature && hostTime.signature->numerator > 0 &&
        hostTime.signature->denominator > 0)
    {
        time.timeSigNumerator = hostTime.signature->numerator;
        time.timeSigDenominator = hostTime.signature->denominator;
    }
    if (IsNumber(hostTime.barStart))
        time.barStart = RoundBarStart(*hostTime.barStart, time.timeSigDenominator);
    plugin.SetTime(time.tempo > 0.0 ? time.tempo : DefaultTempo, plugin.GetHostSampleRate(),
                   time.position);
}

void HostTransport::Tell(MAudioPlugin& plugin, const HostTime& hostTime)
{
    TellEventTime(plugin, hostTime);
    MAudioPluginTime& time = plugin.GetTime();
    const bool isLoop = IsLoop(hostTime.loop);
    time.loopStart = isLoop ? hostTime.loop->start : -1.0;
    time.loopEnd = isLoop ? hostTime.loop->end : -1.0;

    time.transportChanged = hostTime.isPlaying != time.playing;
    time.playing = hostTime.isPlaying;
    time.transportJumped = time.playing && std::abs(lastPosition - time.position) > LongestStep;
    if (time.playing)
        lastPosition = time.position;
}
