#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers and columns of the reports and of the command line. All text is UTF-8.
namespace text
{

/// @p value with a fixed number of @p decimals and a point.
std::string Fixed(double value, int decimals);

/// As few digits as tell @p value: "0.5", "48000".
std::string Short(double value);

/// Blanks in front of @p text up to @p width characters; longer texts stay.
std::string Right(const std::string& text, std::size_t width);
/// Blanks behind it.
std::string Left(const std::string& text, std::size_t width);

/// The whole of @p text as a decimal number, also with a "+"; nothing for anything else, such as
/// numbers beyond the type, "nan" and "inf".
std::optional<std::int64_t> ReadInteger(std::string_view text);
std::optional<double> ReadNumber(std::string_view text);

/// The number that @p text begins with, and what follows it, without blanks around.
struct NumberWithUnit
{
    double number;
    std::string unit;
};
std::optional<NumberWithUnit> ReadNumberWithUnit(std::string_view text);

/// "A4" for 69, "C-1" for 0.
std::string NoteName(int note);

} // namespace text
