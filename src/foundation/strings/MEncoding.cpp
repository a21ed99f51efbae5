#include "foundation/strings/MEncoding.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "foundation/streams/MTextStream.h"
#include "foundation/strings/Codecs.h"
#include "foundation/strings/EncodePieces.h"
#include "foundation/strings/MStringFormatter.h"
#include "foundation/threads/MException.h"

namespace
{

/// All names of the table codecs.
class NamedCodecs
{
public:
    NamedCodecs()
    {
        for (const MEncoding::TableCodec& codec : MEncoding::TableCodec::All())
            for (const char* const name : codec.GetTable().names)
                if (name != nullptr)
                    buckets[BucketOf(name)].push_back({name, &codec});
    }

    const MEncoding::Codec* Find(const MString& name) const noexcept
    {
        for (const Entry& entry : buckets[BucketOf(name)])
            if (entry.name == name)
                return entry.codec;
        return nullptr;
    }

private:
    struct Entry
    {
        MString name;
        const MEncoding::Codec* codec;
    };

    static std::size_t BucketOf(const MString& name) noexcept
    {
        return static_cast<std::uint32_t>(name.Hash()) % 32;
    }

    std::array<std::vector<Entry>, 32> buckets;
};

} // namespace

MString MEncoding::Codec::Decode(std::span<const std::byte> memory) const
{
    MString text;
    MCodecState state;
    std::array<char16_t, 512> units;
    while (!memory.empty())
    {
        const MCodecProgress progress = DecodeSome(state, memory, units);
        memory = memory.subspan(progress.read);
        const std::u16string_view piece(units.data(), progress.written);
        const std::size_t end = piece.find(u'\0');
        text.AppendChars(piece.substr(0, end));
        if (end != std::u16string_view::npos)
            break;
    }
    return text;
}

std::vector<std::byte> MEncoding::Codec::Encode(const MString& text, bool addTerminator) const
{
    std::vector<std::byte> result;
    const auto append = [&result](std::span<const std::byte> bytes)
    { result.insert(result.end(), bytes.begin(), bytes.end()); };
    MCodecState state;
    EncodePieces(*this, state, text, append);
    state = {};
    if (addTerminator)
        EncodePieces(*this, state, MString::FromCharacter(u'\0'), append);
    return result;
}

void MEncoding::Codec::ReadHeader(MStream& /*stream*/) const {}

void MEncoding::Codec::WriteHeader(MStream& /*stream*/) const {}

void MEncoding::Codec::ReadLine(MTextStream& source, MString& target) const
{
    std::array<char16_t, 64> piece;
    target.Clear();
    std::span<const std::byte> bytes = source.Peek();
    if (bytes.empty())
        throw MException("No more data in source stream.", MException::BadData);
    bool isWhole = false;
    do
    {
        bytes = bytes.first(std::min(bytes.size(), piece.size()));
        const std::size_t lineBytes = FindLineEnd(source.state, bytes);
        if (lineBytes > 0)
            bytes = bytes.first(lineBytes);
        const MCodecProgress progress = DecodeSome(source.state, bytes, piece);
        source.Skip(progress.read);
        isWhole = lineBytes > 0 && progress.read == lineBytes;

        char16_t* const end = std::remove_if(
            piece.data(), piece.data() + progress.written,
            [](char16_t unit) { return unit == u'\r' || unit == u'\n' || unit == u'\0'; });
        target.AppendChars({piece.data(), static_cast<std::size_t>(end - piece.data())});
    } while (!isWhole && !(bytes = source.Peek()).empty());
}

void MEncoding::Codec::Write(MTextStream& target, const MString& text) const
{
    EncodePieces(*this, target.state, text,
                 [&target](std::span<const std::byte> bytes) { target.Write(bytes); });
}

void MEncoding::Codec::WriteLine(MTextStream& target, const MString& text) const
{
    MString line = text;
    line.Append(u'\n');
    Write(target, line);
}

std::size_t MEncoding::Codec::FindLineEnd(const MCodecState& /*state*/,
                                          std::span<const std::byte> bytes) const noexcept
{
    const auto end = std::ranges::find_if(
        bytes, [](std::byte byte) { return byte == std::byte{'\n'} || byte == std::byte{0}; });
    return end == bytes.end() ? 0 : static_cast<std::size_t>(end - bytes.begin()) + 1;
}

const MEncoding::Codec& MEncoding::GetCodec(const MString& name)
{
    if (name.IsEmpty())
        return ASCIICodec::Get();
    if (name == "utf8" || name == "utf-8")
        return UTF8Codec::Get();
    if (name == "utf16" || name == "utf-16")
        return UTF16Codec::Get();
    static const NamedCodecs codecs;
    if (const Codec* const codec = codecs.Find(name))
        return *codec;
    throw MException(MStringFormatter("No codec found for encoding {0}.").Add(name).Result(),
                     MException::BadData);
}
