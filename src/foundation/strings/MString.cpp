#include "foundation/strings/MString.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <system_error>

#include "foundation/threads/MException.h"

/// Header of the shared form; the terminated characters follow directly.
struct MString::Block
{
    std::int32_t capacityBytes; ///< of the whole block
    std::atomic<std::int32_t> holders;

    char16_t* Characters() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
    static Block* Of(const void* characters) noexcept
    {
        return static_cast<Block*>(const_cast<void*>(characters)) - 1;
    }
};

namespace
{

constexpr std::int64_t MaxCharacters = std::int64_t{1} << 30;

constexpr char16_t Fold(char16_t character) noexcept
{
    return character >= u'A' && character <= u'Z' ? static_cast<char16_t>(character + 32)
                                                  : character;
}

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

MString FromDigits(std::uint64_t magnitude, bool isNegative, int radix, int width, char16_t fill)
{
    std::array<char16_t, 64> digits{};
    int count = 0;
    do
    {
        digits[static_cast<std::size_t>(count++)] =
            u"0123456789ABCDEF"[magnitude % static_cast<unsigned>(radix)];
        magnitude /= static_cast<unsigned>(radix);
    } while (magnitude != 0);

    MString result;
    if (isNegative)
        result.Append(u'-');
    for (int i = count; i < width; ++i)
        result.Append(fill);
    while (count > 0)
        result.Append(digits[static_cast<std::size_t>(--count)]);
    return result;
}

} // namespace

MString::MString(const char* literal) noexcept
{
    if (literal == nullptr)
        return;
    text = literal;
    length = static_cast<std::int32_t>(std::strlen(literal));
}

MString::MString(const MString& other) noexcept
    : text(other.text),
      length(other.length),
      isLiteral(other.isLiteral)
{
    if (!isLiteral)
        Block::Of(text)->holders.fetch_add(1, std::memory_order_relaxed);
}

MString::MString(MString&& other) noexcept
    : text(other.text),
      length(other.length),
      isLiteral(other.isLiteral)
{
    other.text = "";
    other.length = 0;
    other.isLiteral = true;
}

MString& MString::operator=(const MString& other) noexcept
{
    if (this != &other)
        *this = MString(other);
    return *this;
}

MString& MString::operator=(MString&& other) noexcept
{
    std::swap(text, other.text);
    std::swap(length, other.length);
    std::swap(isLiteral, other.isLiteral);
    return *this;
}

MString MString::FromUTF8(std::string_view utf8)
{
    constexpr char32_t Replacement = 0xFFFD;
    constexpr std::array<char32_t, 4> Least = {0, 0x80, 0x800, 0x10000}; // by bytes that follow
    MString result;
    for (std::size_t i = 0; i < utf8.size();)
    {
        const auto lead = static_cast<unsigned char>(utf8[i++]);
        const int following = lead < 0x80   ? 0
                              : lead < 0xC2 ? -1
                              : lead < 0xE0 ? 1
                              : lead < 0xF0 ? 2
                              : lead < 0xF5 ? 3
                                            : -1;
        char32_t code =
            following < 0 ? Replacement : lead & (following == 0 ? 0x7Fu : 0x3Fu >> following);
        for (int k = 0; k < following; ++k)
        {
            if (i == utf8.size() || (static_cast<unsigned char>(utf8[i]) & 0xC0u) != 0x80u)
            {
                code = Replacement;
                break;
            }
            code = code << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3Fu);
        }
        const bool isOverlong = following > 0 && code < Least[static_cast<std::size_t>(following)];
        if (isOverlong || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
            code = Replacement;
        if (code > 0xFFFF)
        {
            result.Append(static_cast<char16_t>(0xD7C0 + (code >> 10)));
            result.Append(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        }
        else
            result.Append(static_cast<char16_t>(code));
    }
    return result;
}

std::string MString::ToUTF8() const
{
    std::string result;
    for (int i = 0; i < length; ++i)
    {
        char32_t code = CharAt(i);
        if (code >= 0xD800 && code < 0xDC00 && (CharAt(i + 1) & 0xFC00) == 0xDC00)
            code = (code - 0xD7C0) << 10 | (CharAt(++i) & 0x3FFu);
        if (code < 0x80)
        {
            result += static_cast<char>(code);
            continue;
        }
        const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        result += static_cast<char>((0xFF00u >> (following + 1) & 0xFFu) | code >> (6 * following));
        for (int k = following - 1; k >= 0; --k)
            result += static_cast<char>(0x80u | (code >> (6 * k) & 0x3Fu));
    }
    return result;
}

MString MString::FromDouble(double value, int decimals)
{
    // 309 digits, the sign, the point and up to 99 decimals.
    std::array<char, 420> digits{};
    char* const end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed,
                                    std::clamp(decimals, 0, 99))
                          .ptr;
    MString result;
    char16_t* const target = result.EnsureWritable(end - digits.data());
    std::copy(digits.data(), end, target);
    result.length = static_cast<std::int32_t>(end - digits.data());
    target[result.length] = 0;
    return result;
}

MString MString::FromInteger(std::int64_t value, int radix, int width, char16_t fill)
{
    const auto magnitude = static_cast<std::uint64_t>(value);
    return FromDigits(value < 0 ? 0 - magnitude : magnitude, value < 0, radix, width, fill);
}

MString MString::FromUnsigned(std::uint64_t value, int radix, int width, char16_t fill)
{
    return FromDigits(value, false, radix, width, fill);
}

char16_t MString::CharAt(int index) const noexcept
{
    if (index < 0 || index >= length)
        return 0;
    if (isLiteral)
        return static_cast<char16_t>(static_cast<const signed char*>(text)[index]);
    return static_cast<const char16_t*>(text)[index];
}

void MString::Clear() noexcept
{
    Release();
    text = "";
    length = 0;
    isLiteral = true;
}

void MString::Append(const MString& other)
{
    Insert(length, other);
}

void MString::Append(char16_t character)
{
    char16_t* const characters = EnsureWritable(std::int64_t{length} + 1);
    characters[length++] = character;
    characters[length] = 0;
}

void MString::Insert(int position, const MString& other)
{
    if (other.IsEmpty())
        return;
    const MString inserted = other; // other may be this text
    const int at = std::clamp(position, 0, int{length});
    char16_t* const characters = EnsureWritable(std::int64_t{length} + inserted.length);
    std::copy_backward(characters + at, characters + length, characters + length + inserted.length);
    for (int i = 0; i < inserted.length; ++i)
        characters[at + i] = inserted.CharAt(i);
    length += inserted.length;
    characters[length] = 0;
}

MString MString::Mid(int position, int count) const
{
    if (position < 0 || position >= length || count <= 0)
        return {};
    count = std::min(count, length - position);
    if (count == length)
        return *this;
    MString result;
    char16_t* const characters = result.EnsureWritable(count);
    for (int i = 0; i < count; ++i)
        characters[i] = CharAt(position + i);
    characters[count] = 0;
    result.length = count;
    return result;
}

int MString::Compare(const MString& other) const noexcept
{
    const int common = std::min(length, other.length);
    for (int i = 0; i < common; ++i)
        if (const int difference = Fold(CharAt(i)) - Fold(other.CharAt(i)); difference != 0)
            return difference;
    return Fold(CharAt(common)) - Fold(other.CharAt(common));
}

std::int64_t MString::ToInteger(int radix, int* consumed) const noexcept
{
    int position = 0;
    const bool isNegative = CharAt(0) == u'-';
    if (isNegative)
        ++position;
    std::uint64_t magnitude = 0;
    for (; position < length; ++position)
    {
        const char16_t character = Fold(CharAt(position));
        const int digit = character >= u'0' && character <= u'9' ? character - u'0'
                          : radix > 10 && character >= u'a' && character <= u'f'
                              ? character - u'a' + 10
                              : radix;
        if (digit >= radix)
            break;
        magnitude = magnitude * static_cast<unsigned>(radix) + static_cast<unsigned>(digit);
    }
    if (consumed != nullptr)
        *consumed = position;
    return static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
}

double MString::ToDouble() const
{
    double value = 0.0;
    ReadDouble(value);
    return value;
}

bool MString::ReadDouble(double& value) const
{
    const std::string narrow = ToNarrow();
    const char* start = std::find_if_not(narrow.data(), narrow.data() + narrow.size(), IsBlank);
    const char* const end = narrow.data() + narrow.size();
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

char16_t* MString::EnsureWritable(std::int64_t capacity)
{
    if (capacity > MaxCharacters)
        throw MException("String is too long.", MException::BadArgument);
    const auto characters = static_cast<std::size_t>(std::max<std::int64_t>(capacity, length)) + 1;
    const std::size_t bytes = std::bit_ceil(characters * sizeof(char16_t) + sizeof(Block));

    if (!isLiteral && Block::Of(text)->holders.load(std::memory_order_acquire) < 2)
    {
        Block* block = Block::Of(text);
        if (static_cast<std::size_t>(block->capacityBytes) < bytes)
        {
            block = static_cast<Block*>(std::realloc(static_cast<void*>(block), bytes));
            if (block == nullptr)
                throw std::bad_alloc();
            block->capacityBytes = static_cast<std::int32_t>(bytes);
            text = block->Characters();
        }
        return block->Characters();
    }

    void* const memory = std::malloc(bytes);
    if (memory == nullptr)
        throw std::bad_alloc();
    Block* const block = new (memory) Block{static_cast<std::int32_t>(bytes), 1};
    for (int i = 0; i <= length; ++i)
        block->Characters()[i] = CharAt(i);
    Release();
    text = block->Characters();
    isLiteral = false;
    return block->Characters();
}

void MString::Release() noexcept
{
    if (!isLiteral && Block::Of(text)->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
        std::free(Block::Of(text));
}

std::string MString::ToNarrow() const
{
    std::string narrow(static_cast<std::size_t>(length), ' ');
    for (int i = 0; i < length; ++i)
        narrow[static_cast<std::size_t>(i)] = CharAt(i) < 0x80 ? static_cast<char>(CharAt(i)) : '?';
    return narrow;
}
