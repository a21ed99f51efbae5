#include "host/vst3/Vst3HostStream.h"

#include <algorithm>
#include <array>
#include <limits>

#include "foundation/limits.h"
#include "foundation/threads/MException.h"

namespace
{

constexpr std::int32_t PieceBytes = 1024;

[[noreturn]] void ThrowUnreadable()
{
    throw MException("Could not read required data from stream.", MException::BadData);
}

} // namespace

MMemoryStream Vst3::ReadToEnd(IBStream& stream)
{
    MMemoryStream whole;
    std::array<std::byte, PieceBytes> piece{};
    for (;;)
    {
        std::int32_t count = 0;
        // Whether the end is a failure, hosts do not agree on.
        stream.read(piece.data(), PieceBytes, &count);
        if (count <= 0)
            break;
        if (count > PieceBytes || whole.GetPosition() > limits::InflatedTreeBytes)
            ThrowUnreadable();
        whole.Write(std::span(piece).first(static_cast<std::size_t>(count)));
    }
    whole.Seek(0, MStream::FromStart);
    return whole;
}

Vst3::Result Vst3::WriteAll(IBStream& stream, std::span<const std::byte> bytes)
{
    constexpr std::size_t Most = std::numeric_limits<std::int32_t>::max();
    while (!bytes.empty())
    {
        const auto wanted = static_cast<std::int32_t>(std::min(bytes.size(), Most));
        std::int32_t written = wanted; // some hosts tell the result alone
        const Result result = stream.write(const_cast<std::byte*>(bytes.data()), wanted, &written);
        if (result != kResultOk)
            return result;
        if (written <= 0 || written > wanted)
            return kResultFalse;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return kResultOk;
}
