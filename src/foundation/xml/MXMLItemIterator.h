#pragma once

#include <cstddef>

#include "foundation/strings/MString.h"

class MXMLItem;

/// Walks over the subitems of an item in their order. The item has to outlive this and may not lose
/// subitems meanwhile.
class MXMLItemIterator
{
public:
    /// Over all subitems, or over those of the name if @p subItemName is not empty.
    explicit MXMLItemIterator(const MXMLItem& walkedItem, const MString& subItemName = {});

    /// Goes to the first subitem.
    void Begin();
    void Next();
    bool IsValid() const noexcept;
    /// @throws MException (0) "XML item iterator has not been initialized." before Begin and behind
    /// the last subitem.
    MXMLItem& Current() const;

private:
    void SkipOtherNames();

    static constexpr std::size_t NotStarted = static_cast<std::size_t>(-1);

    const MXMLItem& item;
    MString name;
    std::size_t index = NotStarted;
};
