#include "foundation/strings/MStringFormatter.h"

#include "foundation/threads/MException.h"

namespace
{

/// At most two digits from @p position on, which then stands behind them.
std::uint8_t ReadTwoDigits(const MString& format, int& position)
{
    int digits = 0;
    const std::int64_t value = format.Mid(position, 2).ToInteger(10, &digits);
    if (format.CharAt(position) == u'-')
        return 0;
    position += digits;
    return static_cast<std::uint8_t>(value);
}

} // namespace

MStringFormatter::MStringFormatter(const MString& format) : state(std::make_shared<State>())
{
    for (int position = 0; position < format.Length();)
    {
        char16_t character = format.CharAt(position++);
        if (character == u'{' && format.CharAt(position) != u'{')
        {
            position = ReadPlaceholder(format, position);
            continue;
        }
        if (character == u'{' || character == u'}')
        {
            if (position == format.Length())
                break;
            character = format.CharAt(position++);
        }
        state->result.Append(character);
    }
}

int MStringFormatter::ReadPlaceholder(const MString& format, int position)
{
    int digits = 0;
    const std::int64_t number = format.Mid(position, 3).ToInteger(10, &digits);
    if (number < 0 || number >= MaxArguments)
        throw MException("Formatting string contains an invalid argument number.",
                         MException::BadArgument);
    position += digits;

    const auto index = static_cast<std::size_t>(number);
    state->count = std::max(state->count, static_cast<int>(number) + 1);
    Argument argument{.position = state->result.Length()};
    for (std::size_t other = 0; other < static_cast<std::size_t>(state->count); ++other)
        if (other != index && state->arguments[other].position == argument.position)
            ++argument.order;

    for (;;)
    {
        if (position >= format.Length())
            throw MException("Formatting string ends in an argument specification.",
                             MException::BadArgument);
        switch (const char16_t option = format.CharAt(position++))
        {
        case u'}':
            state->arguments[index] = argument;
            return position;
        case u' ':
        case u'0':
            argument.fill = static_cast<char>(option);
            argument.width = ReadTwoDigits(format, position);
            break;
        case u'.':
            argument.precision = ReadTwoDigits(format, position);
            break;
        case u'+':
            argument.hasPlus = true;
            break;
        case u'x':
            argument.isHexadecimal = true;
            break;
        default:
            break;
        }
    }
}

MStringFormatter& MStringFormatter::Add(std::int64_t value)
{
    const Argument& argument = Next();
    MString text = MString::FromInteger(value, argument.isHexadecimal ? 16 : 10, argument.width,
                                        static_cast<char16_t>(argument.fill));
    if (argument.hasPlus && value > 0)
        text.Insert(0, "+");
    InsertNext(text);
    return *this;
}

MStringFormatter& MStringFormatter::Add(std::uint64_t value)
{
    const Argument& argument = Next();
    MString text = MString::FromUnsigned(value, argument.isHexadecimal ? 16 : 10, argument.width,
                                         static_cast<char16_t>(argument.fill));
    if (argument.hasPlus && value != 0)
        text.Insert(0, "+");
    InsertNext(text);
    return *this;
}

MStringFormatter& MStringFormatter::Add(double value)
{
    const Argument& argument = Next();
    MString text = MString::FromDouble(value, argument.precision);
    if (argument.hasPlus && value - 1e-20 > 0.0)
        text.Insert(0, "+");
    InsertNext(text);
    return *this;
}

MStringFormatter& MStringFormatter::Add(const MString& value)
{
    InsertNext(value);
    return *this;
}

const MStringFormatter::Argument& MStringFormatter::Next() const noexcept
{
    // An argument more than the format has is inserted nowhere, so any entry serves it.
    return state->arguments[static_cast<std::size_t>(std::min(state->next, MaxArguments - 1))];
}

void MStringFormatter::InsertNext(const MString& text)
{
    if (state->next >= state->count)
        return;
    const Argument argument = Next();
    ++state->next;
    if (argument.position < 0)
        return; // the format passes over this number
    state->result.Insert(argument.position, text);
    for (int i = state->next; i < state->count; ++i)
    {
        Argument& later = state->arguments[static_cast<std::size_t>(i)];
        if (later.position > argument.position ||
            (later.position == argument.position && later.order > argument.order))
            later.position += text.Length();
    }
}
