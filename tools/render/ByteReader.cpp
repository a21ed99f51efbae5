#include "tools/render/ByteReader.h"

#include <utility>

#include "tools/render/Failure.h"

ByteReader::ByteReader(std::span<const std::uint8_t> bytes, std::string part)
    : rest(bytes),
      name(std::move(part))
{
}

std::uint8_t ByteReader::Peek() const
{
    if (rest.empty())
        Fail("ends in the middle of an event");
    return rest.front();
}

std::uint32_t ByteReader::Number(std::size_t count)
{
    std::uint32_t number = 0;
    for (const std::uint8_t byte : Bytes(count))
        number = number << 8 | byte;
    return number;
}

std::uint32_t ByteReader::Quantity()
{
    std::uint32_t quantity = 0;
    for (int i = 0; i < 4; ++i)
    {
        const std::uint8_t byte = Byte();
        quantity = quantity << 7 | (byte & 0x7Fu);
        if (byte < 0x80)
            return quantity;
    }
    Fail("has a time or length of more than four bytes");
}

std::span<const std::uint8_t> ByteReader::Bytes(std::size_t count)
{
    if (count > rest.size())
        Fail("ends in the middle of an event");
    const auto bytes = rest.first(count);
    rest = rest.subspan(count);
    return bytes;
}

void ByteReader::Fail(const std::string& what) const
{
    throw Failure(name + " " + what);
}
