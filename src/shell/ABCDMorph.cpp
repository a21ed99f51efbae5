#include "shell/ABCDMorph.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/xml/MStorageDescriptor.h"
#include "host/MAudioPluginAdapter.h"
#include "persistence/MPluginConfiguration.h"
#include "shell/MQuillfernAudioEffectPlugin.h"

namespace
{

constexpr const char* Question =
    "Preset {0} is currently selected, which means that the changes you have made using ABCD "
    "morphing will replace it. ABCD morphing uses presets A,B,C and D, so next time you use it you "
    "would be morphing different presets, because you are going to change one of them.<p><p><b>"
    "Would you like to select preset E, so that the ABCD settings will be preseved?";

double Blend(const MABCDValues& corners, double x, double y) noexcept
{
    const auto& [a, b, c, d] = corners;
    return (d * y + (1.0 - y) * b) * x + (1.0 - x) * (c * y + (1.0 - y) * a);
}

/// Not a number counts as the middle.
double Limit(double place) noexcept
{
    return std::isnan(place) ? 0.5 : std::clamp(place, 0.0, 1.0);
}

} // namespace

ABCDMorph::ABCDMorph(MQuillfernAudioEffectPlugin& morphedPlugin)
    : plugin(morphedPlugin),
      before(morphedPlugin.KeepCurrentSlot()),
      values(static_cast<std::size_t>(morphedPlugin.GetParameterCount()))
{
    changes.reserve(values.size());
    // A host may load a state meanwhile, on a thread of its own.
    const PresetSlots slots = [this]
    {
        const MLockGuard settings(plugin.GetSettingsLock());
        return plugin.GetPresetSlots();
    }();
    const auto probe = MQuillfernAudioEffectPlugin::Create(MPluginConfiguration::Get());
    for (int corner = 0; corner < CornerCount; ++corner)
    {
        const PresetSlots::State& slot = slots.GetSlot(corner);
        MXMLItem state("settings");
        state.CopyContents(slot != nullptr ? *slot : *before); // null for the current one
        probe->Store({.storing = false, .item = state});
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i].at(static_cast<std::size_t>(corner)) =
                probe->GetRestorableParameter(static_cast<int>(i));
    }
}

void ABCDMorph::MoveTo(double x, double y)
{
    X = Limit(x);
    Y = Limit(y);
    std::vector<int> moved;
    moved.reserve(values.size());
    {
        const MLockGuard guard(plugin.GetProcessingLock());
        for (MAutomationAdapter* const adapter : plugin.GetAdapters())
            Move(*adapter, moved);
        plugin.UpdateEffect();
    }
    if (MAudioPluginAdapter* const adapter = plugin.GetAdapter())
        for (const int i : moved)
            adapter->SendAutomation(i, plugin.GetRestorableParameter(i));
}

void ABCDMorph::Move(MAutomationAdapter& adapter, std::vector<int>& moved)
{
    changes.clear();
    // Adapters that came after the morph began have no corners.
    const int known = static_cast<int>(values.size()) - adapter.GetFirstIndex();
    for (int i = 0; i < std::min(adapter.GetCount(), known); ++i)
    {
        const int index = adapter.GetFirstIndex() + i;
        const double value = Blend(values[static_cast<std::size_t>(index)], X, Y);
        if (std::abs(value - plugin.GetParameter(index)) <= LeastChange)
            continue;
        changes.push_back({.index = i, .value01 = value});
        moved.push_back(index);
    }
    plugin.SetParameters(adapter, changes, false);
}

void ABCDMorph::Cancel()
{
    plugin.TakeCurrentSlot(before);
}

bool ABCDMorph::IsCornerCurrent() const
{
    return plugin.GetPresetSlots().GetCurrentSlot() < CornerCount;
}

MString ABCDMorph::GetQuestion() const
{
    MString letter;
    letter.Append(static_cast<char16_t>(u'A' + plugin.GetPresetSlots().GetCurrentSlot()));
    return MStringFormatter(Question).Add(letter).Result();
}

void ABCDMorph::Confirm(bool keepsCorners)
{
    if (keepsCorners && IsCornerCurrent())
        plugin.ContinueInSlot(FreeSlot, before);
}
