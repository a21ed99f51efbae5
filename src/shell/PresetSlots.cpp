#include "shell/PresetSlots.h"

#include <algorithm>

#include "foundation/strings/NumberedNames.h"

namespace
{

constexpr const char* IndexKey = "PresetIndex";

constexpr auto SlotNames = MakeNumberedNames<PresetSlots::Count>("Preset");

} // namespace

PresetSlots::PresetSlots(MXMLItem& settings)
    : CurrentSlot(static_cast<int>(std::clamp<std::int64_t>(
          settings.GetAttribute(IndexKey, "0").ToInteger(), 0, Count - 1))),
      CurrentPresetCopy(CurrentSlot)
{
    for (std::size_t i = 0; i < Count; ++i)
        if (static_cast<int>(i) != CurrentSlot && settings.HasSubItem(SlotNames[i].data()))
        {
            Slots[i] = std::make_unique<MXMLItem>(SlotNames[i].data());
            Slots[i]->CopyContents(settings.GetSubItem());
        }
}

void PresetSlots::Store(MXMLItem& settings) const
{
    settings.SetAttribute(IndexKey, CurrentSlot);
    for (const auto& slot : Slots)
        if (slot != nullptr)
            settings.AddSubItem(slot->GetName()).CopyContents(*slot);
}
