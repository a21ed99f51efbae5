#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "foundation/strings/MString.h"
#include "foundation/xml/MAttribute.h"

class MStream;

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
    void SetName(const MString& newName) { name = newName; }
    const MString& GetText() const noexcept { return text; }
    void SetText(const MString& newText) { text = newText; }
    /// Null for the root.
    MXMLItem* GetParent() const noexcept { return parent; }
    /// Null behind the last subitem, and before the first one.
    MXMLItem* GetNextSibling() const noexcept { return nextSibling; }
    MXMLItem* GetPreviousSibling() const noexcept { return previousSibling; }
    /// 0 for the root.
    std::int32_t GetDepth() const noexcept { return depth; }

    /// Finds the attribute for GetAttribute().
    bool HasAttribute(const MString& attributeName) noexcept;
    /// The value that the last HasAttribute found; valid until this item changes.
    /// @throws MException (0) "There is no attribute in the cache. ..." if it found none.
    const MString& GetAttribute() const;
    MString GetAttribute(const MString& attributeName, const MString& defaultValue) const;
    /// The value, or null if there is none; valid until this item changes.
    const MString* FindAttribute(const MString& attributeName) const noexcept;
    /// @throws MException (256) "Could not find required attribute ({0})."
    const MString& GetRequiredAttribute(const MString& attributeName) const;
    /// Replaces the value, or adds the attribute at its sorted place. Numbers are decimal texts,
    /// doubles with twelve decimals; a bool is 0 or 1.
    void SetAttribute(const MString& attributeName, MString value);
    void SetAttribute(const MString& attributeName, double value);
    void SetAttribute(const MString& attributeName, int value);
    void RemoveAttribute(const MString& attributeName);
    const std::vector<MAttribute>& GetAttributes() const noexcept { return attributes; }
    /// Takes the place of all attributes. They may come in any order; of those with one name
    /// the last value counts. Leaves @p newAttributes without any.
    void AdoptAttributes(std::vector<MAttribute>& newAttributes);

    /// Finds the first subitem of the name for GetSubItem().
    bool HasSubItem(const MString& itemName) noexcept;
    /// What the last HasSubItem found; valid until this item changes.
    /// @throws MException (0) "There is no subitem in the cache. ..." if it found none.
    MXMLItem& GetSubItem() const;
    /// @throws MException (256) "Could not find required subitem ({0})."
    MXMLItem& GetRequiredSubItem(const MString& itemName) const;
    /// The first subitem of the name, added at the end if there is none.
    MXMLItem& GetOrAddSubItem(const MString& itemName);
    MXMLItem& AddSubItem(const MString& itemName);
    /// Ends @p subItem, which is one of this item, and all below it.
    void RemoveSubItem(const MXMLItem& subItem) noexcept;
    const std::vector<std::unique_ptr<MXMLItem>>& GetSubItems() const noexcept { return subItems; }

    /// Puts copies of the text, the attributes and all below @p source (not this item nor one above
    /// it) in the place of this item's; the name stays. Texts are shared, so it is cheap.
    void CopyContents(const MXMLItem& source);
    /// Removes subitems, attributes and text.
    void Clear() noexcept;

    /// Makes this item the root element of an XML text, whatever it was before. An element that the
    /// text leaves open at its end counts as whole.
    /// @throws MException (256) "Invalid file contents. ...", "Text outside of any element." or
    /// "The XML does not contain any elements."; what has been read then stays, to be discarded.
    void Load(MStream& stream);
    /// The same for what SaveCompressed wrote. Compressed data that end before their end marker
    /// throw "Source compressed stream has invalid content.", or "... is too long." when they
    /// inflate to more than limits::InflatedTreeBytes.
    void LoadCompressed(MStream& stream);
    /// Writes the readable form to a file, which is created anew once all of it is known. Failures
    /// are those of the file, of MEncoding::GetCodec and MException (2) "XML entity cannot have
    /// empty name.", here and below.
    void Save(const MString& fileName, const MString& encoding) const;
    void Save(MStream& stream, bool isCompact, const MString& encoding) const;
    /// Deflates the compact form.
    void SaveCompressed(MStream& stream, const MString& encoding) const;

    /// Makes @p bytes the text, in hexadecimal digits, deflated first if @p isCompressed.
    void StoreBytes(std::span<const std::byte> bytes, bool isCompressed);
    /// The way back. @throws MException (256) "Could not read required data from stream." for what
    /// is no such text, and "Source compressed stream ..." as LoadCompressed does.
    std::vector<std::byte> LoadBytes(bool isCompressed) const;

private:
    MXMLItem* FindSubItem(const MString& itemName) const noexcept;
    /// Where the attribute stands, or would stand, in attributes.
    std::size_t Place(const MString& attributeName) const noexcept;
    bool StandsAt(std::size_t place, const MString& attributeName) const noexcept;
    /// Whether the attributes have the very names, in their order, of those of the item before, as
    /// in a list of records.
    bool HasNamesOfPreviousSibling() const noexcept;
    void SortAttributes();
    /// To be called by every change: the caches point into what changes.
    void ForgetFound() noexcept;

    MXMLItem* parent; ///< null for the root
    MXMLItem* nextSibling = nullptr;
    MXMLItem* previousSibling = nullptr;
    std::int32_t depth;
    std::vector<std::unique_ptr<MXMLItem>> subItems;
    MString name;
    MString text;
    std::vector<MAttribute> attributes;
    const MString* foundAttribute = nullptr; ///< its value
    MXMLItem* foundSubItem = nullptr;
};
