#include "foundation/strings/MStringScanner.h"

#include <array>

#include "foundation/limits.h"
#include "foundation/strings/FormatReader.h"
#include "foundation/strings/NumberText.h"

struct MStringScanner::Field
{
    int position; ///< in the input
    int length;
    bool isHexadecimal;
};

struct MStringScanner::State
{
    explicit State(const MString& usedInput) : input(usedInput) {}

    /// Adds the field of a placeholder of this @p number; numbers passed over are empty.
    void Add(int number, const Field& field) noexcept
    {
        for (; count <= number; ++count)
            fields[static_cast<std::size_t>(count)] = {};
        fields[static_cast<std::size_t>(number)] = field;
    }

    /// Calls @p use with the characters of @p field.
    template <typename Use>
    auto With(const Field& field, const Use& use) const
    {
        return input.WithCharacters(
            [&](auto characters)
            {
                return use(characters.subspan(static_cast<std::size_t>(field.position),
                                              static_cast<std::size_t>(field.length)));
            });
    }

    numbertext::Integer ReadInteger(const Field& field) const noexcept
    {
        return With(field, [radix = field.isHexadecimal ? 16 : 10](auto characters)
                    { return numbertext::ReadInteger(characters, radix); });
    }

    const MString input;
    int count = 0; ///< of the fields that exist
    int next = 0;
    std::array<Field, limits::FormatArguments> fields;
};

MStringScanner::MStringScanner(const MString& format, const MString& input)
    : state(std::make_shared<State>(input))
{
    FormatReader reader(format);
    int at = 0;
    while (at < input.Length())
        switch (reader.Next())
        {
        case FormatReader::Kind::End:
            return;
        case FormatReader::Kind::Placeholder:
        {
            const int number = reader.ReadNumber();
            MFormatOptions options = DefaultFormatOptions;
            reader.ReadOptions(options);
            const char16_t stop = reader.Peek();
            const int start = at;
            while (at < input.Length() &&
                   (stop > u' ' ? input.CharAt(at) != stop : input.CharAt(at) > u' '))
                ++at;
            state->Add(number, {start, at - start, options.isHexadecimal});
            break;
        }
        case FormatReader::Kind::Character:
            if (reader.GetCharacter() > u' ')
            {
                if (input.CharAt(at++) != reader.GetCharacter())
                    return;
                break;
            }
            if (input.CharAt(at) > u' ')
                return;
            reader.SkipBlanks();
            while (at < input.Length() && input.CharAt(at) <= u' ')
                ++at;
            break;
        }
}

MStringScanner& MStringScanner::Get(double& target)
{
    if (const Field* const field = Next())
    {
        target = 0.0;
        state->With(*field, [&target](auto characters)
                    { return numbertext::ReadDouble(characters, target); });
    }
    return *this;
}

MStringScanner& MStringScanner::Get(std::int64_t& target)
{
    if (const Field* const field = Next())
        target = state->ReadInteger(*field).value;
    return *this;
}

MStringScanner& MStringScanner::Get(std::int32_t& target)
{
    return GetShort(target);
}

MStringScanner& MStringScanner::Get(std::int16_t& target)
{
    return GetShort(target);
}

MStringScanner& MStringScanner::Get(std::int8_t& target)
{
    return GetShort(target);
}

MStringScanner& MStringScanner::Get(MString& target)
{
    if (const Field* const field = Next())
        target = state->input.Mid(field->position, field->length);
    return *this;
}

int MStringScanner::FieldCount() const noexcept
{
    return state->count;
}

const MStringScanner::Field* MStringScanner::Next() noexcept
{
    return state->next < state->count ? &state->fields[static_cast<std::size_t>(state->next++)]
                                      : nullptr;
}

template <typename Target>
MStringScanner& MStringScanner::GetShort(Target& target)
{
    if (const Field* const field = Next())
    {
        const numbertext::Integer integer = state->ReadInteger(*field);
        target = static_cast<Target>(integer.value);
        if (!integer.hasDigits)
            state->count = --state->next;
    }
    return *this;
}
