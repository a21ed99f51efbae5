#pragma once

/// What input fields let through, one character at a time. The filters are singletons without
/// state: MCharFilter::FloatFilter::Get().Accepts(character).
class MCharFilter
{
public:
    /// Bits of Interface::GetKind.
    static constexpr int Letters = 1;
    static constexpr int Digits = 2;
    static constexpr int Signs = 4; ///< those of numbers and names
    static constexpr int HexadecimalDigits = 8;
    static constexpr int Others = 16;

    class Interface
    {
    public:
        virtual bool Accepts(char16_t character) const noexcept = 0;
        /// What passes, as bits.
        virtual int GetKind() const noexcept = 0;
        virtual ~Interface() = default;
    };

private:
    using Predicate = bool(char16_t) noexcept;

    template <Predicate* Accepted, int Kind>
    class FilterT final : public Interface
    {
    public:
        static const FilterT& Get() noexcept
        {
            static constexpr FilterT filter;
            return filter;
        }

        bool Accepts(char16_t character) const noexcept override { return Accepted(character); }
        int GetKind() const noexcept override { return Kind; }
    };

    static bool IsAny(char16_t /*character*/) noexcept { return true; }
    static bool IsLetter(char16_t character) noexcept
    {
        return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
    }
    static bool IsDigit(char16_t character) noexcept
    {
        return character >= u'0' && character <= u'9';
    }
    static bool IsLetterOrDigit(char16_t character) noexcept
    {
        return IsLetter(character) || IsDigit(character);
    }
    static bool IsOfName(char16_t character) noexcept
    {
        return IsLetterOrDigit(character) || IsOfFloat(character) || character == u' ';
    }
    static bool IsOfInteger(char16_t character) noexcept
    {
        return IsDigit(character) || character == u'-';
    }
    static bool IsOfFloat(char16_t character) noexcept
    {
        return IsOfInteger(character) || character == u'.';
    }
    /// Sees the low byte alone.
    static bool IsHexadecimal(char16_t character) noexcept
    {
        const auto low = static_cast<char16_t>(character & 0xFF);
        return IsDigit(low) || (low >= u'a' && low <= u'f') || (low >= u'A' && low <= u'F');
    }

public:
    using AllFilter = FilterT<IsAny, Letters | Digits | Signs | Others>;
    /// Names: letters, digits, "-", "." and blank.
    using AlphaFilter = FilterT<IsOfName, Letters | Digits | Signs>;
    using AlphaStrictFilter = FilterT<IsLetterOrDigit, Letters | Digits>;
    using LettersFilter = FilterT<IsLetter, Letters>;
    using IntegerFilter = FilterT<IsOfInteger, Digits>;
    using IntegerHexaFilter = FilterT<IsHexadecimal, Digits | HexadecimalDigits>;
    using FloatFilter = FilterT<IsOfFloat, Digits | Signs>;
};
