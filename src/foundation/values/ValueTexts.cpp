#include "foundation/values/ValueTexts.h"

#include <cmath>

#include "foundation/strings/MStringFormatter.h"

namespace valuetexts
{

MString Gain(double gain)
{
    if (std::abs(gain) < 1e-50)
        return "silence";
    const double decibels = 20.0 * std::log10(gain);
    return MStringFormatter(std::abs(decibels) < 10.0 ? "{0;.2} dB" : "{0;.1} dB")
        .Add(decibels)
        .Result();
}

MString Frequency(double hz, const MString& separator)
{
    if (hz < 1e-5)
        return MStringFormatter("0{0}Hz").Add(separator).Result();
    if (hz >= 10000.0)
        return MStringFormatter("{0;.1}{1}kHz").Add(hz * 0.001).Add(separator).Result();
    if (hz >= 100.0)
    {
        const auto rounded = static_cast<std::int64_t>(std::floor(hz + 0.5));
        return MStringFormatter("{0}{1}Hz").Add(rounded).Add(separator).Result();
    }
    const char* const format = hz < 1.0 ? "{0;.4}{1}Hz" : hz < 10.0 ? "{0;.2}{1}Hz" : "{0;.1}{1}Hz";
    return MStringFormatter(format).Add(hz).Add(separator).Result();
}

} // namespace valuetexts
