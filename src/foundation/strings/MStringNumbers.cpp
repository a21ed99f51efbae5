// What MString does with numbers.

#include "foundation/strings/MString.h"
#include "foundation/strings/NumberText.h"

namespace
{

/// What most stored integers are, as literals, which cost nothing.
constexpr auto SmallNumbers = []
{
    std::array<std::array<char, 4>, 256> texts{};
    for (std::size_t number = 0; number < texts.size(); ++number)
    {
        char* end = texts[number].data();
        if (number >= 100)
            *end++ = static_cast<char>('0' + number / 100);
        if (number >= 10)
            *end++ = static_cast<char>('0' + number / 10 % 10);
        *end = static_cast<char>('0' + number % 10);
    }
    return texts;
}();

MString FromDigits(std::uint64_t magnitude, bool isNegative, int radix, int width, char16_t fill)
{
    std::array<char, numbertext::MostDigits> buffer;
    const std::string_view digits = numbertext::WriteDigits(buffer, magnitude, radix);
    MString result;
    if (isNegative)
        result.Append(u'-');
    result.AppendFill(width - static_cast<int>(digits.size()), fill);
    std::array<char16_t, numbertext::MostDigits> wide;
    std::ranges::copy(digits, wide.begin());
    result.AppendChars({wide.data(), digits.size()});
    return result;
}

} // namespace

MString MString::FromDouble(double value, int decimals)
{
    std::array<char, numbertext::LongestDouble> buffer;
    const char* const end = numbertext::WriteDouble(buffer, value, decimals);
    return FromNarrow({buffer.data(), end});
}

MString MString::FromInteger(std::int64_t value, int radix, int width, char16_t fill)
{
    const auto magnitude = static_cast<std::uint64_t>(value);
    if (magnitude < SmallNumbers.size() && radix == 10 && width <= 1)
        return SmallNumbers[magnitude].data();
    return FromDigits(value < 0 ? 0 - magnitude : magnitude, value < 0, radix, width, fill);
}

MString MString::FromUnsigned(std::uint64_t value, int radix, int width, char16_t fill)
{
    return FromDigits(value, false, radix, width, fill);
}

std::int64_t MString::ToInteger(int radix, int* consumed) const noexcept
{
    const numbertext::Integer integer = WithCharacters(
        [radix](auto characters) { return numbertext::ReadInteger(characters, radix); });
    if (consumed != nullptr)
        *consumed = radix == 10 ? integer.used : int{integer.isNegative};
    return integer.value;
}

double MString::ToDouble() const
{
    double value = 0.0;
    ReadDouble(value);
    return value;
}

bool MString::ReadDouble(double& value) const
{
    return WithCharacters([&value](auto characters)
                          { return numbertext::ReadDouble(characters, value); });
}
