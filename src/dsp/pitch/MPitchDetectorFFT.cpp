#include "dsp/pitch/MPitchDetectorFFT.h"

#include <algorithm>

namespace
{

constexpr double LeastClarity = 0.6; ///< of the highest key maximum; noise stays below

/// By how much the parabola at @p lag may fall short of the maximum.
double ParabolaError(double lag)
{
    return std::min(12.0 / (lag * lag), 0.5);
}

} // namespace

void MPitchDetectorFFT::SetSampleRate(double rate)
{
    MPitchFFTBase::SetSampleRate(rate);
    Reset();
}

void MPitchDetectorFFT::Reset() noexcept
{
    MPitchFFTBase::Reset();
    frequency = 0.0;
    detectionCount = 0;
}

void MPitchDetectorFFT::SetRange(double minHz, double maxHz) noexcept
{
    minFrequency = minHz;
    maxFrequency = maxHz;
}

double MPitchDetectorFFT::Process(const float* samples, int count) noexcept
{
    detectionCount = 0;
    if (samples == nullptr)
        return frequency;
    for (int taken = 0; taken < count;)
    {
        taken += Feed(samples + taken, count - taken);
        if (BeginWindow())
        {
            frequency = Detect();
            ++detectionCount;
        }
    }
    return frequency;
}

double MPitchDetectorFFT::Detect() noexcept
{
    if (!(GetMeanSquare() >= threshold)) // so are samples too large to be squared
        return 0.0;
    Correlate();
    const double period = FindPeriod();
    if (period <= 0.0)
        return 0.0;
    const double found = GetAnalysisRate() / period;
    return found >= minFrequency && found <= maxFrequency ? found : 0.0;
}

/// In analysis samples; 0 if there is none.
double MPitchDetectorFFT::FindPeriod() noexcept
{
    const auto maxima = GetKeyMaxima();
    const auto highest = std::ranges::max_element(maxima, {}, &Maximum::height);
    if (highest == maxima.end())
        return 0.0;
    const double clarity = Refine(highest->lag).height;
    if (!(clarity >= LeastClarity))
        return 0.0;

    const double needed = accuracy * clarity;
    for (const Maximum& maximum : maxima)
        if (maximum.height >= needed - ParabolaError(maximum.lag))
            if (const Maximum refined = Refine(maximum.lag); refined.height >= needed)
                return refined.lag;
    return 0.0;
}
