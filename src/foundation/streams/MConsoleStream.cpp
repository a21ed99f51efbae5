#include "foundation/streams/MConsoleStream.h"

#include <cstdio>

MConsoleStream& MConsoleStream::Get()
{
    static MConsoleStream console;
    return console;
}

void MConsoleStream::Write(std::span<const std::byte> bytes)
{
    for (const std::byte byte : bytes)
        std::putchar(std::to_integer<int>(byte));
}

std::size_t MConsoleStream::Read(std::span<std::byte> buffer)
{
    std::size_t count = 0;
    for (int character = 0; count < buffer.size() && (character = std::getchar()) != EOF; ++count)
        buffer[count] = static_cast<std::byte>(character);
    return count;
}

void MConsoleStream::Flush()
{
    std::fflush(stdout);
}
