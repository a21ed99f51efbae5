#include "shell/modulators/MModulatorFollower.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "foundation/xml/MXMLItem.h"

namespace
{

using Settings = MModulatorFollowerSettings;
using namespace modulatortexts;

constexpr double MeanSeconds = 0.01; ///< over which the power is taken
constexpr double LeastSpan = 1e-12;  ///< between the levels, whatever they are

constexpr MModulatorNumberT<Settings> Numbers[] = {
    {"LFOModulation", &Settings::LFOModulation, 0.0, 1.0, "Follower LFO modulation", &Percents},
    {"LevelMin", &Settings::LevelMin, -120.0, 0.0, "Follower level min", &Decibels},
    {"LevelMax", &Settings::LevelMax, -120.0, 0.0, "Follower level max", &Decibels},
    {"Attack", &Settings::Attack, 0.0, 1.0, "Follower attack", &Seconds},
    {"Release", &Settings::Release, 0.0, 1.0, "Follower release", &Seconds},
    {"PhaseShift", &Settings::PhaseShift, 0.0, 1.0, "Follower phase", &Percents},
    {"IntervalSize", &Settings::IntervalSize, 0.0, 2.0, "Follower interval size", &Percents},
    {"Threshold", &Settings::Threshold, 0.0, 1.0, "Follower threshold", &Percents},
    {"BandPassMin", &Settings::BandPassMin, MinLogFrequency, MaxLogFrequency,
     "Follower bandpass min", &LogHertz},
    {"BandPassMax", &Settings::BandPassMax, MinLogFrequency, MaxLogFrequency,
     "Follower bandpass max", &LogHertz},
    {"BandPassQ", &Settings::BandPassQ, 0.05, 10.0, "Follower bandpass Q", &Factor},
};
constexpr MModulatorSwitchT<Settings> Switches[] = {
    {"Project", &Settings::Project},
    {"Maximize", &Settings::Maximize},
};
constexpr const char* ModeNames[] = {"Linear", "Squared", "Logarithmic"};

double FromDb(double db) noexcept
{
    return std::pow(10.0, db / 20.0);
}

} // namespace

void MModulatorFollowerSettings::Store(MXMLItem& item) const
{
    modulatornumbers::StoreAll(item, *this, Numbers, Switches);
    modulatornumbers::WriteChoice(item, "FollowerMode", FollowerMode, ModeNames);
}

void MModulatorFollowerSettings::Load(MXMLItem& item)
{
    modulatornumbers::LoadAll(item, *this, Numbers, Switches);
    FollowerMode =
        modulatornumbers::ReadChoice(item, "FollowerMode", Settings{}.FollowerMode, ModeNames);
}

void MModulatorFollowerSettings::Publish(std::vector<MModulatorParameter>& parameters,
                                         const char* group)
{
    modulatornumbers::PublishAll(parameters, group, *this, Numbers);
}

void MModulatorFollower::Reset(double newRate) noexcept
{
    rate = newRate;
    Value = 0.0;
    meanSquare = 0.0;
    bandPass.Reset();
}

double MModulatorFollower::Process(const float* const* inputs, int samples,
                                   std::size_t channels) noexcept
{
    const std::size_t used = std::min(channels, MBandPass::Channels);
    const double low = BandPassMin;
    const double high = BandPassMax;
    const bool isFiltered =
        std::abs(low - MinLogFrequency) >= 1e-50 || std::abs(high - MaxLogFrequency) >= 1e-50;
    if (isFiltered)
        bandPass.Design(std::pow(10.0, low), std::pow(10.0, high), BandPassQ, rate);
    meanShare = mean.Get(MeanSeconds, rate);
    attackShare = attack.Get(Attack, rate);
    releaseShare = release.Get(Release, rate);

    for (int offset = 0; used > 0 && offset < samples; offset += ChunkSamples)
        ProcessChunk(inputs, offset, std::min(ChunkSamples, samples - offset), used, isFiltered);
    // An input that is no number would else stay for good.
    if (!std::isfinite(Value) || !std::isfinite(meanSquare))
        Reset(rate);
    return MapLevel();
}

void MModulatorFollower::ProcessChunk(const float* const* inputs, int offset, int samples,
                                      std::size_t channels, bool isFiltered) noexcept
{
    std::array<double, ChunkSamples> power{};
    for (std::size_t channel = 0; channel < channels; ++channel)
    {
        const float* const input = inputs[channel] + offset;
        for (int i = 0; i < samples; ++i)
        {
            const double x =
                isFiltered ? bandPass.Process(channel, double{input[i]}) : double{input[i]};
            power[static_cast<std::size_t>(i)] += x * x;
        }
    }
    const double threshold = Threshold;
    if (Maximize)
        for (double& sum : power)
            sum = sum >= threshold ? 1.0 : 0.0;
    const double share = 1.0 / static_cast<double>(channels);
    for (double& sum : power)
        sum *= share;
    FollowPower(power.data(), samples);
}

void MModulatorFollower::FollowPower(const double* power, int samples) noexcept
{
    double ms = meanSquare;
    double value = Value;
    for (int i = 0; i < samples; ++i)
    {
        ms = meanShare * ms + (1.0 - meanShare) * power[i] + MBiquad::LeastLevel;
        const double r = std::sqrt(ms);
        const double k = r > value ? attackShare : releaseShare;
        value = (1.0 - k) * r + k * value + MBiquad::LeastLevel;
    }
    meanSquare = ms;
    Value = value;
}

double MModulatorFollower::MapLevel() noexcept
{
    const double minDb = LevelMin;
    const double maxDb = LevelMax;
    const double low = FromDb(minDb);
    const double high = FromDb(maxDb);
    const auto linear = [&]
    { return std::clamp((Value - low) / std::max(high - low, LeastSpan), 0.0, 1.0); };
    switch (static_cast<MFollowerMode>(std::int32_t{FollowerMode}))
    {
    case MFollowerMode::Linear:
        return linear();
    case MFollowerMode::Squared:
        return std::sqrt(linear());
    case MFollowerMode::Logarithmic:
        break;
    }
    // The level itself is held, so that a release starts from what counts.
    Value = std::min(std::max(Value, low), high);
    return std::clamp((20.0 * std::log10(Value) - minDb) / (std::max(minDb + 1.0, maxDb) - minDb),
                      0.0, 1.0);
}
