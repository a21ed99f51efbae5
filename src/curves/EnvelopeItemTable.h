#pragma once

#include <new>
#include <span>
#include <utility>
#include <vector>

#include "curves/EnvelopeItems.h"

/// The items of a curve while it is compiled. Each has its place, whether it is there or not: one
/// before the first point, then at each point its rounded corner and the segment behind it. So
/// corners are cut without moving anything; places that stay null are taken out in the end.
class EnvelopeItemTable
{
public:
    using Item = MEnvelopeComputer::Item;

    static constexpr std::size_t GetSize(std::size_t pointCount) { return 2 * pointCount + 1; }

    /// @p itemSlots has GetSize() slots or more; @p itemPointers has the capacity.
    EnvelopeItemTable(std::size_t pointCount, std::span<EnvelopeItemSlot> itemSlots,
                      std::vector<Item*>& itemPointers)
        : slots(itemSlots),
          items(itemPointers)
    {
        items.assign(GetSize(pointCount), nullptr);
    }

    Item* GetLeft(std::size_t point) const { return items[2 * point]; }
    Item* GetRight(std::size_t point) const { return items[2 * point + 2]; }

    template <class Kind, class... Arguments>
    void SetLeft(std::size_t point, double endX, Arguments&&... arguments)
    {
        Set<Kind>(2 * point, endX, std::forward<Arguments>(arguments)...);
    }
    template <class Kind, class... Arguments>
    void SetCorner(std::size_t point, double endX, Arguments&&... arguments)
    {
        Set<Kind>(2 * point + 1, endX, std::forward<Arguments>(arguments)...);
    }
    template <class Kind, class... Arguments>
    void SetRight(std::size_t point, double endX, Arguments&&... arguments)
    {
        Set<Kind>(2 * point + 2, endX, std::forward<Arguments>(arguments)...);
    }

private:
    template <class Kind, class... Arguments>
    void Set(std::size_t place, double endX, Arguments&&... arguments)
    {
        items[place] =
            ::new (slots[place].bytes.data()) Kind(std::forward<Arguments>(arguments)...);
        items[place]->EndX = endX;
    }

    std::span<EnvelopeItemSlot> slots;
    std::vector<Item*>& items;
};
