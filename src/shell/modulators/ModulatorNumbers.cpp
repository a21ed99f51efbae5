#include "shell/modulators/ModulatorNumbers.h"

#include <algorithm>
#include <cmath>

#include "foundation/xml/MXMLItem.h"

namespace modulatornumbers
{

double Read(const MXMLItem& item, const char* key, double defaultNumber, double min, double max)
{
    constexpr double LastDecimal = 1e-12;
    const MString* const text = item.FindAttribute(key);
    if (text == nullptr)
        return defaultNumber;
    const double number = text->ToDouble();
    if (number < min + LastDecimal)
        return min;
    return number > max - LastDecimal ? max : number;
}

std::int32_t ReadInt(const MXMLItem& item, const char* key, std::int32_t defaultNumber,
                     std::int32_t min, std::int32_t max)
{
    const MString* const text = item.FindAttribute(key);
    return text == nullptr
               ? defaultNumber
               : static_cast<std::int32_t>(std::clamp<std::int64_t>(text->ToInteger(), min, max));
}

bool ReadBool(const MXMLItem& item, const char* key, bool isDefault)
{
    const MString* const text = item.FindAttribute(key);
    return text == nullptr ? isDefault : text->ToInteger() != 0;
}

std::int32_t ReadChoice(const MXMLItem& item, const char* key, std::int32_t defaultIndex,
                        std::span<const char* const> names)
{
    const MString* const text = item.FindAttribute(key);
    if (text == nullptr)
        return defaultIndex;
    const auto named =
        std::ranges::find_if(names, [text](const char* name) { return *text == name; });
    if (named != names.end())
        return static_cast<std::int32_t>(named - names.begin());
    double number = 0.0;
    const bool isIndex =
        text->ReadDouble(number) && number >= 0.0 && number < static_cast<double>(names.size());
    return isIndex ? static_cast<std::int32_t>(number) : defaultIndex;
}

void WriteChoice(MXMLItem& item, const char* key, std::int32_t index,
                 std::span<const char* const> names)
{
    const auto place = static_cast<std::size_t>(index);
    item.SetAttribute(key, MString(names[place < names.size() ? place : 0]));
}

void Write(MXMLItem& item, const char* key, double number)
{
    item.SetAttribute(key, number);
}

void WriteInt(MXMLItem& item, const char* key, std::int32_t number)
{
    item.SetAttribute(key, number);
}

} // namespace modulatornumbers
