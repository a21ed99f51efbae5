#include "foundation/strings/NumberText.h"

#include <bit>
#include <charconv>
#include <cmath>
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

__extension__ using Wide128 = unsigned __int128;

/// Up to where 10 to the power has 64 bits.
constexpr int MostExactDecimals = 19;

constexpr auto PowersOfTen = []
{
    std::array<std::uint64_t, MostExactDecimals + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// @p value times 10 to the @p decimals, rounded half to even as the C library does it. Says no
/// where 128 bits do not hold it exactly or the result has more than 64.
bool Scale(double value, int decimals, std::uint64_t& scaled) noexcept
{
    constexpr int FractionBits = 52;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto exponent = static_cast<int>(bits >> FractionBits & 0x7FF);
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << FractionBits) - 1);
    const std::uint64_t mantissa =
        exponent == 0 ? fraction : fraction | std::uint64_t{1} << FractionBits;
    // The value is the mantissa divided by 2 to the shift.
    const int shift = 1023 + FractionBits - std::max(exponent, 1);
    if (decimals > MostExactDecimals || shift < 0)
        return false;

    // At most 117 bits, so that from 128 on nothing is left.
    const Wide128 product = Wide128{mantissa} * PowersOfTen[static_cast<std::size_t>(decimals)];
    scaled = 0;
    if (shift >= 128)
        return true;
    const Wide128 whole = product >> shift;
    if (whole >> 63 != 0)
        return false;
    scaled = static_cast<std::uint64_t>(whole);
    if (shift > 0)
    {
        const Wide128 half = Wide128{1} << (shift - 1);
        const Wide128 rest = product - (whole << shift);
        if (rest > half || (rest == half && (scaled & 1) != 0))
            ++scaled;
    }
    return true;
}

} // namespace

std::string_view numbertext::WriteDigits(std::span<char, MostDigits> buffer,
                                         std::uint64_t magnitude, int radix) noexcept
{
    char* const end = buffer.data() + buffer.size();
    char* first = end;
    for (; radix == 10 && magnitude >= 10; magnitude /= 10) // by a constant, which is fast
        *--first = static_cast<char>('0' + magnitude % 10);
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
    const int places = std::clamp(decimals, 0, 99);
    std::uint64_t scaled = 0;
    if (!Scale(value, places, scaled))
        return std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                             std::chars_format::fixed, places)
            .ptr;

    std::array<char, MostDigits> digitBuffer;
    const std::string_view digits = WriteDigits(digitBuffer, scaled, 10);
    const int whole = static_cast<int>(digits.size()) - places;
    char* end = buffer.data();
    if (std::signbit(value))
        *end++ = '-';
    if (whole > 0)
        end = std::copy_n(digits.data(), whole, end);
    else
        *end++ = '0';
    if (places == 0)
        return end;
    *end++ = '.';
    end = std::fill_n(end, std::max(-whole, 0), '0');
    return std::copy(digits.begin() + std::max(whole, 0), digits.end(), end);
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
