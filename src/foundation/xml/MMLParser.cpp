#include "foundation/xml/MMLParser.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "foundation/threads/MException.h"
#include "foundation/xml/XMLEntities.h"
#include "foundation/xml/XMLSource.h"

namespace
{

/// Values up to this length are often the same: flags, kinds, small numbers.
constexpr std::size_t SharedValueCharacters = 6;

constexpr bool IsBlank(char16_t character) noexcept
{
    return character <= u' ';
}

/// For each character below 128 whether it ends a name.
constexpr auto NameEnds = []
{
    std::array<bool, 128> ends{};
    for (char16_t blank = 0; IsBlank(blank); ++blank)
        ends[blank] = true;
    for (const char16_t delimiter : {u'<', u'>', u'"', u'/', u'!', u'='})
        ends[delimiter] = true;
    return ends;
}();

constexpr bool EndsName(char16_t character) noexcept
{
    return character < NameEnds.size() && NameEnds[character];
}

constexpr bool IsDelimiter(char16_t character) noexcept
{
    return EndsName(character) && !IsBlank(character);
}

// What XMLSource::ReadUntil looks for: types rather than functions, so that it has them inside.

struct FindNameEnd
{
    std::size_t operator()(std::u16string_view text) const noexcept
    {
        std::size_t at = 0;
        while (at < text.size() && !EndsName(text[at]))
            ++at;
        return at;
    }
};

/// The first quote or ampersand.
struct FindPlainEnd
{
    std::size_t operator()(std::u16string_view text) const noexcept
    {
        // Both characters differ in one bit; four characters a round.
        static_assert((u'"' | 4) == u'&');
        constexpr std::uint64_t EachLowest = 0x0001000100010001;
        constexpr std::uint64_t EachHighest = 0x8000800080008000;
        std::size_t at = 0;
        for (std::uint64_t four = 0; at + 4 <= text.size(); at += 4)
        {
            std::memcpy(&four, text.data() + at, sizeof four);
            four = (four | 4 * EachLowest) ^ u'&' * EachLowest;
            if (((four - EachLowest) & ~four & EachHighest) != 0)
                break; // one of the four has become 0
        }
        while (at < text.size() && text[at] != u'"' && text[at] != u'&')
            ++at;
        return at;
    }
};

template <char16_t Character>
struct Find
{
    std::size_t operator()(std::u16string_view text) const noexcept
    {
        return std::min(text.find(Character), text.size());
    }
};

/// Whether @p text begins with @p start.
bool StartsWith(std::u16string_view text, const MString& start)
{
    return start.WithCharacters(
        [text](auto characters)
        {
            // Names are so short that a call of the library would take longer.
            for (std::size_t i = 0; i < characters.size(); ++i)
                if (static_cast<char16_t>(characters[i]) != text[i])
                    return false;
            return true;
        });
}

/// Whether @p text begins with @p name and no more of a name.
bool StartsWithName(std::u16string_view text, const MString& name)
{
    const auto length = static_cast<std::size_t>(name.Length());
    return length > 0 && length < text.size() && EndsName(text[length]) && StartsWith(text, name);
}

/// Whether @p text begins with @p value and the quote behind it.
bool StartsWithValue(std::u16string_view text, const MString& value)
{
    const auto length = static_cast<std::size_t>(value.Length());
    return length < text.size() && text[length] == u'"' && StartsWith(text, value);
}

/// Skips blanks and then @p expected, or tells that something else stands there.
bool SkipToken(XMLSource& source, char16_t expected)
{
    if (source.SkipBlanks() != expected)
        return false;
    source.Skip(1);
    return true;
}

} // namespace

void MMLParser::Parse(MStream& stream)
{
    XMLSource source(stream, MEncoding::GetCodec("utf-8"));
    while (!ReadText(source) && source.PeekCharacter() != XMLSource::NoMore && !ReadTag(source))
    {
    }
}

void MMLParser::Refuse(const MString& what)
{
    MString text = "Invalid file contents. ";
    text.Append(what);
    throw MException(text, MException::BadData);
}

bool MMLParser::ReadText(XMLSource& source)
{
    collected.clear();
    bool isInBlank = false;
    for (std::u16string_view next = source.Peek(); !next.empty() && next.front() != u'<';
         next = source.Peek())
    {
        std::size_t read = 0;
        for (; read < next.size() && next[read] != u'<'; ++read)
        {
            const bool isBlank = IsBlank(next[read]);
            if (!isBlank)
                collected.push_back(next[read]);
            else if (!isInBlank)
                collected.push_back(u' ');
            isInBlank = isBlank;
        }
        source.Skip(read);
        CheckText(collected.size());
    }
    xmlentities::Decode(collected);
    if (collected.empty())
        return false;
    // Between the elements of a file there are blanks alone.
    return OnText(collected == u" " ? MString(" ") : MString::FromUTF16(collected));
}

bool MMLParser::ReadTag(XMLSource& source)
{
    source.Skip(1); // the "<"
    switch (source.PeekCharacter())
    {
    case u'/':
        source.Skip(1);
        return ReadClosingTag(source);
    case u'!':
        source.Skip(1);
        return ReadDeclaration(source);
    default:
        return ReadElement(source);
    }
}

bool MMLParser::ReadClosingTag(XMLSource& source)
{
    const MString& name = ReadName(source, closingGuess);
    while (source.PeekCharacter() != XMLSource::NoMore &&
           !IsDelimiter(static_cast<char16_t>(source.PeekCharacter())))
        source.Skip(1);
    if (!SkipToken(source, u'>'))
        Refuse("Invalid closing element syntax.");
    attributes.clear();
    return OnElement(name, attributes, true);
}

bool MMLParser::ReadDeclaration(XMLSource& source)
{
    if (SkipToken(source, u'-'))
        SkipPast(source, u"-->");
    else if (SkipToken(source, u'['))
    {
        const MString word = ShareText(source.ReadUntil(Find<u'['>{}, 16));
        if (word == "CDATA")
            return ReadCharacterData(source);
        SkipPast(source, u">");
    }
    else
        SkipPast(source, u">");
    return false;
}

bool MMLParser::ReadCharacterData(XMLSource& source)
{
    constexpr std::u16string_view Mark = u"]]>";
    SkipToken(source, u'[');
    collected.clear();
    while (!collected.ends_with(Mark) && source.PeekCharacter() != XMLSource::NoMore)
    {
        collected.push_back(source.Peek().front());
        source.Skip(1);
        if (collected.size() > limits.textCharacters + Mark.size())
            Refuse("Text is too long.");
    }
    if (collected.ends_with(Mark))
        collected.resize(collected.size() - Mark.size());
    return !collected.empty() && OnText(MString::FromUTF16(collected));
}

bool MMLParser::ReadElement(XMLSource& source)
{
    const MString& name = ReadName(source, elementGuess);
    if (name.IsEmpty())
        Refuse("No element name found.");
    const bool isSpecial = name.CharAt(0) == u'?';
    attributes.clear();
    attributes.reserve(attributeCount);
    for (;;)
    {
        const std::int32_t next = source.SkipBlanks();
        if (next == u'>')
        {
            source.Skip(1);
            return FinishElement(source, name, false);
        }
        if (next == u'/')
        {
            source.Skip(1);
            if (!SkipToken(source, u'>'))
                Refuse("Invalid element finishing sequence.");
            return FinishElement(source, name, true);
        }
        if (next == XMLSource::NoMore || EndsName(static_cast<char16_t>(next)))
            Refuse("Special character found where attribute expected.");
        const std::size_t place = std::min(attributes.size(), attributeGuesses.size() - 1);
        const MString& attribute = ReadName(source, attributeGuesses[place]);
        if (isSpecial && attribute.Length() == 1 && next == u'?')
        {
            if (!SkipToken(source, u'>'))
                Refuse("Invalid special element sequence.");
            return FinishElement(source, name, false);
        }
        if (!SkipToken(source, u'='))
            Refuse("Invalid character found where attribute expected.");
        if (attributes.size() == limits.attributes)
            Refuse("Too many attributes.");
        attributes.emplace_back(attribute, ReadValue(source, valueGuesses[place]));
    }
}

bool MMLParser::FinishElement(XMLSource& source, const MString& name, bool isClosingItself)
{
    if (name.CharAt(0) == u'?')
    {
        ChooseCodec(source);
        return false;
    }
    attributeCount = attributes.size();
    if (OnElement(name, attributes, false))
        return true;
    if (!isClosingItself)
        return false;
    attributes.clear();
    return OnElement(name, attributes, true);
}

const MString& MMLParser::ReadName(XMLSource& source, MString& guess)
{
    if (StartsWithName(source.Peek(), guess))
    {
        source.Skip(static_cast<std::size_t>(guess.Length()));
        return guess;
    }
    const std::u16string_view characters = source.ReadUntil(FindNameEnd{}, limits.nameCharacters);
    if (characters.size() > limits.nameCharacters)
        Refuse("Name is too long.");
    guess = ShareText(characters);
    return guess;
}

MString MMLParser::ReadValue(XMLSource& source, MString& guess)
{
    if (!SkipToken(source, u'"'))
    {
        const std::u16string_view token = source.ReadUntil(FindNameEnd{}, limits.textCharacters);
        CheckText(token.size());
        return token.find(u'&') == std::u16string_view::npos ? MakeValue(token) : Decode(token);
    }

    if (StartsWithValue(source.Peek(), guess))
    {
        source.Skip(static_cast<std::size_t>(guess.Length()) + 1);
        return guess;
    }
    // Values without an entity go straight from the source into the text.
    const std::u16string_view plain = source.ReadUntil(FindPlainEnd{}, limits.textCharacters);
    CheckText(plain.size());
    if (source.PeekCharacter() == u'"')
    {
        guess = MakeValue(plain);
        source.Skip(1);
        return guess;
    }
    std::u16string encoded(plain);
    encoded += source.ReadUntil(Find<u'"'>{}, limits.textCharacters - plain.size());
    CheckText(encoded.size());
    if (!SkipToken(source, u'"'))
        Refuse("No ending delimiter found.");
    return Decode(encoded);
}

MString MMLParser::Decode(std::u16string_view encoded)
{
    collected.assign(encoded);
    xmlentities::Decode(collected);
    return MString::FromUTF16(collected);
}

MString MMLParser::MakeValue(std::u16string_view characters)
{
    return characters.size() <= SharedValueCharacters ? ShareText(characters)
                                                      : values.Make(characters);
}

void MMLParser::CheckText(std::size_t characters) const
{
    if (characters > limits.textCharacters)
        Refuse("Text is too long.");
}

void MMLParser::ChooseCodec(XMLSource& source) const
{
    // Of an attribute that came twice the last one counts.
    const auto encoding =
        std::find_if(attributes.rbegin(), attributes.rend(),
                     [](const MAttribute& attribute) { return attribute.name == "encoding"; });
    if (encoding != attributes.rend())
        source.SwitchCodec(MEncoding::GetCodec(encoding->value));
}

void MMLParser::SkipPast(XMLSource& source, std::u16string_view mark)
{
    std::size_t matched = 0;
    while (matched < mark.size() && source.PeekCharacter() != XMLSource::NoMore)
    {
        const char16_t character = source.Peek().front();
        source.Skip(1);
        // But for its last character a mark is one character repeated.
        while (matched > 0 && character != mark[matched])
            --matched;
        if (character == mark[matched])
            ++matched;
    }
}

MString MMLParser::ShareText(std::u16string_view characters)
{
    if (characters.empty())
        return {};
    const std::size_t last = characters.back();
    MString& seen = texts[(characters.size() * 7 + characters.front() + last * 3) % texts.size()];
    const bool isSame = seen.WithCharacters([characters](auto known)
                                            { return std::ranges::equal(known, characters); });
    if (!isSame)
        seen = MString::FromUTF16(characters);
    return seen;
}
