#include "foundation/xml/XMLSource.h"

#include "foundation/streams/MStream.h"

namespace
{

constexpr std::byte Mark[] = {std::byte{0xFF}, std::byte{0xFE}};

} // namespace

XMLSource::XMLSource(MStream& readStream, const MEncoding::Codec& initialCodec)
    : stream(readStream),
      codec(&initialCodec),
      byteCount(stream.Read(bytes))
{
    if (byteCount >= std::size(Mark) && bytes[0] == Mark[0] && bytes[1] == Mark[1])
    {
        codec = &MEncoding::GetCodec("utf-16");
        firstByte = std::size(Mark);
    }
    Decode();
}

void XMLSource::SwitchCodec(const MEncoding::Codec& newCodec)
{
    if (codec == &newCodec)
        return;

    // Decode once more, byte by byte, up to the present character.
    std::array<char16_t, 4> decoded;
    MCodecState walked = firstState;
    for (std::size_t count = 0; count < position; ++firstByte)
        count += codec->DecodeSome(walked, std::span(bytes).subspan(firstByte, 1), decoded).written;
    codec = &newCodec;
    state = {};
    Decode();
}

std::int32_t XMLSource::SkipBlanksSlowly()
{
    while (PeekCharacter() != NoMore && PeekCharacter() <= u' ')
        Skip(1);
    return PeekCharacter();
}

void XMLSource::Fill()
{
    do
    {
        byteCount = stream.Read(bytes);
        firstByte = 0;
        Decode();
    } while (position == end && byteCount > 0);
}

void XMLSource::Decode()
{
    firstState = state;
    const auto source = std::span<const std::byte>(bytes).first(byteCount).subspan(firstByte);
    end = codec->DecodeSome(state, source, characters).written;
    position = 0;
}
