#include "foundation/strings/NumberText.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace
{

constexpr bool IsBlank(char character) noexcept
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Whether the decimal number in @p digits, whose value has no double, is too large for one rather
/// than too small.
bool IsTooLarge(std::string_view digits) noexcept
{
    const std::size_t exponentAt = std::min(digits.find_first_of("eE"), digits.size());
    const std::string_view mantissa = digits.substr(0, exponentAt);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    long long exponent = 0;
    if (exponentAt < digits.size())
    {
        const char* start = digits.data() + exponentAt + 1;
        if (*start == '+')
            ++start;
        const auto read = std::from_chars(start, digits.data() + digits.size(), exponent);
        if (read.ec == std::errc::result_out_of_range)
            return *start != '-';
    }
    return exponent + static_cast<long long>(point) - static_cast<long long>(first) > 0;
}

} // namespace

std::string_view numbertext::WriteDigits(std::span<char, MostDigits> buffer,
                                         std::uint64_t magnitude, int radix) noexcept
{
    char* const end = buffer.data() + buffer.size();
    char* first = end;
    do
    {
        *--first = "0123456789ABCDEF"[magnitude % static_cast<unsigned>(radix)];
        magnitude /= static_cast<unsigned>(radix);
    } while (magnitude != 0);
    return {first, static_cast<std::size_t>(end - first)};
}

char* numbertext::WriteDouble(std::span<char, LongestDouble> buffer, double value,
                              int decimals) noexcept
{
    return std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                         std::chars_format::fixed, std::clamp(decimals, 0, 99))
        .ptr;
}

bool numbertext::ReadDouble(std::string_view text, double& value) noexcept
{
    const char* const end = text.data() + text.size();
    const char* start = std::find_if_not(text.data(), end, IsBlank);
    if (start + 1 < end && *start == '+' && start[1] != '-')
        ++start;

    double number = 0.0;
    const auto [stop, error] = std::from_chars(start, end, number);
    if (error == std::errc::invalid_argument)
        return false;
    const bool isNegative = *start == '-';
    if (error == std::errc::result_out_of_range)
    {
        const std::string_view digits(start + isNegative,
                                      static_cast<std::size_t>(stop - start) - isNegative);
        number = IsTooLarge(digits) ? std::numeric_limits<double>::max() : 0.0;
        number = isNegative ? -number : number;
    }
    else if (number != number || number > std::numeric_limits<double>::max() ||
             number < std::numeric_limits<double>::lowest())
        return false; // spelled out, as "nan" or "inf"
    value = number;
    return true;
}
