#include "tests/foundation/streams/StreamTest.h"

Bytes RandomBytes(std::size_t size, std::mt19937::result_type seed)
{
    std::mt19937 random(seed);
    Bytes bytes(size);
    for (std::byte& byte : bytes)
        byte = static_cast<std::byte>(random() % 4 == 0 ? random() : 0x20);
    return bytes;
}

Bytes ReadAll(MStream& stream, std::size_t piece)
{
    Bytes all;
    Bytes buffer(piece);
    while (const std::size_t count = stream.Read(buffer))
        all.insert(all.end(), buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
    return all;
}
