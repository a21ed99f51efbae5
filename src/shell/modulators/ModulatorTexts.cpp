#include "shell/modulators/ModulatorTexts.h"

#include <cmath>
#include <cstdint>

#include "effect/parameters/ParameterSpecialBase.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/values/ValueTexts.h"

namespace
{

bool ReadPlain(const MString& text, double& number)
{
    return text.ReadDouble(number);
}

/// Milliseconds, unless the unit is another.
bool ReadSeconds(const MString& text, double& number)
{
    if (!text.ReadDouble(number))
        return false;
    const bool isSeconds = text.Find(u's') >= 0 && text.Find(u'm') < 0;
    number /= isSeconds ? 1.0 : 1000.0;
    return true;
}

bool ReadHertz(const MString& text, double& number)
{
    if (!text.ReadDouble(number))
        return false;
    const bool isKilo = text.Find(u'k') >= 0 || text.Find(u'K') >= 0;
    number *= isKilo ? 1000.0 : 1.0;
    return true;
}

bool ReadLogHertz(const MString& text, double& number)
{
    double hz = 0.0;
    if (!ReadHertz(text, hz) || !(hz > 0.0))
        return false;
    number = std::log10(hz);
    return true;
}

MString ShowHertz(double hz)
{
    return valuetexts::Frequency(hz, " ");
}

/// Without decimals if they are zeros.
MString ShowWholeStep(double number)
{
    constexpr double HalfOfLastDecimal = 0.5e-4;
    MStringFormatter formatter("{+0}");
    const double whole = std::round(number);
    if (std::abs(number - whole) < HalfOfLastDecimal)
        return formatter.Add(static_cast<std::int64_t>(whole)).Result();
    return formatter.Add(number).Result();
}

} // namespace

namespace modulatortexts
{

constinit const MModulatorText Percents = {&valuetexts::Percents, &ParameterScale::ParsePercents};
constinit const MModulatorText Decibels = {
    [](double number) { return MStringFormatter("{0;.1} dB").Add(number).Result(); }, &ReadPlain};
constinit const MModulatorText Seconds = {&valuetexts::Milliseconds, &ReadSeconds};
constinit const MModulatorText Hertz = {&ShowHertz, &ReadHertz};
constinit const MModulatorText LogHertz = {
    [](double number) { return ShowHertz(std::pow(10.0, number)); }, &ReadLogHertz};
constinit const MModulatorText Factor = {
    [](double number) { return MStringFormatter("{0;.2}").Add(number).Result(); }, &ReadPlain};
constinit const MModulatorText WholeStep = {&ShowWholeStep, &ReadPlain};
constinit const MModulatorText Cents = {
    [](double number) { return MStringFormatter("{+0.1}").Add(number).Result(); }, &ReadPlain};
constinit const MModulatorText Octaves = {
    [](double number) { return MStringFormatter("{+0.2}").Add(number).Result(); }, &ReadPlain};

} // namespace modulatortexts
