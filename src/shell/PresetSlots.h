#pragma once

#include <array>
#include <memory>

#include "foundation/xml/MXMLItem.h"

/// The eight states A to H between which the user switches. The plugin itself holds the current
/// one; the others are kept as trees, just as they came.
/// Owned by the shell and guarded by its settings lock; blocks know nothing of them.
class PresetSlots
{
public:
    static constexpr int Count = 8;

    PresetSlots() = default;
    /// Copies what @p settings holds. An index outside of 0 to Count - 1 counts as the nearest one,
    /// and a missing one as 0.
    explicit PresetSlots(MXMLItem& settings);
    /// Adds "PresetIndex" and an item for each slot but the current one that has contents.
    void Store(MXMLItem& settings) const;

    int GetCurrentSlot() const noexcept { return CurrentSlot; }
    /// The one that the next switch leaves.
    int GetPreviousSlot() const noexcept { return CurrentPresetCopy; }
    /// Null without contents, as for the current slot.
    const MXMLItem* GetSlot(int index) const
    {
        return Slots.at(static_cast<std::size_t>(index)).get();
    }

private:
    std::array<std::unique_ptr<MXMLItem>, Count> Slots;
    int CurrentSlot = 0;
    int CurrentPresetCopy = 0;
};
