#include "tests/tools/PresetSound.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/render/FrequencyMeter.h"
#include "tools/render/HostEvents.h"
#include "tools/render/InProcessPlugin.h"
#include "tools/render/SoundBlocks.h"

namespace
{

constexpr std::int64_t Length = std::int64_t{10} * PresetSound::Rate;
constexpr int Block = 512;
constexpr double Silence = 1e-6;

double RMS(std::span<const float> sound)
{
    const double squares = std::inner_product(sound.begin(), sound.end(), sound.begin(), 0.0);
    return std::sqrt(squares / static_cast<double>(sound.size()));
}

double Brightness(std::span<const float> sound)
{
    std::vector<float> slope(sound.size());
    std::adjacent_difference(sound.begin(), sound.end(), slope.begin());
    return RMS(std::span(slope).subspan(1)) / std::max(Silence, RMS(sound));
}

using Measure = double (*)(std::span<const float>);

/// What @p measure makes of each @p piece samples of @p sound.
std::vector<double> Follow(std::span<const float> sound, std::size_t piece, Measure measure)
{
    std::vector<double> values;
    for (; sound.size() >= piece; sound = sound.subspan(piece))
        values.push_back(std::max(Silence, measure(sound.first(piece))));
    return values;
}

/// The largest over the smallest, without the beginning.
double Compare(std::span<const float> sound, Measure measure)
{
    const auto values =
        Follow(sound.subspan(PresetSound::Rate / 2), PresetSound::Rate / 20, measure);
    const auto [least, most] = std::ranges::minmax(values);
    return most / least;
}

} // namespace

PresetSound PresetSound::Play(std::span<const std::byte> state,
                              std::span<const ScheduledMessage> messages)
{
    InProcessPlugin plugin;
    plugin.LoadState(state);
    plugin.SetTempo(120.0);
    plugin.Start(2, Rate, Block);
    HostEvents events;
    for (const ScheduledMessage& message : messages)
        events.AddMessage(message);

    PresetSound sound{std::vector<std::vector<float>>(2)};
    SoundBlocks blocks(2, 0, Block);
    for (std::int64_t position = 0; position < Length;)
    {
        const std::int64_t next = std::min(Length, events.SendDueMessages(plugin, position));
        const std::int64_t samples = std::min(std::int64_t{Block}, next - position);
        blocks.Process(plugin, static_cast<int>(samples));
        for (std::size_t channel = 0; channel < 2; ++channel)
            sound.channels[channel].insert(sound.channels[channel].end(),
                                           blocks.GetOutputs()[channel].begin(),
                                           blocks.GetOutputs()[channel].begin() + samples);
        position += samples;
    }
    return sound;
}

double PresetSound::GetPeak() const
{
    float peak = 0.0f;
    for (const auto& channel : channels)
        for (const float sample : channel)
            peak = std::isfinite(sample) ? std::max(peak, std::abs(sample)) : INFINITY;
    return peak;
}

double PresetSound::GetRMS(std::size_t channel) const
{
    return RMS(channels.at(channel));
}

double PresetSound::GetMean(std::size_t channel) const
{
    return std::reduce(channels.at(channel).begin(), channels.at(channel).end(), 0.0) /
           static_cast<double>(Length);
}

double PresetSound::GetWidth() const
{
    std::vector<float> difference(channels[0].size());
    std::ranges::transform(channels[0], channels[1], difference.begin(), std::minus());
    return RMS(difference) / std::max(GetRMS(0), GetRMS(1));
}

std::optional<double> PresetSound::GetFrequency(std::size_t channel) const
{
    return FrequencyMeter().Measure(std::span(channels.at(channel)).first(Rate), Rate);
}

double PresetSound::GetLevelMovement() const
{
    return 20.0 * std::log10(Compare(channels[0], RMS));
}

double PresetSound::GetBrightnessMovement() const
{
    return Compare(channels[0], Brightness);
}

int PresetSound::CountSwells() const
{
    const bool isLevel = GetLevelMovement() > 1.5;
    const auto values = Follow(channels[0], Rate / 100, isLevel ? RMS : Brightness);
    const auto [least, most] = std::ranges::minmax(values);
    int swells = 0;
    bool isUp = false;
    for (const double value : values)
    {
        const double height = (value - least) / (most - least);
        swells += !isUp && height > 0.6;
        isUp = isUp ? height > 0.4 : height > 0.6;
    }
    return swells;
}
