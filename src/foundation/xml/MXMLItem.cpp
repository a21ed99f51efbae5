#include "foundation/xml/MXMLItem.h"

#include <algorithm>

#include "foundation/threads/MException.h"

MXMLItem::MXMLItem(const MString& itemName, MXMLItem* parentItem)
    : parent(parentItem),
      name(itemName)
{
}

bool MXMLItem::HasAttribute(const MString& attributeName) noexcept
{
    const std::size_t place = Place(attributeName);
    foundAttribute = StandsAt(place, attributeName) ? &attributes[place] : nullptr;
    return foundAttribute != nullptr;
}

const MString& MXMLItem::GetAttribute() const
{
    if (foundAttribute == nullptr)
        throw MException("There is no attribute in the cache. Previous call to HasAttribute "
                         "probably did not succeed.");
    return foundAttribute->value;
}

MString MXMLItem::GetAttribute(const MString& attributeName, const MString& defaultValue) const
{
    const std::size_t place = Place(attributeName);
    return StandsAt(place, attributeName) ? attributes[place].value : defaultValue;
}

void MXMLItem::SetAttribute(const MString& attributeName, const MString& value)
{
    ForgetFound();
    const std::size_t place = Place(attributeName);
    if (StandsAt(place, attributeName))
        attributes[place].value = value;
    else
        attributes.insert(attributes.begin() + static_cast<std::ptrdiff_t>(place),
                          {attributeName, value});
}

void MXMLItem::SetAttribute(const MString& attributeName, double value)
{
    SetAttribute(attributeName, MString::FromDouble(value, 12));
}

void MXMLItem::SetAttribute(const MString& attributeName, int value)
{
    SetAttribute(attributeName, MString::FromInteger(value));
}

void MXMLItem::RemoveAttribute(const MString& attributeName)
{
    ForgetFound();
    const std::size_t place = Place(attributeName);
    if (StandsAt(place, attributeName))
        attributes.erase(attributes.begin() + static_cast<std::ptrdiff_t>(place));
}

bool MXMLItem::HasSubItem(const MString& itemName) noexcept
{
    const auto found = std::ranges::find_if(subItems, [&itemName](const auto& item)
                                            { return item->name == itemName; });
    foundSubItem = found != subItems.end() ? found->get() : nullptr;
    return foundSubItem != nullptr;
}

MXMLItem& MXMLItem::GetSubItem() const
{
    if (foundSubItem == nullptr)
        throw MException("There is no subitem in the cache. Previous call to HasSubItem probably "
                         "did not succeed.");
    return *foundSubItem;
}

MXMLItem& MXMLItem::GetOrAddSubItem(const MString& itemName)
{
    return HasSubItem(itemName) ? GetSubItem() : AddSubItem(itemName);
}

MXMLItem& MXMLItem::AddSubItem(const MString& itemName)
{
    ForgetFound();
    return *subItems.emplace_back(std::make_unique<MXMLItem>(itemName, this));
}

void MXMLItem::Clear() noexcept
{
    ForgetFound();
    subItems.clear();
    attributes.clear();
    text.Clear();
}

std::size_t MXMLItem::Place(const MString& attributeName) const noexcept
{
    const auto place = std::ranges::lower_bound(
        attributes, attributeName,
        [](const MString& a, const MString& b) { return a.Compare(b) < 0; }, &MAttribute::name);
    return static_cast<std::size_t>(place - attributes.begin());
}

bool MXMLItem::StandsAt(std::size_t place, const MString& attributeName) const noexcept
{
    return place < attributes.size() && attributes[place].name == attributeName;
}

void MXMLItem::ForgetFound() noexcept
{
    foundAttribute = nullptr;
    foundSubItem = nullptr;
}
