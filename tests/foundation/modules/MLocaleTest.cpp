#include "foundation/modules/MLocale.h"

#include <cctype>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "foundation/modules/MLocaleTables.h"
#include "foundation/xml/MXMLItem.h"
#include "tests/EnvironmentVariable.h"

namespace
{

std::string Codes(const MLocale& locale)
{
    return std::string(MLocale::Describe(locale.GetLanguage()).code) + " " +
           MLocale::Describe(locale.GetCountry()).code;
}

TEST(MLocale, ReadsNamesOfLanguagesAndSystems)
{
    struct Case
    {
        const char* name;
        const char* codes;
    };
    constexpr Case Cases[] = {
        {"de", "de "},
        {"DE_at.UTF-8@euro", "de AT"},
        {"German", "de "},
        {"scottish gaelic", "gd "},
        {"français", "fr "},
        {"Norwegian Bokmål", "nb "},
        {"zh-Hans-CN", "zh CN"},
        {"luba-katanga", "lu "},
        {"pt-BRA", "pt BR"},
        {"sr@latin", "sr "},
        {"en_QQ", "en "},
        {"C.UTF-8", " "},
        {"POSIX", " "},
        {"None", " "},
        {"", " "},
        {"sh", " "},
    };
    for (const Case& row : Cases)
        EXPECT_EQ(Codes(MLocale(MString::FromUTF8(row.name))), row.codes) << row.name;
}

TEST(MLocale, FindsCountriesByEachOfTheirNames)
{
    for (const char* name : {"at", "AUT", "Austria", "Österreich"})
    {
        const auto country = MLocale::FindCountry(MString::FromUTF8(name));
        EXPECT_EQ(MLocale::Describe(country).number, 40) << name;
    }
    EXPECT_EQ(MLocale::FindCountry("Atlantis"), MLocale::Country::None);
}

TEST(MLocale, HasTablesWithoutDoubles)
{
    EXPECT_EQ(MLocale::GetLanguages().size(), 184U);
    EXPECT_EQ(MLocale::GetCountries().size(), 250U);
    std::set<std::string> seen;
    for (const MLocale::LanguageEntry& entry : MLocale::GetLanguages().subspan(1))
    {
        EXPECT_TRUE(std::string(entry.code).size() == 2 && std::islower(entry.code[0]));
        EXPECT_TRUE(seen.insert(entry.code).second && seen.insert(entry.englishName).second);
    }
    seen.clear();
    for (const MLocale::CountryEntry& entry : MLocale::GetCountries().subspan(1))
        for (const std::string& key :
             {std::string(entry.code), std::string(entry.longCode), std::to_string(entry.number),
              std::string(entry.englishName)})
            EXPECT_TRUE(seen.insert(key).second) << key;
}

TEST(MLocale, CanBeAValueByName)
{
    MValueEnum<MLocale::Language> value;
    MXMLItem item("language");
    item.SetAttribute("value", "German");
    value.InitFromXML(item);
    EXPECT_EQ(value.Get(), MLocale::FindLanguage("de"));
}

#ifndef _WIN32
TEST(MLocale, TakesTheFirstChoiceThereIs)
{
    struct Case
    {
        const char* key;
        const char* all;
        const char* messages;
        const char* lang;
        const char* codes;
    };
    constexpr Case Cases[] = {
        {"Italian", "fr_FR", "de_DE", "es_ES", "it "},
        {"Klingon", "fr_FR", "de_DE", "", "fr FR"},
        {"", nullptr, "de_DE", "es_ES", "de DE"},
        {"", "", "", "es_ES", "es ES"},
        {"", "C", "de_DE", "de_DE", "en "},
        {"", nullptr, nullptr, nullptr, "en "},
    };
    for (const Case& row : Cases)
    {
        MLocale::SetLanguageKey(row.key);
        const EnvironmentVariable all("LC_ALL", row.all);
        const EnvironmentVariable messages("LC_MESSAGES", row.messages);
        const EnvironmentVariable lang("LANG", row.lang);
        EXPECT_EQ(Codes(MLocale::Current()), row.codes) << row.codes;
    }
}
#endif

} // namespace
