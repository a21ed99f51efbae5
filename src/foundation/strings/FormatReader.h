#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"

/// What the options of a placeholder ask for; those that it lacks keep their value.
struct MFormatOptions
{
    bool isHexadecimal;
    bool hasPlus;
    std::uint8_t width; ///< digits of an integer at least
    char fill;
    std::uint8_t precision; ///< decimals of a double
};

constexpr MFormatOptions DefaultFormatOptions = {
    .isHexadecimal = false, .hasPlus = false, .width = 0, .fill = ' ', .precision = 4};

/// Takes a format text apart, for those who fill it and those who read by it. MStringFormatter
/// tells what a format looks like.
class FormatReader
{
public:
    enum class Kind
    {
        End,
        Character,   ///< literal text: see GetCharacter
        Placeholder, ///< ReadNumber and ReadOptions have to follow
    };

    /// @p readFormat has to outlive this.
    explicit FormatReader(const MString& readFormat) noexcept : format(readFormat) {}

    Kind Next() noexcept
    {
        character = format.CharAt(position);
        if (character == 0 || character == u'{' || character == u'}')
            return NextSpecial();
        ++position;
        return Kind::Character;
    }
    char16_t GetCharacter() const noexcept { return character; }
    /// @throws MException (2) "Formatting string contains an invalid argument number.".
    int ReadNumber();
    /// Reads up to and including "}".
    /// @throws MException (2) "Formatting string ends in an argument specification.".
    void ReadOptions(MFormatOptions& options);

    /// The next character as it stands in the format; 0 at its end.
    char16_t Peek() const noexcept { return format.CharAt(position); }
    void SkipBlanks() noexcept;

private:
    /// Next at a brace and where the format may end.
    Kind NextSpecial() noexcept;
    std::uint8_t ReadTwoDigits() noexcept;

    const MString& format;
    int position = 0;
    char16_t character = 0;
};
