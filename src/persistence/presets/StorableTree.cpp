#include "persistence/presets/StorableTree.h"

#include <algorithm>
#include <string>

#include "foundation/limits.h"
#include "foundation/strings/UTF8.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

[[noreturn]] void Refuse(const char* text)
{
    throw MException(text, MException::BadData);
}

/// Whether nothing in @p text can be among what is dropped, as in nearly all texts.
bool IsPlain(const MString& text)
{
    return text.WithCharacters(
        [](auto characters)
        {
            return std::ranges::none_of(characters, [](auto unit)
                                        { return static_cast<char16_t>(unit) >= 0xD800; });
        });
}

void CheckStorable(const MString& name)
{
    if (storabletree::DropUnstorable(name).Length() != name.Length())
        Refuse("Invalid file contents. Names hold characters that cannot be stored.");
}

void CheckText(const MString& text)
{
    if (static_cast<std::size_t>(text.Length()) > limits::XMLTextCharacters)
        Refuse("Invalid file contents. Text is too long.");
}

void CheckLimits(const MXMLItem& item, int depth, int& count)
{
    if (depth > limits::XMLDepth)
        Refuse("Invalid file contents. Elements are nested too deeply.");
    if (++count > limits::XMLItems)
        Refuse("Invalid file contents. Too many elements.");
    CheckText(item.GetText());
    for (const MAttribute& attribute : item.GetAttributes())
        CheckText(attribute.value);
    for (const auto& subItem : item.GetSubItems())
        CheckLimits(*subItem, depth + 1, count);
}

} // namespace

MString storabletree::DropUnstorable(const MString& text)
{
    if (IsPlain(text))
        return text;
    std::u16string kept;
    for (int i = 0; i < text.Length(); ++i)
    {
        const char16_t unit = text.CharAt(i);
        const char16_t next = text.CharAt(i + 1);
        if (utf8::IsHighSurrogate(unit) && utf8::IsLowSurrogate(next))
        {
            const char32_t character = utf8::Join(unit, next);
            if (character < utf8::FirstEscape || character > utf8::LastEscape)
                kept.append({unit, next});
            ++i;
        }
        else if (!utf8::IsHighSurrogate(unit) && !utf8::IsLowSurrogate(unit) &&
                 unit != utf8::ByteOrderMark)
            kept.push_back(unit);
    }
    return MString::FromUTF16(kept);
}

void storabletree::DropUnstorable(MXMLItem& item)
{
    CheckStorable(item.GetName());
    if (!IsPlain(item.GetText()))
        item.SetText(DropUnstorable(item.GetText()));
    std::vector<MAttribute> changed;
    for (const MAttribute& attribute : item.GetAttributes())
    {
        CheckStorable(attribute.name);
        if (!IsPlain(attribute.value))
            changed.push_back(attribute);
    }
    for (const MAttribute& attribute : changed)
        item.SetAttribute(attribute.name, DropUnstorable(attribute.value));
    for (const auto& subItem : item.GetSubItems())
        DropUnstorable(*subItem);
}

void storabletree::CheckLimits(const MXMLItem& root)
{
    int count = 0;
    ::CheckLimits(root, 1, count);
}
