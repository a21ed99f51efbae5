#include "foundation/modules/MLocale.h"

#include <algorithm>

#include "foundation/modules/MLocaleTables.h"
#include "foundation/modules/ModuleSystem.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

struct LanguageChoice
{
    MLock lock;
    MString key;
};

LanguageChoice& GetChoice()
{
    static LanguageChoice choice;
    return choice;
}

bool IsNameOf(const MString& text, const MLocale::LanguageEntry& entry)
{
    return text == entry.code || text == entry.englishName ||
           text == MString::FromUTF8(entry.ownName);
}

bool IsNameOf(const MString& text, const MLocale::CountryEntry& entry)
{
    return text == entry.code || text == entry.longCode || text == entry.englishName ||
           text == MString::FromUTF8(entry.ownName);
}

/// 0, the entry for none, if no entry has the name.
template <typename Index, typename Entry>
Index Find(std::span<const Entry> table, const MString& text)
{
    const auto found =
        std::ranges::find_if(table, [&](const Entry& entry) { return IsNameOf(text, entry); });
    return static_cast<Index>(found == table.end() ? 0 : found - table.begin());
}

/// Where the part of a system's name that begins at @p start ends.
int FindPartEnd(const MString& name, int start) noexcept
{
    int end = start;
    while (end < name.Length() && name.CharAt(end) != u'_' && name.CharAt(end) != u'-')
        ++end;
    return end;
}

} // namespace

std::span<const MLocale::LanguageEntry> MLocale::GetLanguages() noexcept
{
    return localetables::Languages;
}

std::span<const MLocale::CountryEntry> MLocale::GetCountries() noexcept
{
    return localetables::Countries;
}

const MLocale::LanguageEntry& MLocale::Describe(Language language) noexcept
{
    return localetables::Languages[static_cast<std::size_t>(language)];
}

const MLocale::CountryEntry& MLocale::Describe(Country country) noexcept
{
    return localetables::Countries[static_cast<std::size_t>(country)];
}

MLocale::Language MLocale::FindLanguage(const MString& codeOrName)
{
    return Find<Language>(GetLanguages(), codeOrName);
}

MLocale::Country MLocale::FindCountry(const MString& codeOrName)
{
    return Find<Country>(GetCountries(), codeOrName);
}

MLocale MLocale::Current()
{
    LanguageChoice& choice = GetChoice();
    MString key;
    {
        const MLockGuard guard(choice.lock);
        key = choice.key;
    }
    for (const MString& name : {key, modulesystem::GetUserLanguage()})
        if (const MLocale locale(name); locale.language != Language::None)
            return locale;
    return MLocale("en");
}

void MLocale::SetLanguageKey(const MString& key)
{
    LanguageChoice& choice = GetChoice();
    const MLockGuard guard(choice.lock);
    choice.key = key;
}

MLocale::MLocale(const MString& localeName) : language(FindLanguage(localeName))
{
    if (language != Language::None)
        return;
    MString name = localeName; // without encoding and variant
    for (const char16_t mark : {u'.', u'@'})
        if (const int end = name.Find(mark); end >= 0)
            name = name.Mid(0, end);

    int end = FindPartEnd(name, 0);
    language = FindLanguage(name.Mid(0, end));
    while (country == Country::None && end < name.Length())
    {
        const int start = end + 1;
        end = FindPartEnd(name, start);
        country = FindCountry(name.Mid(start, end - start));
    }
}
