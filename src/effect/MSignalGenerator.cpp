#include "effect/MSignalGenerator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/Levels.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/values/MValueSignalGeneratorShape.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr double LeastDepth = 1e-5;   ///< below it a source is off
constexpr double FullDepth = 0.99999; ///< from here on a source stands alone
/// A peak below it counts as this, so that near silence is not blown up.
constexpr float LeastPeak = 0.1f;

MString StepKey(std::size_t step)
{
    return MStringFormatter("Item{0}").Add(static_cast<int>(step)).Result();
}

} // namespace

MSignalGenerator::MSignalGenerator() : presets(PresetShapeTables::Get())
{
    MValueSignalGeneratorShape::InstallNames(&MSignalGenerator::GetShapeName);
    for (const auto& [x, y] : {std::pair(0.0, 0.0), {0.25, 1.0}, {0.75, -1.0}, {1.0, 0.0}})
        Envelope.Add(x, y);
    constexpr std::uint8_t EndFlags = MEnvelopePoint::Fixed | MEnvelopePoint::Locked;
    Envelope.GetPoints().front().Flags |= EndFlags;
    Envelope.GetPoints().back().Flags |= EndFlags;
    for (std::size_t step = 0; step < StepValues.size(); ++step)
        StepValues[step] = step % 2 == 0 ? 1.0f : -1.0f;
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

int MSignalGenerator::CountSteps() const noexcept
{
    return std::clamp(StepItemCount, 1, MaxStepCount);
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

void MSignalGenerator::Store(MXMLItem& item) const
{
    item.SetAttribute("value", Shape);
    item.SetAttribute("Smoothness", Smoothness);
    item.SetAttribute("EnvelopeDepth", EnvelopeDepth);
    Envelope.Store(item.GetOrAddSubItem("Envelope"));
    StoreSteps(item.GetOrAddSubItem("Step"));
    Operations.Store(item.GetOrAddSubItem("Operations"));
}

void MSignalGenerator::StoreSteps(MXMLItem& steps) const
{
    steps.Clear(); // more steps may have been in use
    steps.SetAttribute("StepItemCount", CountSteps());
    steps.SetAttribute("StepDepth", StepDepth);
    for (std::size_t step = 0; step < static_cast<std::size_t>(CountSteps()); ++step)
        steps.SetAttribute(StepKey(step), double{StepValues[step]});
}

void MSignalGenerator::Load(MXMLItem& item)
{
    // What may throw comes first.
    MEnvelope envelope = Envelope;
    if (item.HasSubItem("Envelope"))
        envelope.Load(item.GetSubItem());
    Operations.Load(item.GetOrAddSubItem("Operations"));
    Envelope = std::move(envelope);

    if (item.HasAttribute("value"))
        Shape = item.GetAttribute().ToDouble();
    if (item.HasAttribute("Smoothness"))
        Smoothness = std::clamp(item.GetAttribute().ToDouble(), 0.0, 1.0);
    EnvelopeDepth = item.GetAttribute("EnvelopeDepth", "0").ToDouble();
    if (item.HasSubItem("Step"))
        LoadSteps(item.GetSubItem());
    Rebuild();
}

void MSignalGenerator::LoadSteps(MXMLItem& steps)
{
    if (steps.HasAttribute("StepItemCount"))
        StepItemCount = static_cast<std::int32_t>(
            std::clamp<std::int64_t>(steps.GetAttribute().ToInteger(), 1, MaxStepCount));
    if (steps.HasAttribute("StepDepth"))
        StepDepth = steps.GetAttribute().ToDouble();
    const auto setValue = [this](std::size_t step, const MString& text)
    { StepValues[step] = static_cast<float>(std::clamp(text.ToDouble(), -1.0, 1.0)); };
    for (std::size_t step = 0; step < static_cast<std::size_t>(CountSteps()); ++step)
    {
        const MString key = StepKey(step);
        if (steps.HasAttribute(key))
            setValue(step, steps.GetAttribute());
        else if (steps.HasSubItem(key))
            setValue(step, steps.GetSubItem().GetAttribute("value", "0"));
    }
}
