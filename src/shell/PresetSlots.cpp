#include "shell/PresetSlots.h"

#include <algorithm>
#include <utility>

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
            const auto copy = std::make_shared<MXMLItem>("settings");
            copy->CopyContents(settings.GetSubItem());
            Slots[i] = copy;
        }
}

void PresetSlots::Store(MXMLItem& settings) const
{
    settings.SetAttribute(IndexKey, CurrentSlot);
    for (std::size_t i = 0; i < Count; ++i)
        if (Slots[i] != nullptr)
            settings.AddSubItem(SlotNames[i].data()).CopyContents(*Slots[i]);
}

bool PresetSlots::IsAnyEmpty() const noexcept
{
    return std::ranges::count(Slots, nullptr) > 1; // the current one always is
}

void PresetSlots::SetSlot(int index, State state)
{
    Slots.at(static_cast<std::size_t>(index)) = std::move(state);
}

void PresetSlots::FillEmpty(const State& state)
{
    for (int i = 0; i < Count; ++i)
        if (i != CurrentSlot && GetSlot(i) == nullptr)
            SetSlot(i, state);
}

void PresetSlots::Select(int index, State left)
{
    SetSlot(CurrentSlot, std::move(left));
    SetSlot(index, nullptr);
    CurrentPresetCopy = CurrentSlot;
    CurrentSlot = index;
}

void PresetSlots::Continue(int index, State left)
{
    Select(index, std::move(left));
    CurrentPresetCopy = CurrentSlot;
}
