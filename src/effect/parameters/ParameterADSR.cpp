#include "effect/parameters/ParameterADSR.h"

#include <cmath>
#include <iterator>

#include "curves/MADSR.h"
#include "foundation/values/ValueTexts.h"

namespace
{

constexpr double LongestTime = 10.0; ///< seconds at 1.0

constexpr ParameterScale Time = {
    .to01 = [](double seconds) noexcept { return std::sqrt(seconds / LongestTime); },
    .from01 = [](double value01) noexcept { return LongestTime * value01 * value01; },
    .getText = &valuetexts::Milliseconds,
    .parse =
        [](const MString& text, double& seconds)
    {
        double milliseconds = 0.0;
        if (!text.ReadDouble(milliseconds))
            return false;
        seconds = milliseconds / 1000.0;
        return true;
    },
};

constexpr ParameterScale Curvature = {
    .to01 = [](double curvature) noexcept { return (curvature + 1.0) / 2.0; },
    .from01 = [](double value01) noexcept { return value01 * 2.0 - 1.0; },
    .getText = &valuetexts::Percents,
    .parse = &ParameterScale::ParsePercents,
};

constexpr ParameterSpecialMainBase::Value Values[] = {
    {" delay", &Time, 0.5},
    {" attack", &Time, 0.5},
    {" hold", &Time, 0.5},
    {" decay", &Time, 0.5},
    {" release", &Time, 0.5},
    {" sustain", &ParameterScale::Fraction, 0.5},
    {" smoothing", &ParameterScale::Fraction, 0.5},
    {" attack shape", &Curvature, 0.5},
    {" decay shape", &Curvature, 0.5},
    {" release shape", &Curvature, 0.5},
    {" reserved", &ParameterScale::Fraction, 0.5},
};
constexpr double MADSR::*Numbers[] = {&MADSR::Delay,
                                      &MADSR::Attack,
                                      &MADSR::Hold,
                                      &MADSR::Decay,
                                      &MADSR::Release,
                                      &MADSR::Sustain,
                                      &MADSR::Smoothing,
                                      &MADSR::AttackShape,
                                      &MADSR::DecayShape,
                                      &MADSR::ReleaseShape,
                                      nullptr};
static_assert(std::size(Numbers) == std::size(Values));

} // namespace

template <typename Base>
ParameterADSRT<Base>::ParameterADSRT(const MPluginSpecialRecord& special,
                                     MParameterOwner* parameterOwner, const MString& section)
    : Base(ParameterMainBase::ADSRKind, Values, special, parameterOwner, section)
{
}

template <typename Base>
double* ParameterADSRT<Base>::FindNumber(int index) const noexcept
{
    return Numbers[index] != nullptr ? &(this->GetData().*Numbers[index]) : nullptr;
}

template <typename Base>
void ParameterADSRT<Base>::Rebuild()
{
    this->GetData().Rebuild();
}

template class ParameterADSRT<ParameterSpecialBase<MADSR, MADSREditor>>;
template class ParameterADSRT<ParameterSpecialBaseCustom<MADSR, MADSREditor>>;
