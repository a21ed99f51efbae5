#include "effect/parameters/ParameterSignalGenerator.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "effect/MSignalGenerator.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/values/MRandom.h"
#include "foundation/values/ValueTexts.h"

namespace
{

constexpr double LastShape = valuetexts::ShapeCount - 1;
constexpr double SineShape = 5.0;

constexpr ParameterScale ShapeScale = {
    .to01 = [](double shape) noexcept { return shape / LastShape; },
    .from01 = [](double value01) noexcept { return value01 * LastShape; },
    .getText = [](double shape)
    { return valuetexts::Shape(shape, &MSignalGenerator::GetShapeName); },
    .parse = [](const MString& text, double& shape)
    { return valuetexts::ParseShape(text, &MSignalGenerator::GetShapeName, shape); },
};

constexpr ParameterSpecialMainBase::Value Values[] = {
    {"", &ShapeScale, SineShape / LastShape},
    {" custom morph", &ParameterScale::Fraction, 0.0},
    {" step sequencer", &ParameterScale::Fraction, 0.0},
    {" smoothness", &ParameterScale::Fraction, 0.0},
};
constexpr double MSignalGenerator::*Numbers[] = {
    &MSignalGenerator::Shape, &MSignalGenerator::EnvelopeDepth, &MSignalGenerator::StepDepth,
    &MSignalGenerator::Smoothness};
static_assert(std::size(Numbers) == std::size(Values));

} // namespace

template <typename Base>
ParameterSignalGeneratorT<Base>::ParameterSignalGeneratorT(const MPluginSpecialRecord& special,
                                                           MParameterOwner* parameterOwner,
                                                           const MString& section)
    : Base(ParameterMainBase::SignalGeneratorKind, Values, special, parameterOwner, section)
{
}

template <typename Base>
bool ParameterSignalGeneratorT<Base>::IsRandomisable(int index) const
{
    return this->Has(index) && Numbers[index] != &MSignalGenerator::Smoothness;
}

template <typename Base>
void ParameterSignalGeneratorT<Base>::Randomize(double amount)
{
    const auto move = [span = 2.0 * amount] { return (MRandom::DrawUniform() - 0.5) * span; };
    {
        const MLockGuard guard(this->GetProcessingLock());
        MSignalGenerator& generator = this->GetData();
        const double shape01 =
            std::clamp(this->Read(generator.Shape) / LastShape + move(), 0.0, 1.0);
        this->Write(generator.Shape, LastShape * shape01);
        this->Write(generator.EnvelopeDepth, MRandom::DrawUniform());
        // A large power, so that full randomisation seldom brings the steps in.
        this->Write(generator.StepDepth, amount >= 1.0
                                             ? std::pow(MRandom::DrawUniform(), 20.0)
                                             : this->Read(generator.StepDepth) + move() * 0.25);
        generator.Rebuild();
    }
    this->NotifyChange();
}

template <typename Base>
double* ParameterSignalGeneratorT<Base>::FindNumber(int index) const noexcept
{
    return &(this->GetData().*Numbers[index]);
}

template <typename Base>
void ParameterSignalGeneratorT<Base>::Rebuild()
{
    this->GetData().Rebuild();
}

template class ParameterSignalGeneratorT<
    ParameterSpecialBase<MSignalGenerator, MSignalGeneratorEditor>>;
template class ParameterSignalGeneratorT<
    ParameterSpecialBaseCustom<MSignalGenerator, MSignalGeneratorEditor>>;
