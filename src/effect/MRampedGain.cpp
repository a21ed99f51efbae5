#include "effect/MRampedGain.h"

#include <cmath>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Ramps.h"
#include "effect/MPluginParameterRecord.h"
#include "effect/StockValueTexts.h"

namespace
{

constexpr double Negligible = 1e-50;

double MapToGain(const MPluginParameterRecord& record, double value) noexcept
{
    if (record.valueText == &valuetexts::LinearGain)
        return value;
    if (record.valueText == &valuetexts::SquaredGain)
        return value * value;
    switch (record.law)
    {
    case MParameterLaw::Linear:
        break;
    case MParameterLaw::Squared:
        return value * value;
    case MParameterLaw::FourthPower:
        return std::pow(value, 4.0);
    }
    return value;
}

} // namespace

MRampedGain::MRampedGain(MPluginParameterRecord& record, double scale,
                         std::int32_t blockSamples) noexcept
    : samples(blockSamples)
{
    const double value = record.Effective();
    double& rampStart = record.range.asFloat.rampStart;
    const double end = MapToGain(record, value) * scale;
    isRamp = std::abs(value - rampStart) >= Negligible;
    if (!isRamp)
    {
        start = static_cast<float>(end);
        return;
    }
    const double begin = MapToGain(record, rampStart) * scale;
    start = static_cast<float>(begin);
    step = static_cast<float>((end - begin) / samples);
    rampStart = value;
}

void MRampedGain::Apply(float* block) const noexcept
{
    if (isRamp)
        kernels::RampScale(block, start, step, samples);
    else if (start != 1.0f)
        kernels::Scale(block, block, start, samples);
}

void MRampedGain::Add(float* block, const float* source) const noexcept
{
    if (isRamp)
        kernels::RampScaleAdd(block, source, start, step, samples);
    else if (start == 1.0f)
        kernels::Add(block, source, samples);
    else if (start != 0.0f)
        kernels::ScaleAdd(block, source, start, samples);
}

void MRampedGain::Mix(float* block, const MRampedGain& blockGain, const float* source,
                      const MRampedGain& sourceGain) noexcept
{
    if (blockGain.isRamp && sourceGain.isRamp)
    {
        kernels::RampMix(block, source, blockGain.start, blockGain.step, sourceGain.start,
                         sourceGain.step, blockGain.samples);
        return;
    }
    blockGain.Apply(block);
    sourceGain.Add(block, source);
}
