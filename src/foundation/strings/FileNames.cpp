#include "foundation/strings/FileNames.h"

#include "foundation/strings/UTF8.h"

namespace
{

/// The sequence that @p bytes begin with, unless they are no text.
struct Sequence
{
    char32_t value;
    std::size_t size; ///< 0 if they are no text
};

Sequence ReadSequence(std::string_view bytes) noexcept
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const int following = utf8::FollowingBytes(lead);
    if (following < 0 || bytes.size() <= static_cast<std::size_t>(following))
        return {};
    const std::size_t size = static_cast<std::size_t>(following) + 1;
    char32_t value = utf8::LeadBits(lead, following);
    for (const char byte : bytes.substr(1, size - 1))
    {
        if (!utf8::IsContinuation(static_cast<unsigned char>(byte)))
            return {};
        value = value << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
    }
    // The text of an escape would be written as one byte, so it has to be escaped itself.
    const bool isEscape = value >= utf8::FirstEscape && value <= utf8::LastEscape;
    return {value, utf8::IsStandard(value, following) && !isEscape ? size : 0};
}

} // namespace

MString FileNameFromBytes(std::string_view bytes)
{
    std::u16string name;
    name.reserve(bytes.size());
    while (!bytes.empty())
    {
        Sequence sequence = ReadSequence(bytes);
        if (sequence.size == 0)
            sequence = {0x10FE00u + static_cast<unsigned char>(bytes[0]), 1};
        if (sequence.value > 0xFFFF)
            name += utf8::HighSurrogate(sequence.value);
        name += sequence.value > 0xFFFF ? utf8::LowSurrogate(sequence.value)
                                        : static_cast<char16_t>(sequence.value);
        bytes.remove_prefix(sequence.size);
    }
    return MString::FromUTF16(name);
}

std::string FileNameToBytes(const MString& name)
{
    return name.ToUTF8();
}
