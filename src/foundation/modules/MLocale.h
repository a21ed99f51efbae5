#pragma once

#include <cstdint>
#include <span>

#include "foundation/strings/MString.h"

/// A language and perhaps a country, and the tables of both: ISO 639-1 and ISO 3166-1 in the order
/// of their English names, which are written in plain letters. The tables are constant; any thread.
class MLocale
{
public:
    /// Indices into the tables, 0 to their size - 1. Files keep codes or names, as an edition of
    /// the standards may move the indices.
    enum class Language : std::int16_t
    {
        None
    };
    enum class Country : std::int16_t
    {
        None
    };

    /// Texts are UTF-8. The first entry of each table is "None", without a code.
    struct LanguageEntry
    {
        const char* code; ///< two letters, "de"
        const char* englishName;
        const char* ownName; ///< in the language itself; the English one where we do not know it
    };
    struct CountryEntry
    {
        const char* code;     ///< two letters, "AT"
        const char* longCode; ///< three letters, "AUT"
        std::int16_t number;  ///< 0 to 999
        const char* englishName;
        const char* ownName;
    };

    static std::span<const LanguageEntry> GetLanguages() noexcept;
    static std::span<const CountryEntry> GetCountries() noexcept;
    static const LanguageEntry& Describe(Language language) noexcept;
    static const CountryEntry& Describe(Country country) noexcept;
    /// By any code or name of the entry, as MString::Compare sees it; None if there is none.
    static Language FindLanguage(const MString& codeOrName);
    static Country FindCountry(const MString& codeOrName);

    /// What the configuration has chosen, else the user's system, else English.
    static MLocale Current();
    /// The choice of the configuration for Current, in any form that the constructor takes; what
    /// names no language is no choice.
    static void SetLanguageKey(const MString& key);

    /// By a code or name of a language, or a system's name such as "de_AT.UTF-8@euro" or
    /// "zh-Hans-CN".
    explicit MLocale(const MString& localeName);
    Language GetLanguage() const noexcept { return language; }
    Country GetCountry() const noexcept { return country; }

private:
    Language language = Language::None;
    Country country = Country::None;
};
