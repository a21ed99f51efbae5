#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "foundation/strings/MString.h"
#include "foundation/threads/MRelaxed.h"
#include "shell/modulators/MModulatorParameters.h"
#include "shell/modulators/ModulatorTexts.h"

class MXMLItem;

// How the settings of modulators are kept: tables of their numbers serve both directions, and make
// parameters of them.

/// The decimal logarithms of 20 Hz and 20 kHz, where scales of frequencies end.
inline constexpr double MinLogFrequency = 1.3010299956639813;
inline constexpr double MaxLogFrequency = 4.301029995663981;

/// One number of @p Settings.
template <typename Settings>
struct MModulatorNumberT
{
    const char* key; ///< what it is stored under
    MRelaxed<double> Settings::*number;
    double min;
    double max;
    const char* name; ///< as a parameter; null for none, then without a text
    const MModulatorText* text = nullptr;
};

/// One switch of @p Settings.
template <typename Settings>
struct MModulatorSwitchT
{
    const char* key;
    MRelaxed<bool> Settings::*on;
};

namespace modulatornumbers
{

/// Limited to @p min to @p max; the default if @p item has none. Stored numbers have twelve
/// decimals, so what lies that near to an end is the end.
double Read(const MXMLItem& item, const char* key, double defaultNumber, double min, double max);
std::int32_t ReadInt(const MXMLItem& item, const char* key, std::int32_t defaultNumber,
                     std::int32_t min, std::int32_t max);
bool ReadBool(const MXMLItem& item, const char* key, bool isDefault);
/// Of what is stored by name, the index in @p names; also from a decimal number.
std::int32_t ReadChoice(const MXMLItem& item, const char* key, std::int32_t defaultIndex,
                        std::span<const char* const> names);
/// An index outside @p names counts as the first.
void WriteChoice(MXMLItem& item, const char* key, std::int32_t index,
                 std::span<const char* const> names);

void Write(MXMLItem& item, const char* key, double number);
void WriteInt(MXMLItem& item, const char* key, std::int32_t number);

template <typename Settings, std::size_t Numbers, std::size_t Switches>
void StoreAll(MXMLItem& item, const Settings& from,
              const MModulatorNumberT<Settings> (&numbers)[Numbers],
              const MModulatorSwitchT<Settings> (&switches)[Switches])
{
    for (const auto& row : numbers)
        Write(item, row.key, from.*row.number);
    for (const auto& row : switches)
        WriteInt(item, row.key, from.*row.on ? 1 : 0);
}

/// What is missing takes its default.
template <typename Settings, std::size_t Numbers, std::size_t Switches>
void LoadAll(const MXMLItem& item, Settings& to,
             const MModulatorNumberT<Settings> (&numbers)[Numbers],
             const MModulatorSwitchT<Settings> (&switches)[Switches])
{
    const Settings defaults{};
    for (const auto& row : numbers)
        to.*row.number = Read(item, row.key, defaults.*row.number, row.min, row.max);
    for (const auto& row : switches)
        to.*row.on = ReadBool(item, row.key, defaults.*row.on);
}

/// Adds what has a name. @p group stands before the keys, null for nothing.
template <typename Settings, std::size_t Numbers>
void PublishAll(std::vector<MModulatorParameter>& parameters, const char* group, Settings& settings,
                const MModulatorNumberT<Settings> (&numbers)[Numbers])
{
    const Settings defaults{};
    for (const auto& row : numbers)
        if (row.name != nullptr)
            parameters.push_back({.group = group,
                                  .key = row.key,
                                  .name = row.name,
                                  .number = &(settings.*row.number),
                                  .min = row.min,
                                  .max = row.max,
                                  .defaultNumber = defaults.*row.number,
                                  .text = row.text});
}

} // namespace modulatornumbers
