#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

/// The text of the whole system: messages, keys, names, display texts, as 16-bit code units.
/// A text made from a literal only points at it and costs nothing; any other text lives in a heap
/// block that copies share and that is copied before the first change (copy on write).
/// Copies may live on different threads (the count of holders is atomic); one object may not be
/// changed by two threads at once. Copying never allocates, the last holder frees.
/// What makes a text longer throws MException (2) "String is too long." beyond
/// limits::TextCharacters.
class MString
{
public:
    /// The empty literal.
    MString() noexcept = default;
    /// Points at @p literal, which has to outlive this text and all its copies. Each char is one
    /// character, from 0x80 on with the sign extended to 16 bits. Null is the empty text.
    MString(const char* literal) noexcept
    {
        if (literal == nullptr)
            return;
        text = literal;
        length = static_cast<std::int32_t>(std::char_traits<char>::length(literal));
    }
    MString(const MString& other) noexcept
        : text(other.text),
          length(other.length),
          isLiteral(other.isLiteral)
    {
        if (!isLiteral)
            Block::Of(text)->holders.fetch_add(1, std::memory_order_relaxed);
    }
    MString(MString&& other) noexcept
        : text(std::exchange(other.text, "")),
          length(std::exchange(other.length, 0)),
          isLiteral(std::exchange(other.isLiteral, true))
    {
    }
    MString& operator=(const MString& other) noexcept;
    MString& operator=(MString&& other) noexcept
    {
        std::swap(text, other.text);
        std::swap(length, other.length);
        std::swap(isLiteral, other.isLiteral);
        return *this;
    }
    ~MString()
    {
        if (!isLiteral)
            Release();
    }

    /// Copies, with each char widened as in a literal.
    static MString FromNarrow(std::string_view characters);
    static MString FromUTF16(std::u16string_view characters);
    static MString FromCharacter(char16_t character);
    /// As printf does it, cut to 8,191 bytes. The empty text for a format that cannot be printed.
    [[gnu::format(printf, 1, 2)]] static MString Print(const char* format, ...);

    /// Decodes and encodes as MEncoding::UTF8Codec does.
    static MString FromUTF8(std::string_view utf8);
    std::string ToUTF8() const;

    /// A fixed number of @p decimals (0 to 99), with a point whatever the locale.
    static MString FromDouble(double value, int decimals);
    /// Upper-case digits, padded on the left by @p fill up to @p width digits; a "-" stands in
    /// front of the padding. @p radix is 2 to 16.
    static MString FromInteger(std::int64_t value, int radix = 10, int width = 0,
                               char16_t fill = u' ');
    /// The same for the upper half of the 64 bits.
    static MString FromUnsigned(std::uint64_t value, int radix = 10, int width = 0,
                                char16_t fill = u' ');

    int Length() const noexcept { return length; }
    bool IsEmpty() const noexcept { return length == 0; }
    /// Whether both are the same memory, which makes them equal; equal texts need not be.
    bool IsSharedWith(const MString& other) const noexcept
    {
        return text == other.text && length == other.length && isLiteral == other.isLiteral;
    }
    /// The character at @p index, which is 0 to Length() - 1; 0 outside.
    char16_t CharAt(int index) const noexcept
    {
        if (index < 0 || index >= length)
            return 0;
        return isLiteral ? Widen(Narrow()[index]) : Wide()[index];
    }
    /// Calls @p use with the characters as they lie, a std::span of const signed char (each of them
    /// to be widened) or of const char16_t, and returns what it does.
    template <typename Use>
    decltype(auto) WithCharacters(Use&& use) const
    {
        const auto size = static_cast<std::size_t>(length);
        return isLiteral ? use(std::span<const signed char>(Narrow(), size))
                         : use(std::span<const char16_t>(Wide(), size));
    }
    /// A character of a literal.
    static constexpr char16_t Widen(signed char character) noexcept
    {
        return static_cast<char16_t>(character);
    }

    void Clear() noexcept;
    /// Makes room for @p capacity characters in all, for who is going to append them.
    void Reserve(std::int64_t capacity);
    void Append(const MString& other);
    void Append(char16_t character);
    /// @p count times @p character; nothing for a count below 1.
    void AppendFill(int count, char16_t character);
    /// @p characters may be part of this text.
    void AppendChars(std::u16string_view characters);
    /// A position beyond the end is the end, a negative one the start.
    void Insert(int position, const MString& other);
    void Insert(int position, char16_t character) { Insert(position, FromCharacter(character)); }
    /// Removes at most @p count characters; nothing for a negative position or a count below 1.
    void Erase(int position, int count);
    /// Puts @p replacement in the place of each @p character that stood here before; returns their
    /// number.
    int ReplaceChar(char16_t character, const MString& replacement);
    /// Makes every character below 33 a blank.
    void NormalizeWhitespace();

    /// At most @p count characters from @p position on; empty for a position outside the text.
    /// The whole text is shared, any other part copied.
    MString Mid(int position, int count) const;
    /// With a to z in upper case; all other letters stay.
    MString ToUpper() const;

    /// The first @p character at or behind @p from, or -1.
    int Find(char16_t character, int from = 0) const noexcept;
    /// The last @p character at or before @p from, which is cut to the last one; or -1.
    int FindLast(char16_t character, int from) const noexcept;

    /// The difference of the first characters that differ, 0 if none does. Neither case nor
    /// diacritics count ("Résumé" is "RESUME"), and equality in this sense is what names, keys and
    /// attributes mean by equal.
    int Compare(const MString& other) const noexcept;
    /// The same for at most @p maxCount characters from each position on, which is 0 or more.
    int Compare(int position, const MString& other, int otherPosition, int maxCount) const noexcept;
    /// The same value for texts that differ in the case of ASCII letters alone, for tables of 32
    /// buckets. Deliberately thin: of texts from 16 characters on, only the first character counts,
    /// and from 20 on the fifth.
    std::int32_t Hash() const noexcept;
    /// How well @p query speaks of this text: for each word of this text (ASCII letters in a row)
    /// the longest start that stands anywhere in @p query, in characters, all added up.
    int MatchScore(const MString& query) const noexcept;

    /// An optional "-" and digits; the number ends at the first other character, and no digits are
    /// 0. @p radix is 2 to 16. Overflow wraps. @p consumed, unless null, receives the number of
    /// characters used in radix 10; in any other radix 1 for a "-", else 0.
    std::int64_t ToInteger(int radix = 10, int* consumed = nullptr) const noexcept;
    /// The number that the text begins with, behind white space and a "+"; 0 if there is none,
    /// "nan" and "inf" included. Beyond the range of a double: the largest finite one.
    double ToDouble() const;
    /// The same, telling whether there was a number: false leaves @p value as it is.
    bool ReadDouble(double& value) const;

private:
    friend class MStringSlab;

    /// Memory for the blocks of many texts, which follow behind this header.
    struct Slab
    {
        std::atomic<std::int32_t> holders; ///< texts, those included that may still be made

        static Slab* Allocate(std::size_t bytes, std::int32_t firstHolders);
        void Release(std::int32_t count = 1) noexcept;
    };

    /// Header of the shared form; the terminated characters follow directly.
    struct Block
    {
        /// Of the whole block, a power of two. Odd in a slab: twice the bytes from its start,
        /// and 1.
        std::uint32_t capacityBytes;
        std::atomic<std::int32_t> holders;

        /// With room for @p characters and a terminator, held once.
        static Block* Allocate(std::size_t characters);
        bool IsInSlab() const noexcept { return (capacityBytes & 1U) != 0; }
        void Free() noexcept;
        /// Characters without the terminator; of no use in a slab.
        std::int64_t GetCapacity() const noexcept
        {
            return (std::int64_t{capacityBytes} - std::int64_t{sizeof(Block)}) / 2 - 1;
        }
        char16_t* Characters() noexcept { return reinterpret_cast<char16_t*>(this + 1); }
        static Block* Of(const void* characters) noexcept
        {
            return static_cast<Block*>(const_cast<void*>(characters)) - 1;
        }
    };

    const signed char* Narrow() const noexcept { return static_cast<const signed char*>(text); }
    const char16_t* Wide() const noexcept { return static_cast<const char16_t*>(text); }

    /// Takes over @p heldBlock.
    MString(Block* heldBlock, std::size_t characters) noexcept
        : text(heldBlock->Characters()),
          length(static_cast<std::int32_t>(characters)),
          isLiteral(false)
    {
    }

    /// Makes the text a block of its own with room for @p minCapacity characters, which keeps the
    /// present ones.
    char16_t* EnsureWritable(std::int64_t minCapacity);
    /// The same where a new block, or more of one that nobody shares, is needed.
    char16_t* MakeBlock(std::int64_t capacity, bool isOwn);
    /// Makes room for @p count more characters at @p position, and their end the text's new end.
    char16_t* Open(int position, std::size_t count);
    /// Appends a part of another text, which has it.
    void AppendPart(const MString& other, int position, int count);
    /// Gives up the block, for what is no literal.
    void Release() noexcept;

    /// Points at chars if isLiteral, else at the characters of a Block.
    const void* text = "";
    std::int32_t length = 0;
    bool isLiteral = true;
};

inline bool operator==(const MString& a, const MString& b) noexcept
{
    return a.Compare(b) == 0;
}
