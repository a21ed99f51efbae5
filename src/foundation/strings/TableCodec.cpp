#include <algorithm>
#include <utility>

#include "foundation/strings/Codecs.h"

namespace
{

using Table = MEncoding::TableCodec::Table;

constexpr std::array<Table, 28> Tables = {{
#include "foundation/strings/EncodingTables.inc"
}};

constexpr char16_t Unassigned = 0xFFFD;

template <std::size_t... Index>
std::array<MEncoding::TableCodec, sizeof...(Index)> MakeCodecs(std::index_sequence<Index...>)
{
    return {{MEncoding::TableCodec(Tables[Index])...}};
}

} // namespace

std::span<const MEncoding::TableCodec> MEncoding::TableCodec::All()
{
    static const auto codecs = MakeCodecs(std::make_index_sequence<Tables.size()>());
    return codecs;
}

MCodecProgress MEncoding::TableCodec::DecodeSome(MCodecState& /*state*/,
                                                 std::span<const std::byte> source,
                                                 std::span<char16_t> target) const noexcept
{
    const std::size_t count = std::min(source.size(), target.size());
    for (std::size_t i = 0; i < count; ++i)
    {
        const auto byte = static_cast<std::uint8_t>(source[i]);
        target[i] = byte < 128 ? byte : table.upperHalf[byte - 128u];
    }
    return {count, count};
}

MCodecProgress MEncoding::TableCodec::EncodeSome(MCodecState& /*state*/,
                                                 std::span<const char16_t> source,
                                                 std::span<std::byte> target) const noexcept
{
    std::call_once(reverseOnce, [this] { BuildReverse(); });
    std::size_t read = 0;
    std::size_t written = 0;
    for (; read < source.size() && written < target.size(); ++read)
    {
        const char16_t unit = source[read];
        if (unit < 128)
            target[written++] = static_cast<std::byte>(unit);
        else if (const std::uint8_t byte = FindByte(unit); byte != 0)
            target[written++] = std::byte{byte};
    }
    return {read, written};
}

std::uint8_t MEncoding::TableCodec::FindByte(char16_t character) const noexcept
{
    const std::size_t bucket = BucketOf(character);
    const Pair* const end = reverse.pairs.data() + reverse.starts[bucket + 1];
    const Pair* const found = std::ranges::lower_bound(
        reverse.pairs.data() + reverse.starts[bucket], end, character, {}, &Pair::character);
    return found != end && found->character == character ? found->byte : std::uint8_t{0};
}

void MEncoding::TableCodec::BuildReverse() const noexcept
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < table.upperHalf.size(); ++i)
        if (table.upperHalf[i] != Unassigned)
            reverse.pairs[count++] = {table.upperHalf[i], static_cast<std::uint8_t>(128 + i)};
    const std::span<Pair> pairs = std::span(reverse.pairs).first(count);
    std::ranges::sort(pairs, {},
                      [](const Pair& pair)
                      { return std::pair(BucketOf(pair.character), pair.character); });

    reverse.starts = {};
    for (const Pair& pair : pairs)
        ++reverse.starts[BucketOf(pair.character) + 1];
    for (std::size_t bucket = 0; bucket < Buckets; ++bucket)
        reverse.starts[bucket + 1] =
            static_cast<std::uint8_t>(reverse.starts[bucket + 1] + reverse.starts[bucket]);
}
