#include "curves/StepPattern.h"

#include "curves/MEnvelope.h"

void StepPattern::Prepare(const MEnvelope& curve) noexcept
{
    if (count >= 0)
        return;
    count = FirstCount;
    values.fill(static_cast<float>(curve.MinY));
}

void MakeCurveFromSteps(MEnvelope& curve, std::span<const float> steps)
{
    curve.Clear();
    const double width = curve.MaxX - curve.MinX;
    for (std::size_t i = 0; i < steps.size(); ++i)
    {
        const double share = static_cast<double>(i) / static_cast<double>(steps.size());
        curve.Add(curve.MinX + share * width, double{steps[i]}).Type =
            MEnvelopePoint::ControlType::Stairs;
    }
}
