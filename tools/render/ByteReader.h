#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// Reads numbers of a MIDI file from a piece of it, never beyond its end.
class ByteReader
{
public:
    /// @p part is "the header" or "track 2", for messages.
    ByteReader(std::span<const std::uint8_t> bytes, std::string part);

    bool IsAtEnd() const noexcept { return rest.empty(); }
    std::size_t GetRest() const noexcept { return rest.size(); }

    // Each takes bytes away. @throws MException if they are not there.
    std::uint8_t Byte() { return Bytes(1)[0]; }
    std::uint8_t Peek() const;
    /// Big endian, of 1 to 4 bytes.
    std::uint32_t Number(std::size_t count);
    /// Of seven bits a byte, in 1 to 4 bytes.
    std::uint32_t Quantity();
    std::span<const std::uint8_t> Bytes(std::size_t count);

    /// Throws "part: what".
    [[noreturn]] void Fail(const std::string& what) const;

private:
    std::span<const std::uint8_t> rest;
    std::string name;
};
