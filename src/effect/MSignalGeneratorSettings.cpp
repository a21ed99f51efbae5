#include "effect/MSignalGeneratorSettings.h"

#include <algorithm>
#include <utility>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

MString HarmonicKey(const MString& format, std::size_t index)
{
    return MStringFormatter(format).Add(static_cast<int>(index) + 2).Result();
}

/// Calls @p visit with the key of each amount and the amount, of constant operations or others.
template <class Operations, class Visitor>
void VisitAmounts(Operations& operations, const Visitor& visit)
{
    visit("Skew", operations.Skew);
    visit("FullSkew", operations.FullSkew);
    visit("Halve", operations.Halve);
    for (std::size_t i = 0; i < MSignalGeneratorOperationsSettings::HarmonicCount; ++i)
    {
        visit(HarmonicKey("Harmonic{0}", i), operations.Harmonic[i]);
        visit(HarmonicKey("HarmonicPhase{0}", i), operations.HarmonicPhase[i]);
    }
}

void StoreSwitch(MXMLItem& item, const MString& key, bool isEnabled)
{
    if (isEnabled)
        item.SetAttribute(key, 1);
    else
        item.RemoveAttribute(key);
}

bool LoadSwitch(const MXMLItem& item, const MString& key)
{
    return item.GetAttribute(key, "0").ToInteger() != 0;
}

MString StepKey(std::size_t step)
{
    return MStringFormatter("Item{0}").Add(static_cast<int>(step)).Result();
}

} // namespace

MSignalGeneratorOperationsSettings::MSignalGeneratorOperationsSettings()
{
    Transform.AddEndPoints(0.0, 1.0);
    AmplitudeTransform.AddEndPoints(-1.0, 1.0);
}

void MSignalGeneratorOperationsSettings::Store(MXMLItem& item) const
{
    VisitAmounts(*this,
                 [&item](const MString& key, double amount)
                 {
                     if (amount == 0.0)
                         item.RemoveAttribute(key);
                     else
                         item.SetAttribute(key, amount);
                 });
    StoreSwitch(item, "TransformEnable", TransformEnable);
    StoreSwitch(item, "AmplitudeTransformEnable", AmplitudeTransformEnable);
    Transform.Store(item.GetOrAddSubItem("Transform"));
    AmplitudeTransform.Store(item.GetOrAddSubItem("AmplitudeTransform"));
}

void MSignalGeneratorOperationsSettings::Load(MXMLItem& item)
{
    MEnvelope transform = Transform;
    MEnvelope amplitudeTransform = AmplitudeTransform;
    if (item.HasSubItem("Transform"))
        transform.Load(item.GetSubItem());
    if (item.HasSubItem("AmplitudeTransform"))
        amplitudeTransform.Load(item.GetSubItem());

    VisitAmounts(*this, [&item](const MString& key, double& amount)
                 { amount = item.GetAttribute(key, "0").ToDouble(); });
    TransformEnable = LoadSwitch(item, "TransformEnable");
    AmplitudeTransformEnable = LoadSwitch(item, "AmplitudeTransformEnable");
    Transform = std::move(transform);
    AmplitudeTransform = std::move(amplitudeTransform);
}

MSignalGeneratorSettings::MSignalGeneratorSettings()
{
    for (const auto& [x, y] : {std::pair(0.0, 0.0), {0.25, 1.0}, {0.75, -1.0}, {1.0, 0.0}})
        Envelope.Add(x, y);
    constexpr std::uint8_t EndFlags = MEnvelopePoint::Fixed | MEnvelopePoint::Locked;
    Envelope.GetPoints().front().Flags |= EndFlags;
    Envelope.GetPoints().back().Flags |= EndFlags;
    for (std::size_t step = 0; step < StepValues.size(); ++step)
        StepValues[step] = step % 2 == 0 ? 1.0f : -1.0f;
}

int MSignalGeneratorSettings::CountSteps() const noexcept
{
    return std::clamp(StepItemCount, 1, MaxStepCount);
}

void MSignalGeneratorSettings::Store(MXMLItem& item) const
{
    item.SetAttribute("value", Shape);
    item.SetAttribute("Smoothness", Smoothness);
    item.SetAttribute("EnvelopeDepth", EnvelopeDepth);
    Envelope.Store(item.GetOrAddSubItem("Envelope"));
    StoreSteps(item.GetOrAddSubItem("Step"));
}

void MSignalGeneratorSettings::StoreSteps(MXMLItem& steps) const
{
    steps.Clear(); // more steps may have been in use
    steps.SetAttribute("StepItemCount", CountSteps());
    steps.SetAttribute("StepDepth", StepDepth);
    for (std::size_t step = 0; step < static_cast<std::size_t>(CountSteps()); ++step)
        steps.SetAttribute(StepKey(step), double{StepValues[step]});
}

void MSignalGeneratorSettings::Load(MXMLItem& item)
{
    if (item.HasSubItem("Envelope"))
    {
        MEnvelope envelope = Envelope; // it may throw
        envelope.Load(item.GetSubItem());
        Envelope = std::move(envelope);
    }
    if (item.HasAttribute("value"))
        Shape = item.GetAttribute().ToDouble();
    if (item.HasAttribute("Smoothness"))
        Smoothness = std::clamp(item.GetAttribute().ToDouble(), 0.0, 1.0);
    EnvelopeDepth = item.GetAttribute("EnvelopeDepth", "0").ToDouble();
    if (item.HasSubItem("Step"))
        LoadSteps(item.GetSubItem());
}

void MSignalGeneratorSettings::LoadSteps(MXMLItem& steps)
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

void MSignalGeneratorState::Store(MXMLItem& item) const
{
    settings.Store(item);
    operations.Store(item.GetOrAddSubItem("Operations"));
}

void MSignalGeneratorState::Load(MXMLItem& item)
{
    settings.Load(item);
    operations.Load(item.GetOrAddSubItem("Operations"));
}
