#include "shell/multiparameters/MMultiParameter.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "foundation/threads/MLock.h"
#include "foundation/values/ValueTexts.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/SettingsTree.h"
#include "host/MAudioPlugin.h"
#include "persistence/presets/ClipboardText.h"
#include "shell/modulators/ModulatorNumbers.h"

namespace
{

constexpr const char* ModeNames[] = {"Normal", "Switch", "Trigger"};
constexpr const char* ValueModeNames[] = {"Percents", "By first parameter"};
constexpr const char* PresetType = "QuillfernMultiParameter";
constexpr const char* TargetKey = "Parameter";
constexpr double DefaultSwitchTime = 1.0; // seconds
constexpr double Middle = 0.5;

MLock multiParameterLock;

void StoreText(MXMLItem& item, const char* key, const MString& text)
{
    if (!text.IsEmpty())
        item.SetAttribute(key, text);
}

void StoreUnless(MXMLItem& item, const char* key, double number, double defaultNumber)
{
    if (std::abs(number - defaultNumber) >= 1e-50)
        item.SetAttribute(key, number);
}

} // namespace

MMultiParameter::MMultiParameter(MAudioPlugin& drivenPlugin, int slotIndex)
    : MAutomationAdapter(1),
      plugin(drivenPlugin),
      slot(slotIndex),
      Targets(1)
{
    SetOwner(&drivenPlugin);
}

MLock& MMultiParameter::GetMultiParameterLock() noexcept
{
    return multiParameterLock;
}

void MMultiParameter::Follow()
{
    const double knob = Value;
    if (IsMode(MMultiParameterMode::Switch))
    {
        const MLockGuard guard(multiParameterLock);
        if (IsUp() != (knob >= Middle))
            Toggle();
    }
    else if (IsMode(MMultiParameterMode::Trigger) && knob >= Middle)
        Toggle();
}

void MMultiParameter::Toggle()
{
    const MLockGuard guard(multiParameterLock);
    if (!Moving)
    {
        Moving = true;
        Direction = Position >= Middle ? -1.0 : 1.0;
    }
    else if (IsMode(MMultiParameterMode::Switch))
        Direction = -Direction;
    else if (IsMode(MMultiParameterMode::Trigger))
        Direction = 1.0;
    Value = IsMode(MMultiParameterMode::Switch) && IsUp() ? 1.0 : 0.0;
}

void MMultiParameter::ProcessBlock(int samples)
{
    {
        const MLockGuard guard(multiParameterLock);
        if (Moving && samples > 0)
            Position += Direction / (SampleRate * SwitchTime) * samples;
        if (std::isnan(Position))
            Position = 0.0;
        if (Position > 1.0)
        {
            Position = 1.0;
            if (IsMode(MMultiParameterMode::Trigger))
                Direction = -Direction;
            else
                Moving = false;
        }
        if (Position < 0.0)
        {
            Position = 0.0;
            Moving = false;
        }
    }
    Apply(false);
}

void MMultiParameter::Apply(bool notify)
{
    // Both in this order, as in a block.
    const MLockGuard processing(plugin.GetProcessingLock());
    const MLockGuard guard(multiParameterLock);
    if (Frozen || Applying)
        return;
    Applying = true;
    const double input = IsMode(MMultiParameterMode::Normal) ? double{Value} : Position;
    for (MModulatorTarget& target : Targets)
        if (target.ParameterEnabled && target.ParameterIndex >= 0)
            plugin.SetParameter(target.ParameterIndex,
                                target.Map(2.0 * input - 1.0, Targets.front()), false);
    Applying = false;
    if (notify)
        plugin.NeedUpdateEditor(*this);
}

void MMultiParameter::Store(MXMLItem& item) const
{
    const auto [targets, name, group, info] = [this]
    {
        const MLockGuard guard(multiParameterLock);
        return std::tuple(Targets, Name, Group, Info);
    }();
    item.Clear();
    StoreText(item, "Name", name);
    modulatornumbers::WriteInt(item, "Enabled", Enabled ? 1 : 0);
    StoreText(item, "Group", group);
    StoreText(item, "Info", info);
    modulatornumbers::WriteChoice(item, "Mode", Mode, ModeNames);
    modulatornumbers::WriteChoice(item, "ValueMode", ValueMode, ValueModeNames);
    StoreUnless(item, "SwitchTime", SwitchTime, DefaultSwitchTime);
    modulatornumbers::Write(item, "Value", Value);
    StoreUnless(item, "DefaultValue", DefaultValue, Middle);
    for (const MModulatorTarget& target : targets)
        target.Store(item.AddSubItem(TargetKey));
}

void MMultiParameter::Load(MXMLItem& item)
{
    CheckSettingsTree(item);
    TargetList targets;
    const MString key = TargetKey;
    for (const auto& subItem : item.GetSubItems())
        if (subItem->GetName() == key)
            targets.emplace_back().Load(*subItem, plugin);
    if (targets.empty())
        targets.emplace_back();

    using namespace modulatornumbers;
    Enabled = ReadBool(item, "Enabled", false);
    Mode = ReadChoice(item, "Mode", 0, ModeNames);
    ValueMode = ReadChoice(item, "ValueMode", 0, ValueModeNames);
    SwitchTime = Read(item, "SwitchTime", DefaultSwitchTime, 0.0, MaxSwitchTime);
    DefaultValue = Read(item, "DefaultValue", Middle, 0.0, 1.0);
    Value = Read(item, "Value", DefaultValue, 0.0, 1.0);
    const MLockGuard guard(multiParameterLock);
    Targets.swap(targets);
    Name = item.GetAttribute("Name", {});
    Group = item.GetAttribute("Group", {});
    Info = item.GetAttribute("Info", {});
    Moving = false;
    Position = IsMode(MMultiParameterMode::Switch) && Value >= Middle ? 1.0 : 0.0;
}

MString MMultiParameter::Copy() const
{
    MXMLItem item(PresetType);
    Store(item);
    return clipboardtext::Write(item);
}

void MMultiParameter::Paste(const MString& text)
{
    const std::unique_ptr<MXMLItem> item = clipboardtext::Read(text, PresetType);
    const MLockGuard processing(plugin.GetProcessingLock()); // no block glides meanwhile
    Load(*item);
}

void MMultiParameter::SetParameter(int index, double value01, bool quiet)
{
    if (!Has(index) || std::isnan(value01))
        return;
    Value = std::clamp(value01, 0.0, 1.0);
    if (IsMode(MMultiParameterMode::Normal))
        Apply(false);
    if (!quiet)
        plugin.NeedUpdateEditor(*this);
}

double MMultiParameter::GetParameter(int index) const
{
    return Has(index) ? double{Value} : 0.0;
}

MString MMultiParameter::GetParameterName(int index) const
{
    if (!Has(index))
        return {};
    const MLockGuard guard(multiParameterLock);
    return Name.IsEmpty() ? GetParameterID(index) : Name;
}

MString MMultiParameter::GetParameterID(int index) const
{
    if (!Has(index))
        return {};
    MString id = "MultiParameter ";
    id.Append(MString::FromInteger(slot + 1));
    return id;
}

MString MMultiParameter::GetParameterValueName(int index) const
{
    return GetParameterValueNameFrom01(index, Value);
}

MString MMultiParameter::GetParameterValueNameFrom01(int index, double value01) const
{
    if (!Has(index))
        return {};
    if (ValueMode != static_cast<std::int32_t>(MMultiParameterValueMode::ByFirstParameter))
        return valuetexts::Percents(value01);
    MModulatorTarget first = [this]
    {
        const MLockGuard guard(multiParameterLock);
        return Targets.front();
    }();
    // Two of these could ask each other for ever.
    const MAutomationAdapter* const adapter = plugin.FindAdapter(first.ParameterIndex);
    if (adapter == nullptr || dynamic_cast<const MMultiParameter*>(adapter) != nullptr)
        return valuetexts::Percents(value01);
    return plugin.GetParameterValueNameFrom01(first.ParameterIndex,
                                              first.Map(2.0 * value01 - 1.0, first));
}

double MMultiParameter::ParseParameterValueName(int index, const MString& text) const
{
    double percents = 0.0;
    if (!Has(index))
        return 0.0;
    return text.ReadDouble(percents) ? percents / 100.0 : double{Value};
}

MAutomationType MMultiParameter::GetParameterType(int /*index*/) const
{
    return MAutomationType::Float;
}

double MMultiParameter::GetParameterDefaultValue(int index) const
{
    return Has(index) ? double{DefaultValue} : 0.0;
}
