#include "shell/MMIDIControllerAssignment.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "foundation/xml/MXMLItem.h"
#include "host/MAudioPlugin.h"

namespace
{

constexpr double MinLogFrequency = 1.3010299956639813; ///< 20 Hz

double ReadShare(const MXMLItem& item, const char* key, const char* defaultText)
{
    return std::clamp(item.GetAttribute(key, defaultText).ToDouble(), 0.0, 1.0);
}

int ReadInt(const MXMLItem& item, const char* key, const char* defaultText, int max)
{
    return static_cast<int>(
        std::clamp<std::int64_t>(item.GetAttribute(key, defaultText).ToInteger(), 0, max));
}

/// A parameter that was never chosen is the first one.
int FindParameter(const MAudioPlugin& plugin, const MString& name)
{
    return name.IsEmpty() ? 0 : plugin.FindParameterByName(name);
}

} // namespace

void MMIDIControllerAssignment::Store(MXMLItem& item) const
{
    item.SetAttribute("Channel", channel);
    item.SetAttribute("Controller", controller);
    item.SetAttribute("Enabled", isEnabled ? 1 : 0);
    item.SetAttribute("FullRange", static_cast<int>(target.mode));
    item.SetAttribute("Invert", target.isInverted ? 1 : 0);
    item.SetAttribute("MaxValue", target.maxValue);
    item.SetAttribute("ParameterName", parameterName);
    item.SetAttribute("Range", target.range);
    item.SetAttribute("Value", target.value);
}

void MMIDIControllerAssignment::Load(MXMLItem& item, const MAudioPlugin& plugin)
{
    isEnabled = item.GetAttribute("Enabled", "0").ToInteger() != 0;
    parameterName = item.GetAttribute("ParameterName", {});
    parameterIndex = FindParameter(plugin, parameterName);
    target.value = ReadShare(item, "Value", "0");
    target.maxValue = ReadShare(item, "MaxValue", "1");
    target.range = ReadShare(item, "Range", "1");
    channel = ReadInt(item, "Channel", "0", 16);
    controller = ReadInt(item, "Controller", "1", PitchBend);
    target.mode = static_cast<MTargetRange::Mode>(
        ReadInt(item, "FullRange", "2", std::numeric_limits<std::int32_t>::max()));
    target.isInverted = item.GetAttribute("Invert", "0").ToInteger() != 0;
}

void MMIDINoteController::Store(MXMLItem& item) const
{
    item.SetAttribute("Channel", channel);
    item.SetAttribute("Enabled", isEnabled ? 1 : 0);
    item.SetAttribute("Logarithmic", isLogarithmic ? 1 : 0);
    item.SetAttribute("ParameterName", parameterName);
}

void MMIDINoteController::Load(MXMLItem& item, const MAudioPlugin& plugin)
{
    isEnabled = item.GetAttribute("Enabled", "0").ToInteger() != 0;
    parameterName = item.GetAttribute("ParameterName", {});
    parameterIndex = FindParameter(plugin, parameterName);
    isLogarithmic = item.GetAttribute("Logarithmic", "1").ToInteger() != 0;
    channel = ReadInt(item, "Channel", "0", 16);
}

double MMIDINoteController::Map(int note, double semitones) const noexcept
{
    constexpr double FrequencyOfNote60 =
        523.2511306011972; // an octave above that of the oscillator
    const double hz = std::exp2((note + semitones - 60.0) / 12.0) * FrequencyOfNote60;
    return isLogarithmic ? (std::log10(hz) - MinLogFrequency) * 0.3333333333333333
                         : (hz - 20.0) * 5.005005005005005e-05;
}
