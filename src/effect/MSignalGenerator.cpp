#include "effect/MSignalGenerator.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Levels.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/values/MValueSignalGeneratorShape.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr double LeastDepth = 1e-5;   ///< below it a source is off
constexpr double FullDepth = 0.99999; ///< from here on a source stands alone
/// A peak below it counts as this, so that near silence is not blown up.
constexpr float LeastPeak = 0.1f;

} // namespace

MSignalGenerator::MSignalGenerator() : presets(PresetShapeTables::Get())
{
    MValueSignalGeneratorShape::InstallNames(&MSignalGenerator::GetShapeName);
    Rebuild();
}

void MSignalGenerator::Rebuild()
{
    const MLockGuard guard(RebuildLock);
    RenderSources();
    Operations.Process({RenderBuffer, SourceBuffer, ScratchBuffer});
    Smooth();
    Normalise();
    if (Operations.AmplitudeTransformEnable)
    {
        Operations.ProcessAmplitude(std::span(Table).first<TableLength>());
        kernels::ZeroNonFinite(Table.data(), TableLength);
    }
    Table.back() = Table.front();
    Rate = CycleCount / CycleLength;
    TableScale = CycleLength / CycleCount * TableLength;
}

int MSignalGenerator::SplitShape() noexcept
{
    static_assert(PresetShapeTables::Count == valuetexts::ShapeCount);
    // Hosts read the field while this runs, and nearly always there is nothing to write.
    const double limited = std::clamp(Shape, 0.0, PresetShapeTables::Count - 1.0);
    if (limited != Shape)
        Shape = limited;
    const valuetexts::ShapePosition place = valuetexts::SplitShapePosition(Shape);
    ShapeFraction = static_cast<float>(place.fraction);
    return place.index;
}

void MSignalGenerator::RenderPresets(int index) noexcept
{
    kernels::Mix(RenderBuffer.data(), presets[index].data(), 1.0f - ShapeFraction,
                 presets[index + 1].data(), ShapeFraction, TableLength);
}

void MSignalGenerator::RenderCurve(float* cycle)
{
    curveComputer.Compile(Envelope);
    curveComputer.FillFloat(cycle, 0.0, 1.0 / TableLength, TableLength);
}

void MSignalGenerator::RenderSteps(float* cycle) const noexcept
{
    const int count = CountSteps();
    int start = 0;
    for (int step = 0; step < count; ++step)
    {
        const int end = TableLength * (step + 1) / count;
        const auto value =
            static_cast<float>(StepValues[static_cast<std::size_t>(step)] * StepDepth);
        kernels::Fill(cycle + start, value, end - start);
        start = end;
    }
}

void MSignalGenerator::RenderSources()
{
    const int index = SplitShape();
    float* const render = RenderBuffer.data();
    if (StepDepth >= FullDepth)
    {
        RenderSteps(render);
        return;
    }
    const bool isCurveFull = EnvelopeDepth >= FullDepth;
    if (isCurveFull)
        RenderCurve(render);
    else
        RenderPresets(index);
    if (!isCurveFull && EnvelopeDepth > LeastDepth)
    {
        RenderCurve(SourceBuffer.data());
        kernels::Mix(render, render, static_cast<float>(1.0 - EnvelopeDepth), SourceBuffer.data(),
                     static_cast<float>(EnvelopeDepth), TableLength);
    }
    // At the least depth itself, steps count on the curve but not on presets.
    if (isCurveFull ? StepDepth >= LeastDepth : StepDepth > LeastDepth)
    {
        RenderSteps(ScratchBuffer.data()); // their depth is already in them
        kernels::Mix(render, render, static_cast<float>(1.0 - StepDepth), ScratchBuffer.data(),
                     1.0f, TableLength);
    }
}

void MSignalGenerator::Smooth() noexcept
{
    if (!(std::abs(Smoothness) >= 1e-50))
        return;
    SmoothingFilter.SetHalfWidth(Smoothness * MGaussianSmoother::MaxHalfWidth);
    SmoothingFilter.Process(RenderBuffer);
}

void MSignalGenerator::Normalise() noexcept
{
    kernels::ZeroNonFinite(RenderBuffer.data(), TableLength);
    const float peak = kernels::PeakAbs(RenderBuffer.data(), TableLength);
    kernels::Scale(Table.data(), RenderBuffer.data(), 1.0f / std::max(peak, LeastPeak),
                   TableLength);
}

MSignalGeneratorState MSignalGenerator::GetState() const
{
    return {.settings = static_cast<const MSignalGeneratorSettings&>(*this),
            .operations = static_cast<const MSignalGeneratorOperationsSettings&>(Operations)};
}

void MSignalGenerator::Store(MXMLItem& item) const
{
    GetState().Store(item);
}

void MSignalGenerator::SetState(MSignalGeneratorState state)
{
    // Parameter objects read these without a lock.
    for (const auto number : {&MSignalGenerator::Shape, &MSignalGenerator::EnvelopeDepth,
                              &MSignalGenerator::StepDepth, &MSignalGenerator::Smoothness})
        std::atomic_ref(this->*number).store(state.settings.*number, std::memory_order_relaxed);
    Envelope = std::move(state.settings.Envelope);
    StepValues = state.settings.StepValues;
    StepItemCount = state.settings.StepItemCount;
    static_cast<MSignalGeneratorOperationsSettings&>(Operations) = std::move(state.operations);
    Rebuild();
}

void MSignalGenerator::Load(MXMLItem& item)
{
    MSignalGeneratorState state = GetState();
    state.Load(item);
    SetState(std::move(state));
}
