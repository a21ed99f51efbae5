#include "shell/modulators/MModulatorRandom.h"

#include <algorithm>
#include <cmath>

#include "host/MAudioPluginTime.h"
#include "shell/modulators/ModulatorNumbers.h"

namespace
{

using Settings = MModulatorRandomSettings;
using namespace modulatortexts;

constexpr double LastPlace = 0x1p62; ///< nodes

constexpr MModulatorNumberT<Settings> Numbers[] = {
    {"LFOModulation", &Settings::LFOModulation, 0.0, 1.0, "Randomizer LFO modulation", &Percents},
    {"Speed", &Settings::Speed, -10.0, 10.0, "Randomizer speed", &Octaves},
    {"Smoothness", &Settings::Smoothness, 0.0, 1.0, "Randomizer smoothness", &Percents},
    // These two share their names with those of the envelope.
    {"PhaseShift", &Settings::PhaseShift, 0.0, 1.0, "Envelope phase", &Percents},
    {"IntervalSize", &Settings::IntervalSize, 0.0, 2.0, "Envelope interval size", &Percents},
};
constexpr MModulatorSwitchT<Settings> Switches[] = {{"Project", &Settings::Project}};

} // namespace

void MModulatorRandomSettings::Store(MXMLItem& item) const
{
    modulatornumbers::StoreAll(item, *this, Numbers, Switches);
}

void MModulatorRandomSettings::Load(MXMLItem& item)
{
    modulatornumbers::LoadAll(item, *this, Numbers, Switches);
}

void MModulatorRandomSettings::Publish(std::vector<MModulatorParameter>& parameters,
                                       const char* group)
{
    modulatornumbers::PublishAll(parameters, group, *this, Numbers);
}

void MModulatorRandom::Reset(double newRate) noexcept
{
    rate = newRate;
    RandomPosition = 0.0;
}

double MModulatorRandom::Process(const MAudioPluginTime& transport, int samples) noexcept
{
    double quarters = transport.position;
    if (!transport.playing || !(quarters >= 0.0))
    {
        quarters = RandomPosition;
        RandomPosition += samples / (0.5 * rate);
    }
    const double t = std::min(std::exp2(Speed) * quarters, LastPlace);
    const auto i = static_cast<std::int64_t>(t);
    const double f = t - static_cast<double>(i);

    const double p0 = GetNode(i);
    const double p1 = GetNode(i + 1);
    const double p2 = GetNode(i + 2);
    const double p3 = GetNode(i + 3);
    const double c3 = (3.0 * (p1 - p2) - p0 + p3) / 2.0;
    const double c2 = 2.0 * p2 + p0 - (5.0 * p1 + p3) / 2.0;
    const double c1 = (p2 - p0) / 2.0;
    const double cubic = ((c3 * f + c2) * f + c1) * f + p1;
    const double linear = p1 + (p2 - p1) * f;
    const double smoothness = Smoothness;
    return std::max(0.0, smoothness * cubic + (1.0 - smoothness) * linear);
}

double MModulatorRandom::GetNode(std::int64_t k) noexcept
{
    const std::uint64_t h = static_cast<std::uint64_t>(k) * 0x7F902C850237D73DU;
    return static_cast<double>(((((h >> 18U) ^ h) >> 19U) ^ h) & 0xFFFFU) / 65535.0;
}
