#include "foundation/strings/FormatReader.h"

#include "foundation/limits.h"
#include "foundation/threads/MException.h"

namespace
{

constexpr bool IsDigit(char16_t character) noexcept
{
    return character >= u'0' && character <= u'9';
}

} // namespace

FormatReader::Kind FormatReader::NextSpecial() noexcept
{
    if (position >= format.Length())
        return Kind::End;
    character = format.CharAt(position++);
    if (character == u'{' && Peek() != u'{')
        return Kind::Placeholder;
    if (character == u'{' || character == u'}')
    {
        if (position == format.Length())
            return Kind::End;
        character = format.CharAt(position++);
    }
    return Kind::Character;
}

int FormatReader::ReadNumber()
{
    int number = 0;
    const bool isNegative = Peek() == u'-';
    const int first = position;
    position += isNegative ? 1 : 0;
    for (; position < first + 3 && IsDigit(Peek()); ++position)
        number = 10 * number + (Peek() - u'0');
    if (number >= limits::FormatArguments || (isNegative && number > 0))
        throw MException("Formatting string contains an invalid argument number.",
                         MException::BadArgument);
    return number;
}

void FormatReader::ReadOptions(MFormatOptions& options)
{
    while (position < format.Length())
        switch (const char16_t option = format.CharAt(position++))
        {
        case u'}':
            return;
        case u' ':
        case u'0':
            options.fill = static_cast<char>(option);
            options.width = ReadTwoDigits();
            break;
        case u'.':
            options.precision = ReadTwoDigits();
            break;
        case u'+':
            options.hasPlus = true;
            break;
        case u'x':
            options.isHexadecimal = true;
            break;
        default:
            break;
        }
    throw MException("Formatting string ends in an argument specification.",
                     MException::BadArgument);
}

void FormatReader::SkipBlanks() noexcept
{
    while (position < format.Length() && Peek() <= u' ')
        ++position;
}

std::uint8_t FormatReader::ReadTwoDigits() noexcept
{
    int number = 0;
    for (const int first = position; position < first + 2 && IsDigit(Peek()); ++position)
        number = 10 * number + (Peek() - u'0');
    return static_cast<std::uint8_t>(number);
}
