#pragma once

#include <memory>
#include <vector>

#include "foundation/strings/MString.h"

/// A named value of an item.
struct MAttribute
{
    MString name;
    MString value;
};

/// One node of the trees in which the system stores everything: a name, a text, attributes and
/// subitems. All names are compared by MString::Compare.
/// Attribute names are unique within an item and kept in sorted order; subitem names may repeat and
/// keep the order in which they came. An item owns its subitems. One thread at a time.
class MXMLItem
{
public:
    explicit MXMLItem(const MString& itemName, MXMLItem* parentItem = nullptr);
    MXMLItem(const MXMLItem&) = delete;
    MXMLItem& operator=(const MXMLItem&) = delete;

    const MString& GetName() const noexcept { return name; }
    const MString& GetText() const noexcept { return text; }
    void SetText(const MString& newText) { text = newText; }
    MXMLItem* GetParent() const noexcept { return parent; }

    /// Finds the attribute for GetAttribute().
    bool HasAttribute(const MString& attributeName) noexcept;
    /// The value that the last HasAttribute found; valid until this item changes.
    /// @throws MException (0) "There is no attribute in the cache. ..." if it found none.
    const MString& GetAttribute() const;
    MString GetAttribute(const MString& attributeName, const MString& defaultValue) const;
    /// Replaces the value, or adds the attribute at its sorted place.
    void SetAttribute(const MString& attributeName, const MString& value);
    void SetAttribute(const MString& attributeName, double value);
    void SetAttribute(const MString& attributeName, int value);
    void RemoveAttribute(const MString& attributeName);
    const std::vector<MAttribute>& GetAttributes() const noexcept { return attributes; }

    /// Finds the first subitem of the name for GetSubItem().
    bool HasSubItem(const MString& itemName) noexcept;
    /// What the last HasSubItem found; valid until this item changes.
    /// @throws MException (0) "There is no subitem in the cache. ..." if it found none.
    MXMLItem& GetSubItem() const;
    /// The first subitem of the name, added at the end if there is none.
    MXMLItem& GetOrAddSubItem(const MString& itemName);
    MXMLItem& AddSubItem(const MString& itemName);
    const std::vector<std::unique_ptr<MXMLItem>>& GetSubItems() const noexcept { return subItems; }

    /// Removes subitems, attributes and text.
    void Clear() noexcept;

private:
    /// Where the attribute stands, or would stand, in attributes.
    std::size_t Place(const MString& attributeName) const noexcept;
    bool StandsAt(std::size_t place, const MString& attributeName) const noexcept;
    /// To be called by every change: the caches point into what changes.
    void ForgetFound() noexcept;

    MXMLItem* parent; ///< null for the root
    std::vector<std::unique_ptr<MXMLItem>> subItems;
    MString name;
    MString text;
    std::vector<MAttribute> attributes;
    const MAttribute* foundAttribute = nullptr;
    MXMLItem* foundSubItem = nullptr;
};
