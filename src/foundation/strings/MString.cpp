#include "foundation/strings/MString.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <utility>

#include "foundation/limits.h"
#include "foundation/strings/Codecs.h"
#include "foundation/strings/EncodePieces.h"
#include "foundation/strings/Folding.h"
#include "foundation/threads/MException.h"

namespace
{

/// Bytes of a block.
constexpr std::size_t LargestPower = std::size_t{1} << 31;

/// Of a block with a header and room for so many characters and a terminator.
std::size_t BlockBytes(std::size_t characters, std::size_t headerBytes)
{
    if (characters > static_cast<std::size_t>(limits::TextCharacters))
        throw MException("String is too long.", MException::BadArgument);
    const std::size_t bytes = (characters + 1) * sizeof(char16_t) + headerBytes;
    // The longest text takes some bytes more than the header can say as a power of two.
    return bytes <= LargestPower ? std::bit_ceil(bytes) : bytes;
}

constexpr std::size_t SearchedAtOnce = 32; ///< characters

constexpr std::size_t TooManyCharacters = limits::TextCharacters + std::size_t{1};

constexpr char16_t ToLowerASCII(char16_t character) noexcept
{
    const bool isUpper = static_cast<char16_t>(character - u'A') < 26;
    return static_cast<char16_t>(character | (isUpper ? 0x20 : 0));
}

/// What a character counts as in a comparison.
char16_t Fold(char16_t character) noexcept
{
    return ToLowerASCII(character < FirstFolded ? character : FoldToBaseLetter(character));
}

constexpr bool IsLetterASCII(char16_t character) noexcept
{
    const char16_t lower = ToLowerASCII(character);
    return lower >= u'a' && lower <= u'z';
}

/// A character of either form of a text.
constexpr char16_t ToWide(signed char character) noexcept
{
    return MString::Widen(character);
}
constexpr char16_t ToWide(char16_t character) noexcept
{
    return character;
}

/// Copies characters of either form; returns their end.
template <typename Character>
char16_t* CopyWide(std::span<const Character> characters, char16_t* target) noexcept
{
    if constexpr (sizeof(Character) == sizeof(char16_t))
        return std::ranges::copy(characters, target).out;
    else
        return std::ranges::transform(characters, target, MString::Widen).out;
}

/// How many characters a comparison looks at in one step.
constexpr std::size_t Round = 8;

/// Whether the next round of two texts differs in nothing but the case of ASCII letters. False if
/// it takes more than that to tell, and at a terminator. Without branches, for vectors.
template <typename A, typename B>
bool IsEqualRound(const A* a, const B* b) noexcept
{
    std::array<char16_t, Round> doubts;
    for (std::size_t i = 0; i < Round; ++i)
    {
        const char16_t left = ToWide(a[i]);
        const char16_t right = ToWide(b[i]);
        const bool isEnd = left == 0;
        doubts[i] = static_cast<char16_t>((ToLowerASCII(left) ^ ToLowerASCII(right)) |
                                          static_cast<int>(isEnd));
    }
    return std::bit_cast<std::array<std::uint64_t, 2>>(doubts) == std::array<std::uint64_t, 2>{};
}

/// The difference of the first characters that differ within the shorter text, whose end counts as
/// a terminator; both stop at a terminator that they share.
template <typename A, typename B>
int CompareFolded(std::span<const A> a, std::span<const B> b) noexcept
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i)
    {
        const char16_t left = ToWide(a[i]);
        const char16_t right = ToWide(b[i]);
        const int difference = left == right ? 0 : Fold(left) - Fold(right);
        if (difference != 0 || left == 0)
            return difference;
        // Most texts differ at once or not at all.
        while (i + 1 + Round <= common && IsEqualRound(&a[i + 1], &b[i + 1]))
            i += Round;
    }
    const char16_t left = common < a.size() ? ToWide(a[common]) : u'\0';
    const char16_t right = common < b.size() ? ToWide(b[common]) : u'\0';
    return Fold(left) - Fold(right);
}

} // namespace

MString::Block* MString::Block::Allocate(std::size_t characters)
{
    const std::size_t bytes = BlockBytes(characters, sizeof(Block));
    void* const memory = std::malloc(bytes);
    if (memory == nullptr)
        throw std::bad_alloc();
    // The analyzer takes it that a power of two may be less than what it was rounded up from.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.PlacementNew)
    return new (memory) Block{static_cast<std::uint32_t>(bytes), 1};
}

void MString::Block::Free() noexcept
{
    if (!IsInSlab())
        std::free(this);
    else
        reinterpret_cast<Slab*>(reinterpret_cast<std::byte*>(this) - capacityBytes / 2)->Release();
}

MString::Slab* MString::Slab::Allocate(std::size_t bytes, std::int32_t firstHolders)
{
    void* const memory = std::malloc(bytes);
    if (memory == nullptr)
        throw std::bad_alloc();
    return new (memory) Slab{firstHolders};
}

void MString::Slab::Release(std::int32_t count) noexcept
{
    if (holders.fetch_sub(count, std::memory_order_acq_rel) == count)
        std::free(this);
}

inline char16_t* MString::EnsureWritable(std::int64_t minCapacity)
{
    const std::int64_t capacity = std::max<std::int64_t>(minCapacity, length);
    const bool isOwn = !isLiteral && !Block::Of(text)->IsInSlab() &&
                       Block::Of(text)->holders.load(std::memory_order_acquire) < 2;
    if (isOwn && Block::Of(text)->GetCapacity() >= capacity)
        return Block::Of(text)->Characters();
    return MakeBlock(capacity, isOwn);
}

MString& MString::operator=(const MString& other) noexcept
{
    if (this != &other)
        *this = MString(other);
    return *this;
}

MString MString::FromNarrow(std::string_view characters)
{
    if (characters.empty())
        return {};
    Block* const block = Block::Allocate(characters.size());
    *std::ranges::transform(characters, block->Characters(),
                            [](char character)
                            { return Widen(static_cast<signed char>(character)); })
         .out = 0;
    return {block, characters.size()};
}

MString MString::FromUTF16(std::u16string_view characters)
{
    if (characters.empty())
        return {};
    Block* const block = Block::Allocate(characters.size());
    *std::ranges::copy(characters, block->Characters()).out = 0;
    return {block, characters.size()};
}

MString MString::FromCharacter(char16_t character)
{
    MString result;
    result.Append(character);
    return result;
}

MString MString::Print(const char* format, ...)
{
    std::array<char, 8192> buffer;
    va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it does not know va_start in every run
    const int printed = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    const auto size = std::min(static_cast<std::size_t>(std::max(printed, 0)), buffer.size() - 1);
    return FromNarrow({buffer.data(), size});
}

MString MString::FromUTF8(std::string_view utf8)
{
    return MEncoding::UTF8Codec::Get().Decode(std::as_bytes(std::span(utf8)));
}

std::string MString::ToUTF8() const
{
    std::string result;
    MCodecState state;
    EncodePieces(MEncoding::UTF8Codec::Get(), state, *this,
                 [&result](std::span<const std::byte> bytes)
                 { result.append(reinterpret_cast<const char*>(bytes.data()), bytes.size()); });
    return result;
}

void MString::Clear() noexcept
{
    if (!isLiteral)
        Release();
    text = "";
    length = 0;
    isLiteral = true;
}

void MString::Reserve(std::int64_t capacity)
{
    EnsureWritable(capacity);
}

void MString::Append(const MString& other)
{
    Insert(length, other);
}

void MString::Append(char16_t character)
{
    char16_t* const end = EnsureWritable(std::int64_t{length} + 1) + length;
    end[0] = character;
    end[1] = 0;
    ++length;
}

void MString::AppendFill(int count, char16_t character)
{
    if (count > 0)
        std::fill_n(Open(length, static_cast<std::size_t>(count)), count, character);
}

void MString::AppendChars(std::u16string_view characters)
{
    if (characters.empty())
        return;
    const std::less<const void*> isBefore;
    const bool areOwn = !isLiteral && !isBefore(characters.data(), text) &&
                        isBefore(characters.data(), Wide() + length);
    if (areOwn) // they move when the block grows
        return AppendChars(std::u16string(characters));
    std::ranges::copy(characters, Open(length, characters.size()));
}

void MString::Insert(int position, const MString& other)
{
    if (other.IsEmpty())
        return;
    if (&other == this)
        return Insert(position, MString(other));
    char16_t* const gap =
        Open(std::clamp(position, 0, int{length}), static_cast<std::size_t>(other.length));
    other.WithCharacters([gap](auto characters) { CopyWide(characters, gap); });
}

void MString::Erase(int position, int count)
{
    if (position < 0 || position >= length || count <= 0)
        return;
    count = std::min(count, length - position);
    char16_t* const characters = EnsureWritable(length);
    std::copy(characters + position + count, characters + length + 1, characters + position);
    length -= count;
}

int MString::ReplaceChar(char16_t character, const MString& replacement)
{
    const auto found = static_cast<int>(WithCharacters(
        [character](auto characters)
        {
            return std::ranges::count_if(characters, [character](auto present)
                                         { return ToWide(present) == character; });
        }));
    if (found == 0)
        return 0;
    MString result;
    result.Reserve(length + found * (std::int64_t{replacement.length} - 1));
    int start = 0;
    for (int at = Find(character); at >= 0; at = Find(character, start))
    {
        result.AppendPart(*this, start, at - start);
        result.Append(replacement);
        start = at + 1;
    }
    result.AppendPart(*this, start, length - start);
    *this = std::move(result);
    return found;
}

void MString::NormalizeWhitespace()
{
    if (IsEmpty())
        return;
    char16_t* const characters = EnsureWritable(length);
    std::replace_if(
        characters, characters + length, [](char16_t character) { return character < 33; }, u' ');
}

MString MString::Mid(int position, int count) const
{
    if (position < 0 || position >= length || count <= 0)
        return {};
    count = std::min(count, length - position);
    if (count == length)
        return *this;
    MString result;
    result.AppendPart(*this, position, count);
    return result;
}

MString MString::ToUpper() const
{
    if (IsEmpty())
        return {};
    MString result = *this;
    char16_t* const characters = result.EnsureWritable(length);
    std::transform(characters, characters + length, characters,
                   [](char16_t character)
                   {
                       return character >= u'a' && character <= u'z'
                                  ? static_cast<char16_t>(character - 32)
                                  : character;
                   });
    return result;
}

int MString::Find(char16_t character, int from) const noexcept
{
    return WithCharacters(
        [character, from](auto characters)
        {
            auto at = static_cast<std::size_t>(std::max(from, 0));
            // Round by round, without a branch for each character, to the one that holds it.
            for (; at + SearchedAtOnce <= characters.size(); at += SearchedAtOnce)
            {
                std::uint16_t isHere = 0; // as wide as what is compared
                for (const auto unit : characters.subspan(at, SearchedAtOnce))
                    isHere = ToWide(unit) == character ? 1 : isHere;
                if (isHere != 0)
                    break;
            }
            for (; at < characters.size(); ++at)
                if (ToWide(characters[at]) == character)
                    return static_cast<int>(at);
            return -1;
        });
}

int MString::FindLast(char16_t character, int from) const noexcept
{
    for (int i = std::min(from, length - 1); i >= 0; --i)
        if (CharAt(i) == character)
            return i;
    return -1;
}

int MString::Compare(const MString& other) const noexcept
{
    if (IsSharedWith(other))
        return 0;
    // Most names differ in their first letter.
    const char16_t first = ToLowerASCII(CharAt(0));
    const char16_t otherFirst = ToLowerASCII(other.CharAt(0));
    if (first != otherFirst && first < FirstFolded && otherFirst < FirstFolded)
        return first - otherFirst;
    return WithCharacters(
        [&other](auto own) {
            return other.WithCharacters([own](auto others) { return CompareFolded(own, others); });
        });
}

int MString::Compare(int position, const MString& other, int otherPosition,
                     int maxCount) const noexcept
{
    const auto part = [maxCount](auto characters, int start)
    {
        const std::size_t from =
            std::min(static_cast<std::size_t>(std::max(start, 0)), characters.size());
        const std::size_t count = static_cast<std::size_t>(std::max(maxCount, 0));
        return characters.subspan(from, std::min(count, characters.size() - from));
    };
    return WithCharacters(
        [&](auto own)
        {
            return other.WithCharacters(
                [&](auto others)
                { return CompareFolded(part(own, position), part(others, otherPosition)); });
        });
}

std::int32_t MString::Hash() const noexcept
{
    const int stride = length < 16 ? 1 : 4;
    const int count = length < 16 ? length : std::min(length / 4, 8);
    std::int32_t hash = 0;
    for (int i = 0; i < count; i += stride)
        hash ^= static_cast<signed char>(ToLowerASCII(CharAt(i))) << i;
    return hash;
}

int MString::MatchScore(const MString& query) const noexcept
{
    int score = 0;
    for (int start = 0; start < length; ++start)
    {
        int end = start;
        while (IsLetterASCII(CharAt(end)))
            ++end;
        int longest = 0;
        for (int at = 0; at < query.length && longest < end - start; ++at)
        {
            int run = 0;
            while (run < end - start && at + run < query.length &&
                   ToLowerASCII(CharAt(start + run)) == ToLowerASCII(query.CharAt(at + run)))
                ++run;
            longest = std::max(longest, run);
        }
        score += longest;
        start = end;
    }
    return score;
}

char16_t* MString::MakeBlock(std::int64_t capacity, bool isOwn)
{
    const auto characters = static_cast<std::size_t>(capacity);
    if (isOwn)
    {
        const std::size_t bytes = BlockBytes(characters, sizeof(Block));
        auto* const grown =
            static_cast<Block*>(std::realloc(static_cast<void*>(Block::Of(text)), bytes));
        if (grown == nullptr)
            throw std::bad_alloc();
        grown->capacityBytes = static_cast<std::uint32_t>(bytes);
        text = grown->Characters();
        return grown->Characters();
    }

    Block* const block = Block::Allocate(characters);
    WithCharacters([block](auto present) { CopyWide(present, block->Characters()); });
    block->Characters()[length] = 0;
    if (!isLiteral)
        Release();
    text = block->Characters();
    isLiteral = false;
    return block->Characters();
}

void MString::AppendPart(const MString& other, int position, int count)
{
    if (count <= 0)
        return;
    char16_t* const gap = Open(length, static_cast<std::size_t>(count));
    other.WithCharacters(
        [&](auto characters)
        {
            CopyWide(characters.subspan(static_cast<std::size_t>(position),
                                        static_cast<std::size_t>(count)),
                     gap);
        });
}

char16_t* MString::Open(int position, std::size_t count)
{
    char16_t* const characters =
        EnsureWritable(length + static_cast<std::int64_t>(std::min(count, TooManyCharacters)));
    char16_t* const gap = characters + position;
    if (position < length)
        std::copy_backward(gap, characters + length, characters + length + count);
    length += static_cast<std::int32_t>(count);
    characters[length] = 0;
    return gap;
}

void MString::Release() noexcept
{
    // The only holder needs no exchange: nobody else can become one meanwhile.
    Block* const block = Block::Of(text);
    if (block->holders.load(std::memory_order_acquire) == 1 ||
        block->holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
        block->Free();
}
