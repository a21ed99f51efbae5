#include "foundation/modules/MTranslation.h"

#include <algorithm>
#include <cstdint>

#include "foundation/modules/MResources.h"
#include "foundation/strings/FormatReader.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "foundation/xml/MXMLItem.h"
#include "foundation/xml/MXMLItemIterator.h"

namespace
{

/// A bit for each number of an argument in @p format.
std::uint32_t FindArguments(const MString& format)
{
    static_assert(limits::FormatArguments == 32);
    std::uint32_t numbers = 0;
    MFormatOptions ignored = DefaultFormatOptions;
    FormatReader reader(format);
    for (auto kind = reader.Next(); kind != FormatReader::Kind::End; kind = reader.Next())
        if (kind == FormatReader::Kind::Placeholder)
        {
            numbers |= 1U << static_cast<unsigned>(reader.ReadNumber());
            reader.ReadOptions(ignored);
        }
    return numbers;
}

/// False also for what is no format.
bool HaveSameArguments(const MString& english, const MString& translated)
{
    return MGuarded("MTranslation::Load", false,
                    [&] { return FindArguments(english) == FindArguments(translated); });
}

MTranslation& GetCurrent()
{
    static MTranslation current;
    return current;
}

} // namespace

void MTranslation::Load(MLocale::Language language)
{
    const MString code = MLocale::Describe(language).code;
    MMemoryStream stream = MGuarded(
        "MTranslation::Load", MMemoryStream(),
        [&] { return MResources::Open(MStringFormatter("locale/{0}.xml").Add(code).Result()); });
    decltype(texts) newTexts;
    if (stream.GetSize() > 0)
    {
        MXMLItem root("translation");
        root.Load(stream);
        if (root.GetName() != "translation" || root.GetAttribute("language", "") != code)
            throw MException("Invalid file contents. Not a translation to this language.",
                             MException::BadData);
        MXMLItemIterator entry(root, "t");
        for (entry.Begin(); entry.IsValid(); entry.Next())
        {
            const MString english = entry.Current().GetAttribute("e", "");
            const MString translated = entry.Current().GetAttribute("v", "");
            if (!translated.IsEmpty() && HaveSameArguments(english, translated))
                newTexts[english] = translated;
        }
    }
    texts = std::move(newTexts);
}

MString MTranslation::Translate(const MString& english) const
{
    const auto found = texts.find(english);
    return found == texts.end() ? english : found->second;
}

std::size_t MTranslation::Hash::operator()(const MString& text) const noexcept
{
    // FNV-1a by characters; MString's own hash only tells the buckets of short names apart.
    std::uint64_t hash = 0xCBF29CE484222325;
    text.WithCharacters(
        [&](auto characters)
        {
            for (const auto character : characters)
                hash = (hash ^ static_cast<char16_t>(character)) * 0x100000001B3;
        });
    return static_cast<std::size_t>(hash);
}

bool MTranslation::IsSame::operator()(const MString& a, const MString& b) const noexcept
{
    const auto isSame = [](auto x, auto y)
    { return static_cast<char16_t>(x) == static_cast<char16_t>(y); };
    return a.WithCharacters(
        [&](auto x)
        { return b.WithCharacters([&](auto y) { return std::ranges::equal(x, y, isSame); }); });
}

void LoadTranslation(MLocale::Language language)
{
    GetCurrent().Load(language);
}

MString Translate(const MString& english)
{
    return GetCurrent().Translate(english);
}
