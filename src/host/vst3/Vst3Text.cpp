#include "host/vst3/Vst3Text.h"

#include <algorithm>
#include <string_view>

namespace
{

constexpr std::size_t MaxReadCharacters = 65536;
constexpr int MaxCopiedCharacters = 127;

bool IsHighSurrogate(char16_t character) noexcept
{
    return (character & 0xFC00) == 0xD800;
}

} // namespace

void Vst3::CopyText(char16_t* target, const MString& text) noexcept
{
    int length = std::min(text.Length(), MaxCopiedCharacters);
    if (length < text.Length() && IsHighSurrogate(text.CharAt(length - 1)))
        --length;
    std::fill_n(target, MaxCopiedCharacters + 1, u'\0');
    for (int i = 0; i < length; ++i)
        target[i] = text.CharAt(i);
}

MString Vst3::ReadText(const char16_t* text)
{
    if (text == nullptr)
        return {};
    std::size_t length = 0;
    while (length < MaxReadCharacters && text[length] != 0)
        ++length;
    return MString::FromUTF16({text, length});
}
