#pragma once

#include <array>

#include "foundation/modules/MLocale.h"
#include "foundation/values/MValueEnum.h"

/// The entries themselves, and their English names for values that hold a language or a country.
namespace localetables
{

inline constexpr auto Languages = std::to_array<MLocale::LanguageEntry>({
    {"", "None", "None"},
#include "foundation/modules/LanguageTable.inc"
});

inline constexpr auto Countries = std::to_array<MLocale::CountryEntry>({
    {"", "", 0, "None", "None"},
#include "foundation/modules/CountryTable.inc"
});

template <typename Entry, std::size_t Size>
constexpr std::array<const char*, Size> GetNames(const std::array<Entry, Size>& table)
{
    std::array<const char*, Size> names{};
    for (std::size_t i = 0; i < Size; ++i)
        names[i] = table[i].englishName;
    return names;
}

} // namespace localetables

template <>
struct MEnumNames<MLocale::Language>
{
    static constexpr auto Names = localetables::GetNames(localetables::Languages);
};

template <>
struct MEnumNames<MLocale::Country>
{
    static constexpr auto Names = localetables::GetNames(localetables::Countries);
};
