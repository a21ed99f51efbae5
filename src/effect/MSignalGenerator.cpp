#include "effect/MSignalGenerator.h"

#include <algorithm>
#include <cmath>

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
    for (std::size_t step = 0; step < StepValues.size(); ++step)
        StepValues[step] = step % 2 == 0 ? 1.0f : -1.0f;
    Rebuild();
}

void MSignalGenerator::Rebuild()
{
    const MLockGuard guard(RebuildLock);
    RenderSources();
    Normalise();
    Table.back() = Table.front();
    Rate = CycleCount / CycleLength;
    TableScale = CycleLength / CycleCount * TableLength;
}

int MSignalGenerator::SplitShape() noexcept
{
    static_assert(PresetShapeTables::Count == valuetexts::ShapeCount);
    Shape = std::clamp(Shape, 0.0, PresetShapeTables::Count - 1.0);
    const valuetexts::ShapePosition place = valuetexts::SplitShapePosition(Shape);
    ShapeFraction = static_cast<float>(place.fraction);
    return place.index;
}

void MSignalGenerator::RenderPresets() noexcept
{
    const int index = SplitShape();
    kernels::Mix(RenderBuffer.data(), presets[index].data(), 1.0f - ShapeFraction,
                 presets[index + 1].data(), ShapeFraction, TableLength);
}

void MSignalGenerator::RenderSteps(Cycle& cycle) const noexcept
{
    const int count = std::clamp(StepItemCount, 1, MaxStepCount);
    int start = 0;
    for (int step = 0; step < count; ++step)
    {
        const int end = TableLength * (step + 1) / count;
        const auto value =
            static_cast<float>(StepValues[static_cast<std::size_t>(step)] * StepDepth);
        kernels::Fill(cycle.data() + start, value, end - start);
        start = end;
    }
}

void MSignalGenerator::RenderSources() noexcept
{
    if (StepDepth >= FullDepth)
    {
        SplitShape();
        RenderSteps(RenderBuffer);
        return;
    }
    RenderPresets();
    if (StepDepth >= LeastDepth)
    {
        RenderSteps(ScratchBuffer); // its depth is already in it
        kernels::Mix(RenderBuffer.data(), RenderBuffer.data(), static_cast<float>(1.0 - StepDepth),
                     ScratchBuffer.data(), 1.0f, TableLength);
    }
}

void MSignalGenerator::Normalise() noexcept
{
    for (float& sample : RenderBuffer)
        sample = std::isfinite(sample) ? sample : 0.0f;
    const float peak = kernels::PeakAbs(RenderBuffer.data(), TableLength);
    kernels::Scale(Table.data(), RenderBuffer.data(), 1.0f / std::max(peak, LeastPeak),
                   TableLength);
}

void MSignalGenerator::Store(MXMLItem& item) const
{
    item.SetAttribute("value", Shape);
    MXMLItem& steps = item.GetOrAddSubItem("Step");
    steps.Clear();
    steps.SetAttribute("StepItemCount", StepItemCount);
    steps.SetAttribute("StepDepth", StepDepth);
    for (std::size_t step = 0; step < static_cast<std::size_t>(StepItemCount); ++step)
        steps.SetAttribute(StepKey(step), double{StepValues[step]});
}

void MSignalGenerator::Load(MXMLItem& item)
{
    if (item.HasAttribute("value"))
        Shape = item.GetAttribute().ToDouble();
    if (item.HasSubItem("Step"))
    {
        MXMLItem& steps = item.GetSubItem();
        if (steps.HasAttribute("StepItemCount"))
            StepItemCount = static_cast<std::int32_t>(
                std::clamp<std::int64_t>(steps.GetAttribute().ToInteger(), 1, MaxStepCount));
        if (steps.HasAttribute("StepDepth"))
            StepDepth = steps.GetAttribute().ToDouble();
        for (std::size_t step = 0; step < static_cast<std::size_t>(StepItemCount); ++step)
        {
            const MString key = StepKey(step);
            if (steps.HasAttribute(key))
                StepValues[step] = static_cast<float>(steps.GetAttribute().ToDouble());
            else if (steps.HasSubItem(key))
                StepValues[step] =
                    static_cast<float>(steps.GetSubItem().GetAttribute("value", "0").ToDouble());
        }
    }
    Rebuild();
}
