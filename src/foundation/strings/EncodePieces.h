#pragma once

#include <algorithm>
#include <array>
#include <type_traits>

#include "foundation/strings/MEncoding.h"

/// Calls @p use with the bytes of @p text, piece by piece. @p codec is a concrete one where the
/// caller knows it, which saves the virtual calls.
template <typename Codec, typename Use>
void EncodePieces(const Codec& codec, MCodecState& state, const MString& text, const Use& use)
{
    const auto encode = [&](std::span<const char16_t> units)
    {
        std::array<std::byte, 1024> bytes;
        while (!units.empty())
        {
            const MCodecProgress progress = codec.EncodeSome(state, units, bytes);
            units = units.subspan(progress.read);
            use(std::span<const std::byte>(bytes.data(), progress.written));
        }
    };
    const auto widenAndEncode = [&](std::span<const signed char> characters)
    {
        std::array<char16_t, 256> wide;
        while (!characters.empty())
        {
            const auto piece = characters.first(std::min(characters.size(), wide.size()));
            std::ranges::transform(piece, wide.begin(), MString::Widen);
            encode({wide.data(), piece.size()});
            characters = characters.subspan(piece.size());
        }
    };
    text.WithCharacters(
        [&](auto characters)
        {
            if constexpr (std::is_same_v<decltype(characters), std::span<const char16_t>>)
                encode(characters);
            else
                widenAndEncode(characters);
        });
}
