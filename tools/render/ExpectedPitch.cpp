#include "tools/render/ExpectedPitch.h"

#include <cmath>

#include "effect/MPluginParameterRecord.h"
#include "tools/render/Failure.h"
#include "tools/render/InProcessPlugin.h"

namespace
{

constexpr double WheelRange = 2.0;     ///< semitones to either side
constexpr double ConcertPitch = 440.0; ///< Hz of MIDI note 69

const MPluginParameterRecord& Get(const InProcessPlugin& plugin, const char* name)
{
    if (const MPluginParameterRecord* const record = plugin.FindParameter(name))
        return *record;
    throw Failure(std::string("the oscillator has no parameter ") + name);
}

} // namespace

ExpectedPitch::ExpectedPitch(const InProcessPlugin& plugin, int channels)
{
    const auto value = [&plugin](const char* name) { return Get(plugin, name).Effective(); };
    const MPluginParameterRecord& frequency = Get(plugin, "Frequency");
    isFixed = frequency.Effective() - frequency.range.asFloat.min > 1e-6;
    fixedHz = std::pow(10.0, frequency.Effective());
    offset = value("Semitones") + 12.0 * value("Octaves") + value("Cents") / 100.0 +
             value("Pitch") - value("Width") / channels * std::trunc(channels / 2.0);
}

double ExpectedPitch::Hz(int note, double wheel) const noexcept
{
    const double base = isFixed ? fixedHz : ConcertPitch * std::exp2((note - 69) / 12.0);
    return base * std::exp2((offset + WheelRange * wheel) / 12.0);
}
