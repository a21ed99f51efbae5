#include "tools/render/Text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "foundation/strings/MString.h"

namespace
{

constexpr std::string_view Blanks = " \t";

std::string_view WithoutBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(Blanks) + 1 - first);
}

std::string_view WithoutPlus(std::string_view text)
{
    const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    return text.substr(hasPlus ? 1 : 0);
}

/// Characters, taking one for each byte of @p text that does not continue another.
std::size_t CountCharacters(const std::string& text)
{
    std::size_t count = 0;
    for (const char byte : text)
        count += (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u ? 1 : 0;
    return count;
}

std::string Padding(const std::string& text, std::size_t width)
{
    const std::size_t length = CountCharacters(text);
    std::string padding;
    padding.resize(length < width ? width - length : 0, ' ');
    return padding;
}

} // namespace

namespace text
{

std::string Fixed(double value, int decimals)
{
    return MString::FromDouble(value, decimals).ToUTF8();
}

std::string Short(double value)
{
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return {digits.data(), end};
}

std::string Right(const std::string& text, std::size_t width)
{
    return Padding(text, width) + text;
}

std::string Left(const std::string& text, std::size_t width)
{
    return text + Padding(text, width);
}

std::optional<std::int64_t> ReadInteger(std::string_view text)
{
    text = WithoutPlus(text);
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<double> ReadNumber(std::string_view text)
{
    const auto read = ReadNumberWithUnit(text);
    if (!read || !read->unit.empty())
        return std::nullopt;
    return read->number;
}

std::optional<NumberWithUnit> ReadNumberWithUnit(std::string_view text)
{
    text = WithoutPlus(WithoutBlanks(text));
    double value = 0.0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || !std::isfinite(value))
        return std::nullopt;
    const auto used = static_cast<std::size_t>(stop - text.data());
    return NumberWithUnit{value, std::string(WithoutBlanks(text.substr(used)))};
}

std::string NoteName(int note)
{
    constexpr std::array<const char*, 12> Names{"C",  "C#", "D",  "D#", "E",  "F",
                                                "F#", "G",  "G#", "A",  "A#", "B"};
    return Names.at(static_cast<std::size_t>(note % 12)) + std::to_string(note / 12 - 1);
}

} // namespace text
