#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"

/// What the options of a placeholder ask for; those that it lacks keep their value.
struct MFormatOptions
{
    bool isHexadecimal = false;
    bool hasPlus = false;
    std::uint8_t width = 0; ///< digits of an integer at least
    char fill = ' ';
    std::uint8_t precision = 4; ///< decimals of a double
};

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

    Kind Next() noexcept;
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
    std::uint8_t ReadTwoDigits() noexcept;

    const MString& format;
    int position = 0;
    char16_t character = 0;
};
