#include "effect/MSignalGeneratorSettings.h"

#include <algorithm>
#include <utility>

#include "foundation/strings/NumberedNames.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

using OperationsSettings = MSignalGeneratorOperationsSettings;

constexpr auto HarmonicKeys = MakeNumberedNames<OperationsSettings::HarmonicCount>("Harmonic", 2);
constexpr auto HarmonicPhaseKeys =
    MakeNumberedNames<OperationsSettings::HarmonicCount>("HarmonicPhase", 2);
constexpr auto StepKeys = MakeNumberedNames<MSignalGeneratorSettings::MaxStepCount>("Item");

/// Calls @p visit with the key of each amount and the amount, of constant operations or others.
template <class Operations, class Visitor>
void VisitAmounts(Operations& operations, const Visitor& visit)
{
    visit("Skew", operations.Skew);
    visit("FullSkew", operations.FullSkew);
    visit("Halve", operations.Halve);
    for (std::size_t i = 0; i < OperationsSettings::HarmonicCount; ++i)
    {
        visit(HarmonicKeys[i].data(), operations.Harmonic[i]);
        visit(HarmonicPhaseKeys[i].data(), operations.HarmonicPhase[i]);
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
    const MString* const text = item.FindAttribute(key);
    return text != nullptr && text->ToInteger() != 0;
}

double LoadAmount(const MXMLItem& item, const MString& key)
{
    const MString* const text = item.FindAttribute(key);
    return text != nullptr ? text->ToDouble() : 0.0;
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
    if (item.HasSubItem("Transform"))
        Transform.Load(item.GetSubItem());
    if (item.HasSubItem("AmplitudeTransform"))
        AmplitudeTransform.Load(item.GetSubItem());
    VisitAmounts(*this,
                 [&item](const MString& key, double& amount) { amount = LoadAmount(item, key); });
    TransformEnable = LoadSwitch(item, "TransformEnable");
    AmplitudeTransformEnable = LoadSwitch(item, "AmplitudeTransformEnable");
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
    item.SetAttribute("EnvelopeDepth", EnvelopeDepth);
    item.SetAttribute("Smoothness", Smoothness);
    item.SetAttribute("value", Shape);
    Envelope.Store(item.GetOrAddSubItem("Envelope"));
    StoreSteps(item.GetOrAddSubItem("Step"));
}

void MSignalGeneratorSettings::StoreSteps(MXMLItem& steps) const
{
    steps.Clear(); // more steps may have been in use
    for (std::size_t step = 0; step < static_cast<std::size_t>(CountSteps()); ++step)
        steps.SetAttribute(StepKeys[step].data(), double{StepValues[step]});
    steps.SetAttribute("StepDepth", StepDepth);
    steps.SetAttribute("StepItemCount", CountSteps());
}

void MSignalGeneratorSettings::Load(MXMLItem& item)
{
    if (item.HasSubItem("Envelope"))
        Envelope.Load(item.GetSubItem());
    if (item.HasAttribute("value"))
        Shape = item.GetAttribute().ToDouble();
    if (item.HasAttribute("Smoothness"))
        Smoothness = std::clamp(item.GetAttribute().ToDouble(), 0.0, 1.0);
    EnvelopeDepth = LoadAmount(item, "EnvelopeDepth");
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
        const MString key = StepKeys[step].data();
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
