#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The text of the whole system: messages, keys, names, display texts, as 16-bit code units.
/// A text made from a literal only points at it and costs nothing; any other text lives in a heap
/// block that copies share and that is copied before the first change (copy on write).
/// Copies may live on different threads (the count of holders is atomic); one object may not be
/// changed by two threads at once. Copying never allocates, the last holder frees.
class MString
{
public:
    /// The empty literal.
    MString() noexcept = default;
    /// Points at @p literal, which has to outlive this text and all its copies; each char is one
    /// character. Null is the empty text.
    MString(const char* literal) noexcept;
    MString(const MString& other) noexcept;
    MString(MString&& other) noexcept;
    MString& operator=(const MString& other) noexcept;
    MString& operator=(MString&& other) noexcept;
    ~MString() { Release(); }

    /// A copy of UTF-8 text. A byte that is not UTF-8 becomes U+FFFD.
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
    /// The character at @p index, which is 0 to Length() - 1; 0 outside.
    char16_t CharAt(int index) const noexcept;

    void Clear() noexcept;
    void Append(const MString& other);
    void Append(char16_t character);
    /// A position beyond the end is the end, a negative one the start.
    void Insert(int position, const MString& other);
    /// At most @p count characters from @p position on; empty for a position outside the text.
    MString Mid(int position, int count) const;

    /// Negative, 0 or positive like the first difference of the texts. Case does not matter, and
    /// equality in this sense is what names, keys and attributes mean by equal.
    int Compare(const MString& other) const noexcept;

    /// An optional "-" and digits; the number ends at the first other character, and no digits are
    /// 0. @p radix is 2 to 16. @p consumed, unless null, receives the number of characters used
    /// (meaningful in radix 10).
    std::int64_t ToInteger(int radix = 10, int* consumed = nullptr) const noexcept;
    /// The number that the text begins with, behind white space and a "+"; 0 if there is none,
    /// "nan" and "inf" included. Beyond the range of a double: the largest finite one.
    double ToDouble() const;
    /// The same, telling whether there was a number: false leaves @p value as it is.
    bool ReadDouble(double& value) const;

private:
    struct Block;

    /// Makes the text a block of its own with room for @p capacity characters, which keeps the
    /// present ones. @throws MException (2) "String is too long." beyond 2^30 characters.
    char16_t* EnsureWritable(std::int64_t capacity);
    void Release() noexcept;
    std::string ToNarrow() const;

    /// Points at chars if isLiteral, else at the characters of a Block.
    const void* text = "";
    std::int32_t length = 0;
    bool isLiteral = true;
};

inline bool operator==(const MString& a, const MString& b) noexcept
{
    return a.Compare(b) == 0;
}
