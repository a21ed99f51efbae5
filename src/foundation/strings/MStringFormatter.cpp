#include "foundation/strings/MStringFormatter.h"

#include <algorithm>

#include "foundation/strings/NumberText.h"

namespace
{

/// Collects literal text, so that the result grows by pieces rather than by characters.
class LiteralText
{
public:
    explicit LiteralText(MString& usedTarget) noexcept : target(usedTarget) {}

    void Append(char16_t character)
    {
        if (count == buffer.size())
            Flush();
        buffer[count++] = character;
    }
    /// Leaves room for arguments, so that as a rule the block is made once.
    void Flush()
    {
        target.Reserve(std::int64_t{Length()} + RoomForArguments);
        target.AppendChars({buffer.data(), count});
        count = 0;
    }
    /// Of the target when flushed.
    int Length() const noexcept { return target.Length() + static_cast<int>(count); }

private:
    static constexpr int RoomForArguments = 16; ///< characters

    MString& target;
    std::array<char16_t, 255> buffer;
    std::size_t count = 0;
};

} // namespace

MStringFormatter::MStringFormatter(const MString& format) : state(std::make_shared<State>())
{
    FormatReader reader(format);
    LiteralText literal(state->result);
    for (;;)
        switch (reader.Next())
        {
        case FormatReader::Kind::End:
            literal.Flush();
            return;
        case FormatReader::Kind::Character:
            literal.Append(reader.GetCharacter());
            break;
        case FormatReader::Kind::Placeholder:
        {
            const int number = reader.ReadNumber();
            reader.ReadOptions(state->Place(number, literal.Length()).options);
            break;
        }
        }
}

MStringFormatter& MStringFormatter::Add(std::int64_t value)
{
    const auto magnitude = static_cast<std::uint64_t>(value);
    return AddInteger(value < 0 ? 0 - magnitude : magnitude, value < 0);
}

MStringFormatter& MStringFormatter::Add(std::uint64_t value)
{
    return AddInteger(value, false);
}

MStringFormatter& MStringFormatter::Add(double value)
{
    const MFormatOptions& options = NextOptions();
    std::array<char, numbertext::LongestDouble + 2> text;
    text[0] = '+';
    char* const number = text.data() + 1;
    *numbertext::WriteDouble(std::span(text).subspan<1, numbertext::LongestDouble>(), value,
                             options.precision) = '\0';
    InsertNext(options.hasPlus && value - 1e-20 > 0.0 ? text.data() : number);
    return *this;
}

MStringFormatter& MStringFormatter::Add(const MString& value)
{
    InsertNext(value);
    return *this;
}

// Defaulted here rather than in the class, where make_shared would clear the arguments.
MStringFormatter::State::State() noexcept = default;

MStringFormatter::Argument& MStringFormatter::State::Place(int number, int position) noexcept
{
    for (; count <= number; ++count)
        arguments[static_cast<std::size_t>(count)] = {-1, 0, DefaultFormatOptions};
    Argument& argument = arguments[static_cast<std::size_t>(number)];
    argument.position = position;
    for (const Argument& other : std::span(arguments).first(static_cast<std::size_t>(count)))
        if (&other != &argument && other.position == position)
            ++argument.order;
    return argument;
}

MStringFormatter& MStringFormatter::AddInteger(std::uint64_t magnitude, bool isNegative)
{
    const MFormatOptions& options = NextOptions();
    std::array<char, numbertext::MostDigits> buffer;
    const std::string_view digits =
        numbertext::WriteDigits(buffer, magnitude, options.isHexadecimal ? 16 : 10);

    // The sign, up to 99 characters and the terminator.
    std::array<char, 128> text;
    char* end = text.data();
    if (isNegative || (options.hasPlus && magnitude != 0))
        *end++ = isNegative ? '-' : '+';
    if (digits.size() < options.width)
        end = std::fill_n(end, options.width - digits.size(), options.fill);
    *std::ranges::copy(digits, end).out = '\0';
    InsertNext(text.data());
    return *this;
}

const MFormatOptions& MStringFormatter::NextOptions() const noexcept
{
    return state->next < state->count
               ? state->arguments[static_cast<std::size_t>(state->next)].options
               : DefaultFormatOptions;
}

void MStringFormatter::InsertNext(const MString& text)
{
    if (state->next >= state->count)
        return;
    const Argument argument = state->arguments[static_cast<std::size_t>(state->next)];
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
