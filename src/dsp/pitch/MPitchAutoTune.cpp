#include "dsp/pitch/MPitchAutoTune.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double SlowestSeconds = 0.5;
constexpr double FastestShare = 0.002; ///< of SlowestSeconds
constexpr double Hysteresis = 0.1;     ///< semitones

} // namespace

void MPitchAutoTune::SetSpeed(double value) noexcept
{
    speed = std::clamp(value, 0.0, 1.0);
}

void MPitchAutoTune::SetDepth(double value) noexcept
{
    depth = std::clamp(value, 0.0, 1.0);
}

void MPitchAutoTune::Reset() noexcept
{
    correction = 0.0;
    target.reset();
}

double MPitchAutoTune::Process(double hz, double seconds) noexcept
{
    if (!(hz > 0.0) || !std::isfinite(hz))
    {
        correction = 0.0;
        return hz;
    }
    const double timeConstant = SlowestSeconds * std::pow(FastestShare, speed);
    const double note = MPitchScale::NoteOf(hz);
    const double wanted = ChooseTarget(note) - note;
    correction += (wanted - correction) * (1.0 - std::exp(-seconds / timeConstant));
    return MPitchScale::FrequencyOf(note + depth * correction);
}

int MPitchAutoTune::ChooseTarget(double note) noexcept
{
    const int nearest = scale.Nearest(note);
    const bool isKept = target && scale.Contains(*target) &&
                        std::abs(*target - note) <= std::abs(nearest - note) + Hysteresis;
    if (!isKept)
        target = nearest;
    return *target;
}
