#pragma once

#include <array>
#include <string>
#include <string_view>

/// The characters that XML writes by name.
namespace xmlentities
{

/// Decodes the entities amp, lt, gt, apos, quot and #10 in any case; the character behind the name
/// goes with it, whatever it is. Others stay.
void Decode(std::u16string& text);

/// How the characters below 256 are written; empty if as they are.
inline constexpr auto Encodings = []
{
    std::array<std::string_view, 256> encodings{};
    encodings['&'] = "&amp;";
    encodings['<'] = "&lt;";
    encodings['>'] = "&gt;";
    encodings['\''] = "&apos;";
    encodings['"'] = "&quot;";
    encodings['\n'] = "&#10;";
    return encodings;
}();

/// How @p character is written; empty if as it is.
constexpr std::string_view Encode(char16_t character) noexcept
{
    return character < Encodings.size() ? Encodings[character] : std::string_view{};
}

/// For the lower byte of a character whether Encode may give a name.
inline constexpr auto MayBeEncoded = []
{
    std::array<bool, 256> may{};
    for (std::size_t i = 0; i < may.size(); ++i)
        may[i] = !Encodings[i].empty();
    return may;
}();

} // namespace xmlentities
