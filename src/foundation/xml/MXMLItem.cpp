#include "foundation/xml/MXMLItem.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <string>
#include <utility>

#include "foundation/limits.h"
#include "foundation/streams/MHexaStream.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/streams/MZLibStream.h"
#include "foundation/strings/MEncoding.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLParser.h"
#include "foundation/xml/XMLWriter.h"

namespace
{

/// As many as most items have, so that their memory is made once.
constexpr std::size_t UsualAttributes = 8;

/// Up to here a search through all is faster than a binary one.
constexpr std::size_t FewAttributes = 16;

/// What most stored numbers are; as literals they cost nothing.
struct RoundNumber
{
    double value;
    const char* text;
};

constexpr RoundNumber RoundNumbers[] = {
    {0.0, "0.000000000000"},
    {1.0, "1.000000000000"},
    {-1.0, "-1.000000000000"},
};

std::vector<std::byte> ReadAll(MStream& stream)
{
    std::vector<std::byte> all;
    std::array<std::byte, 4096> piece;
    for (std::size_t count = stream.Read(piece); count > 0; count = stream.Read(piece))
        all.insert(all.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
    return all;
}

[[noreturn]] void RefuseMissing(const char* format, const MString& name)
{
    throw MException(MStringFormatter(format).Add(name).Result(), MException::BadData);
}

} // namespace

MXMLItem::MXMLItem(const MString& itemName, MXMLItem* parentItem)
    : parent(parentItem),
      depth(parentItem == nullptr ? 0 : parentItem->depth + 1),
      name(itemName)
{
}

bool MXMLItem::HasAttribute(const MString& attributeName) noexcept
{
    foundAttribute = FindAttribute(attributeName);
    return foundAttribute != nullptr;
}

const MString& MXMLItem::GetAttribute() const
{
    if (foundAttribute == nullptr)
        throw MException("There is no attribute in the cache. Previous call to HasAttribute "
                         "probably did not succeed.");
    return *foundAttribute;
}

MString MXMLItem::GetAttribute(const MString& attributeName, const MString& defaultValue) const
{
    const MString* const value = FindAttribute(attributeName);
    return value == nullptr ? defaultValue : *value;
}

const MString& MXMLItem::GetRequiredAttribute(const MString& attributeName) const
{
    const MString* const value = FindAttribute(attributeName);
    if (value == nullptr)
        RefuseMissing("Could not find required attribute ({0}).", attributeName);
    return *value;
}

void MXMLItem::SetAttribute(const MString& attributeName, MString value)
{
    ForgetFound();
    if (attributes.empty())
        attributes.reserve(UsualAttributes);
    // Who stores much does it in sorted order.
    if (attributes.empty() || attributes.back().name.Compare(attributeName) < 0)
    {
        attributes.emplace_back(attributeName, std::move(value));
        return;
    }
    const std::size_t place = Place(attributeName);
    if (StandsAt(place, attributeName))
        attributes[place].value = std::move(value);
    else
        attributes.emplace(attributes.begin() + static_cast<std::ptrdiff_t>(place), attributeName,
                           std::move(value));
}

void MXMLItem::SetAttribute(const MString& attributeName, double value)
{
    for (const RoundNumber& round : RoundNumbers)
        if (std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(round.value))
            return SetAttribute(attributeName, MString(round.text));
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

void MXMLItem::AdoptAttributes(std::vector<MAttribute>& newAttributes)
{
    ForgetFound();
    attributes.clear();
    attributes.swap(newAttributes);
    if (attributes.capacity() > 2 * attributes.size())
        attributes.shrink_to_fit();
    if (!HasNamesOfPreviousSibling())
        SortAttributes();
}

bool MXMLItem::HasNamesOfPreviousSibling() const noexcept
{
    return previousSibling != nullptr &&
           std::ranges::equal(attributes, previousSibling->attributes,
                              [](const MAttribute& a, const MAttribute& b)
                              { return a.name.IsSharedWith(b.name); });
}

void MXMLItem::SortAttributes()
{
    const auto isBefore = [](const MAttribute& a, const MAttribute& b)
    { return a.name.Compare(b.name) < 0; };
    const auto isNotBefore = [isBefore](const MAttribute& a, const MAttribute& b)
    { return !isBefore(a, b); };
    if (std::ranges::adjacent_find(attributes, isNotBefore) == attributes.end())
        return; // as this system writes them

    std::ranges::stable_sort(attributes, isBefore);
    auto last = attributes.begin();
    for (auto next = last + 1; next != attributes.end(); ++next)
        if (isBefore(*last, *next))
            *++last = std::move(*next);
        else
            last->value = std::move(next->value);
    attributes.erase(last + 1, attributes.end());
}

bool MXMLItem::HasSubItem(const MString& itemName) noexcept
{
    foundSubItem = FindSubItem(itemName);
    return foundSubItem != nullptr;
}

MXMLItem& MXMLItem::GetSubItem() const
{
    if (foundSubItem == nullptr)
        throw MException("There is no subitem in the cache. Previous call to HasSubItem probably "
                         "did not succeed.");
    return *foundSubItem;
}

MXMLItem& MXMLItem::GetRequiredSubItem(const MString& itemName) const
{
    MXMLItem* const item = FindSubItem(itemName);
    if (item == nullptr)
        RefuseMissing("Could not find required subitem ({0}).", itemName);
    return *item;
}

MXMLItem& MXMLItem::GetOrAddSubItem(const MString& itemName)
{
    return HasSubItem(itemName) ? GetSubItem() : AddSubItem(itemName);
}

MXMLItem& MXMLItem::AddSubItem(const MString& itemName)
{
    ForgetFound();
    MXMLItem* const last = subItems.empty() ? nullptr : subItems.back().get();
    MXMLItem& added = *subItems.emplace_back(std::make_unique<MXMLItem>(itemName, this));
    added.previousSibling = last;
    if (last != nullptr)
        last->nextSibling = &added;
    return added;
}

void MXMLItem::RemoveSubItem(const MXMLItem& subItem) noexcept
{
    ForgetFound();
    MXMLItem* const previous = subItem.previousSibling;
    MXMLItem* const next = subItem.nextSibling;
    if (previous != nullptr)
        previous->nextSibling = next;
    if (next != nullptr)
        next->previousSibling = previous;
    subItems.erase(std::ranges::find(subItems, &subItem, &std::unique_ptr<MXMLItem>::get));
}

void MXMLItem::CopyContents(const MXMLItem& source)
{
    Clear();
    text = source.text;
    attributes = source.attributes;
    subItems.reserve(source.subItems.size());
    for (const auto& item : source.subItems)
        AddSubItem(item->name).CopyContents(*item);
}

void MXMLItem::Clear() noexcept
{
    ForgetFound();
    subItems.clear();
    attributes.clear();
    text.Clear();
}

void MXMLItem::Load(MStream& stream)
{
    Clear();
    name.Clear();
    MXMLParser(*this).Parse(stream);
    if (name.IsEmpty())
        throw MException("The XML does not contain any elements.", MException::BadData);
}

void MXMLItem::LoadCompressed(MStream& stream)
{
    MZLibStream inflated(stream, MZLibStream::Direction::Read);
    inflated.LimitOutput(limits::InflatedTreeBytes);
    Load(inflated);
    // Behind the root element nothing counts but that the data are whole.
    inflated.ReadToEnd();
}

void MXMLItem::Save(const MString& fileName, const MString& encoding) const
{
    // First into memory: what cannot be written then leaves the old file as it is.
    MMemoryStream written;
    Save(written, false, encoding);
    written.Seek(0, MStream::FromStart);
    MStdFileStream file(fileName, MStdFileStream::Opening::Create);
    file.Write(written.GetData());
    file.Close();
}

void MXMLItem::Save(MStream& stream, bool isCompact, const MString& encoding) const
{
    XMLWriter writer(stream, MEncoding::GetCodec(encoding));
    writer.WriteDeclaration(encoding);
    if (isCompact)
        writer.WriteCompact(*this);
    else
        writer.WriteReadable(*this);
    writer.Flush();
}

void MXMLItem::SaveCompressed(MStream& stream, const MString& encoding) const
{
    MZLibStream deflated(stream, MZLibStream::Direction::Write);
    Save(deflated, true, encoding);
    deflated.Finish();
}

void MXMLItem::StoreBytes(std::span<const std::byte> bytes, bool isCompressed)
{
    MMemoryStream source = MMemoryStream::Refer(bytes);
    if (isCompressed)
    {
        MMemoryStream packed;
        MZLibStream deflated(packed, MZLibStream::Direction::Write);
        deflated.Write(bytes);
        deflated.Finish();
        packed.Seek(0, MStream::FromStart);
        source = packed;
    }
    text = MHexaStream::ToText(source);
}

std::vector<std::byte> MXMLItem::LoadBytes(bool isCompressed) const
{
    // In UTF-8 no character beyond ASCII has a byte that looks like a digit.
    const std::string characters = text.ToUTF8();
    MMemoryStream digits = MMemoryStream::Refer(std::as_bytes(std::span(characters)));
    MHexaStream hexa(digits);
    if (!isCompressed)
        return ReadAll(hexa);
    MZLibStream inflated(hexa, MZLibStream::Direction::Read);
    inflated.LimitOutput(limits::InflatedTreeBytes);
    return ReadAll(inflated);
}

const MString* MXMLItem::FindAttribute(const MString& attributeName) const noexcept
{
    // Most items have few, whose lengths tell them apart faster than their order does.
    const int length = attributeName.Length();
    if (attributes.size() <= FewAttributes)
    {
        const auto found = std::ranges::find_if(
            attributes,
            [&attributeName, length](const MString& candidate)
            { return candidate.Length() == length && candidate == attributeName; },
            &MAttribute::name);
        return found == attributes.end() ? nullptr : &found->value;
    }
    const std::size_t place = Place(attributeName);
    return StandsAt(place, attributeName) ? &attributes[place].value : nullptr;
}

MXMLItem* MXMLItem::FindSubItem(const MString& itemName) const noexcept
{
    const auto found = std::ranges::find_if(subItems, [&itemName](const auto& item)
                                            { return item->name == itemName; });
    return found == subItems.end() ? nullptr : found->get();
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
