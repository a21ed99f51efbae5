// Decodes any bytes by every codec, whole and in pieces, and writes back what came out.

#include <cstdlib>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "foundation/streams/MStream.h"
#include "foundation/streams/MTextStream.h"
#include "foundation/strings/Codecs.h"
#include "foundation/strings/FileNames.h"
#include "foundation/threads/MException.h"

namespace
{

using Bytes = std::span<const std::byte>;

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Reads what it is given.
class BytesStream : public MStream
{
public:
    explicit BytesStream(Bytes givenBytes) : bytes(givenBytes) {}

    std::size_t Read(std::span<std::byte> buffer) override
    {
        const Bytes piece = bytes.first(std::min(buffer.size(), bytes.size()));
        std::copy(piece.begin(), piece.end(), buffer.begin());
        bytes = bytes.subspan(piece.size());
        return piece.size();
    }

private:
    Bytes bytes;
};

/// All of @p source in pieces, each into a target of @p room units.
template <typename To, typename From, typename Convert>
std::vector<To> InPieces(std::span<const From> source, std::size_t pieceSize, std::size_t room,
                         const Convert& convert)
{
    std::vector<To> result;
    std::vector<To> target(room);
    MCodecState state;
    while (!source.empty())
    {
        auto piece = source.first(std::min(source.size(), pieceSize));
        source = source.subspan(piece.size());
        while (!piece.empty())
        {
            const MCodecProgress progress = convert(state, piece, std::span<To>(target));
            Require(progress.read <= piece.size() && progress.written <= room);
            Require(progress.read > 0 || progress.written > 0);
            result.insert(result.end(), target.begin(),
                          target.begin() + static_cast<std::ptrdiff_t>(progress.written));
            piece = piece.subspan(progress.read);
        }
    }
    return result;
}

const MEncoding::Codec& PickCodec(std::size_t number)
{
    const auto tables = MEncoding::TableCodec::All();
    if (number < tables.size())
        return tables[number];
    if (number == tables.size())
        return MEncoding::ASCIICodec::Get();
    if (number == tables.size() + 1)
        return MEncoding::UTF16Codec::Get();
    return MEncoding::UTF8Codec::Get();
}

/// Whether a text is the same when it is written and read again: it has no characters that are
/// written as something else, or not at all.
bool IsLasting(const MString& text)
{
    for (int i = 0; i < text.Length(); ++i)
    {
        const char16_t unit = text.CharAt(i);
        const char16_t next = text.CharAt(i + 1);
        if (unit == 0xFFFD || (unit == 0xDBFF && next > 0xDE00 && next <= 0xDEFF))
            return false;
    }
    return true;
}

void CheckPieces(const MEncoding::Codec& codec, Bytes bytes, std::size_t pieceSize,
                 std::size_t room)
{
    const auto decode = [&codec](MCodecState& state, Bytes from, std::span<char16_t> to)
    { return codec.DecodeSome(state, from, to); };
    const auto encode =
        [&codec](MCodecState& state, std::span<const char16_t> from, std::span<std::byte> to)
    { return codec.EncodeSome(state, from, to); };

    const auto units = InPieces<char16_t>(bytes, bytes.size(), 2 * bytes.size() + 2, decode);
    Require(units == InPieces<char16_t>(bytes, pieceSize, room, decode));

    std::vector<char16_t> anyUnits;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        anyUnits.push_back(static_cast<char16_t>(static_cast<unsigned>(bytes[i]) |
                                                 static_cast<unsigned>(bytes[i + 1]) << 8));
    const std::span<const char16_t> source(anyUnits);
    const auto whole = InPieces<std::byte>(source, source.size(), 4 * source.size() + 8, encode);
    Require(whole == InPieces<std::byte>(source, pieceSize, room + 6, encode));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider provider(data, size);
    const MEncoding::Codec& codec = PickCodec(provider.ConsumeIntegralInRange<std::size_t>(0, 40));
    const auto pieceSize = provider.ConsumeIntegralInRange<std::size_t>(1, 40);
    const auto room = provider.ConsumeIntegralInRange<std::size_t>(2, 40);
    const std::string content = provider.ConsumeRemainingBytesAsString();
    const Bytes bytes = std::as_bytes(std::span(content));

    CheckPieces(codec, bytes, pieceSize, room);

    const MString text = codec.Decode(bytes);
    if (IsLasting(text))
    {
        const MString again = codec.Decode(codec.Encode(text, true));
        Require(again.Length() == text.Length());
        for (int i = 0; i < text.Length(); ++i)
            Require(again.CharAt(i) == text.CharAt(i));
    }

    Require(FileNameToBytes(FileNameFromBytes(content)) == content);

    try
    {
        BytesStream stream(bytes);
        MTextStream source(stream, pieceSize);
        for (MString line;;)
            codec.ReadLine(source, line);
    }
    catch (const MException&) // the end of the data
    {
    }
    try
    {
        MEncoding::GetCodec(text);
    }
    catch (const MException&) // no such name
    {
    }
    return 0;
}
