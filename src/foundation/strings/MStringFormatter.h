#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "foundation/limits.h"
#include "foundation/strings/FormatReader.h"
#include "foundation/strings/MString.h"

/// Fills a text with numbered arguments: MStringFormatter("{0;.1} dB").Add(gainDb).Result().
///
/// A placeholder is "{", the argument's number (0 to 31; none means 0), options, "}". Options:
/// ".N" decimals of a double (4 without it), "0N" and " N" least number of digits of an integer and
/// what fills it up, "+" a plus sign before positive numbers, "x" hexadecimal; anything else is
/// skipped. "{{" stands for "{", and the character behind a "}" is literal.
/// Arguments are added in the order of their numbers and stand where the text has them; a number
/// that occurs twice counts where it occurs last.
///
/// A handle: copies share one text and one position. One thread at a time.
class MStringFormatter
{
public:
    /// @throws MException (2) "Formatting string ends in an argument specification." or
    /// "Formatting string contains an invalid argument number.".
    explicit MStringFormatter(const MString& format);

    MStringFormatter& Add(std::int64_t value);
    MStringFormatter& Add(std::uint64_t value);
    MStringFormatter& Add(int value) { return Add(std::int64_t{value}); }
    MStringFormatter& Add(double value);
    MStringFormatter& Add(const MString& value);
    MStringFormatter& Add(const char* literal) { return Add(MString(literal)); }

    const MString& Result() const noexcept { return state->result; }

private:
    struct Argument
    {
        std::int32_t position; ///< characters from the start of the result; -1: nowhere
        std::uint8_t order;    ///< among the arguments of one position
        MFormatOptions options;
    };

    struct State
    {
        State() noexcept;
        /// Moves the argument of this @p number to @p position, behind those that stand there.
        Argument& Place(int number, int position) noexcept;

        MString result;
        int count = 0; ///< highest number in the format plus 1
        int next = 0;
        /// Made up to count only: as a rule a format has one or two.
        std::array<Argument, limits::FormatArguments> arguments;
    };

    MStringFormatter& AddInteger(std::uint64_t magnitude, bool isNegative);
    const MFormatOptions& NextOptions() const noexcept;
    void InsertNext(const MString& text);

    std::shared_ptr<State> state;
};
