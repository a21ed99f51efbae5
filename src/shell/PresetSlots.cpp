#include "shell/PresetSlots.h"

#include <algorithm>

#include "foundation/strings/MStringFormatter.h"

namespace
{

constexpr const char* IndexKey = "PresetIndex";

MString SlotName(std::size_t index)
{
    return MStringFormatter("Preset{0}").Add(static_cast<int>(index)).Result();
}

} // namespace

PresetSlots::PresetSlots(MXMLItem& settings)
    : CurrentSlot(static_cast<int>(std::clamp<std::int64_t>(
          settings.GetAttribute(IndexKey, "0").ToInteger(), 0, Count - 1))),
      CurrentPresetCopy(CurrentSlot)
{
    for (std::size_t i = 0; i < Count; ++i)
        if (static_cast<int>(i) != CurrentSlot && settings.HasSubItem(SlotName(i)))
        {
            Slots[i] = std::make_unique<MXMLItem>(SlotName(i));
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
