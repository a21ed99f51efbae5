#pragma once

#include <array>
#include <memory>

#include "foundation/xml/MXMLItem.h"

/// The eight states A to H between which the user switches. The plugin itself holds the current
/// one; the others are kept as trees, just as they came. Slots that hold the same share one.
/// Owned by the shell and guarded by its settings lock; blocks know nothing of them.
class PresetSlots
{
public:
    using State = std::shared_ptr<const MXMLItem>;

    static constexpr int Count = 8;

    PresetSlots() = default;
    /// Copies what @p settings holds. An index outside of 0 to Count - 1 counts as the nearest one,
    /// and a missing one as 0.
    explicit PresetSlots(MXMLItem& settings);
    /// Adds "PresetIndex" and an item for each slot but the current one that has contents.
    void Store(MXMLItem& settings) const;

    int GetCurrentSlot() const noexcept { return CurrentSlot; }
    /// The one that the last switch left.
    int GetPreviousSlot() const noexcept { return CurrentPresetCopy; }
    /// Null for the current slot, and for one that nothing was put into.
    const State& GetSlot(int index) const { return Slots.at(static_cast<std::size_t>(index)); }
    bool IsAnyEmpty() const noexcept;

    /// @p index is not the current slot.
    void SetSlot(int index, State state);
    /// Puts @p state into all that have no contents.
    void FillEmpty(const State& state);
    /// Makes @p index, another one, the current slot, and @p left the contents of the one before.
    void Select(int index, State left);
    /// The same, but as if @p index had been the current slot for long.
    void Continue(int index, State left);

private:
    std::array<State, Count> Slots;
    int CurrentSlot = 0;
    int CurrentPresetCopy = 0;
};
