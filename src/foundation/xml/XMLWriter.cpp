#include "foundation/xml/XMLWriter.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "foundation/streams/MStream.h"
#include "foundation/strings/UTF8.h"
#include "foundation/threads/MException.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/XMLEntities.h"

namespace
{

/// Behind so many characters a line of text breaks at the next blank.
constexpr int LineCharacters = 60;

/// In the compact form elements above this depth end a line.
constexpr int CompactLineDepth = 2;

/// Characters that are copied at once.
constexpr std::size_t Round = 8;

/// A narrow character is signed, and this widens it as a literal does.
template <typename Character>
inline void Copy(std::span<const Character> text, char16_t* target) noexcept
{
    const auto copySome = [source = text.data(), target](std::size_t at, std::size_t count)
    {
        for (std::size_t i = at; i < at + count; ++i)
            target[i] = static_cast<char16_t>(source[i]);
    };
    if (text.size() < Round)
        return copySome(0, text.size());
    const std::size_t last = text.size() - Round;
    for (std::size_t at = 0; at < last; at += Round)
        copySome(at, Round);
    copySome(last, Round); // some of it again
}

/// Whether any character may be one that is written by name, or a surrogate.
template <typename Character>
inline bool MayBeEncoded(std::span<const Character> text) noexcept
{
    bool mayBe = false;
    unsigned bits = 0;
    for (const Character character : text)
    {
        mayBe |= xmlentities::MayBeEncoded[static_cast<std::uint8_t>(character)];
        if constexpr (sizeof(Character) > 1)
            bits |= character;
    }
    return mayBe || (bits & 0x8000u) != 0; // which all surrogates have
}

/// How the first character of a text is written.
struct Written
{
    std::size_t units = 1; ///< that it takes
    bool isPlain = true;
    std::string_view otherwise; ///< unless plain
};

/// Half of a surrogate pair is left out: UTF-8 would drop what stands behind it as well, which may
/// be the quote that ends the text. An escaped byte, which UTF-8 writes as it is, is written by
/// name if it would be read as markup.
template <typename Character>
Written WayOf(std::span<const Character> text) noexcept
{
    const auto first = static_cast<char16_t>(text[0]);
    const bool hasPartner = text.size() > 1 && utf8::IsLowSurrogate(static_cast<char16_t>(text[1]));
    if (utf8::IsLowSurrogate(first) || (utf8::IsHighSurrogate(first) && !hasPartner))
        return {.isPlain = false, .otherwise = {}};
    if (!utf8::IsHighSurrogate(first))
    {
        const std::string_view name = xmlentities::Encode(first);
        return {.isPlain = name.empty(), .otherwise = name};
    }
    const char32_t value = utf8::Join(first, static_cast<char16_t>(text[1]));
    const bool isByte = value >= utf8::FirstEscape && value <= utf8::LastEscape;
    const std::string_view name =
        isByte ? xmlentities::Encode(static_cast<std::uint8_t>(value)) : std::string_view{};
    return {.units = 2, .isPlain = name.empty(), .otherwise = name};
}

bool HasContent(const MXMLItem& item) noexcept
{
    return !item.GetText().IsEmpty() || !item.GetSubItems().empty();
}

} // namespace

XMLWriter::XMLWriter(MStream& writtenStream, const MEncoding::Codec& usedCodec)
    : stream(writtenStream),
      codec(usedCodec)
{
}

void XMLWriter::WriteDeclaration(const MString& encoding)
{
    codec.WriteHeader(stream);
    Put("<?xml version=\"1.0\" encoding=\"");
    Put(encoding);
    Put("\"?>\n");
}

void XMLWriter::WriteCompact(const MXMLItem& item, int depth)
{
    PutTagStart(item);
    if (!HasContent(item))
        Put("/>");
    else
    {
        Put(u'>');
        PutEncoded(item.GetText());
        for (const auto& subItem : item.GetSubItems())
            WriteCompact(*subItem, depth + 1);
        Put("</");
        Put(item.GetName());
        Put(u'>');
    }
    if (depth < CompactLineDepth)
        Put(u'\n');
}

void XMLWriter::WriteReadable(const MXMLItem& item, int depth)
{
    PutTabs(depth);
    PutTagStart(item);
    if (!HasContent(item))
    {
        Put("/>\n");
        return;
    }
    Put(">\n");
    PutTextLines(item.GetText(), depth + 1);
    for (const auto& subItem : item.GetSubItems())
        WriteReadable(*subItem, depth + 1);
    PutTabs(depth);
    Put("</");
    Put(item.GetName());
    Put(">\n");
}

void XMLWriter::Flush()
{
    EncodeBlock();
}

void XMLWriter::Put(char16_t character)
{
    if (fill == block.size())
        EncodeBlock();
    block[fill++] = character;
}

void XMLWriter::Put(const MString& text)
{
    text.WithCharacters([this](auto characters) { PutPlain(characters); });
}

void XMLWriter::PutEncoded(const MString& text)
{
    text.WithCharacters([this](auto characters) { PutEncoded(characters); });
}

template <typename Character>
void XMLWriter::PutEncoded(std::span<const Character> text)
{
    // Nearly all texts are plain.
    if (!MayBeEncoded(text))
        return PutPlain(text);
    while (!text.empty())
    {
        std::size_t plain = 0;
        Written way;
        while (plain < text.size() && (way = WayOf(text.subspan(plain))).isPlain)
            plain += way.units;
        PutPlain(text.first(plain));
        if (plain == text.size())
            return;
        PutPlain(std::span<const char>(way.otherwise));
        text = text.subspan(plain + way.units);
    }
}

template <typename Character>
void XMLWriter::PutPlain(std::span<const Character> text)
{
    if (text.size() <= block.size() - fill)
    {
        Copy(text, block.data() + fill);
        fill += text.size();
        return;
    }
    while (!text.empty())
    {
        if (fill == block.size())
            EncodeBlock();
        const std::size_t count = std::min(text.size(), block.size() - fill);
        Copy(text.first(count), block.data() + fill);
        fill += count;
        text = text.subspan(count);
    }
}

void XMLWriter::PutTagStart(const MXMLItem& item)
{
    if (item.GetName().IsEmpty())
        throw MException("XML entity cannot have empty name.", MException::BadArgument);
    Put(u'<');
    Put(item.GetName());
    for (const MAttribute& attribute : item.GetAttributes())
    {
        Put(u' ');
        Put(attribute.name);
        Put(u'=');
        Put(u'"');
        PutEncoded(attribute.value);
        Put(u'"');
    }
}

void XMLWriter::PutTabs(int count)
{
    for (int i = 0; i < count; ++i)
        Put(u'\t');
}

void XMLWriter::PutTextLines(const MString& text, int depth)
{
    for (int start = 0; start < text.Length();)
    {
        const int blank = text.Find(u' ', start + LineCharacters);
        const int end = blank < 0 ? text.Length() : blank;
        PutTabs(depth);
        PutEncoded(text.Mid(start, end - start));
        Put(u'\n');
        start = end + 1;
    }
}

void XMLWriter::EncodeBlock()
{
    std::span<const char16_t> characters = std::span<const char16_t>(block).first(fill);
    while (!characters.empty())
    {
        const MCodecProgress progress = codec.EncodeSome(state, characters, bytes);
        stream.Write(std::span<const std::byte>(bytes).first(progress.written));
        characters = characters.subspan(progress.read);
    }
    fill = 0;
}
