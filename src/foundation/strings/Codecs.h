#pragma once

#include <array>
#include <mutex>

#include "foundation/strings/MEncoding.h"

/// One byte a character: its low byte, whatever it is.
class MEncoding::ASCIICodec final : public MEncoding::Codec
{
public:
    static const ASCIICodec& Get() noexcept;

    MString GetName() const override { return "ascii"; }
    MCodecProgress DecodeSome(MCodecState& state, std::span<const std::byte> source,
                              std::span<char16_t> target) const noexcept override;
    MCodecProgress EncodeSome(MCodecState& state, std::span<const char16_t> source,
                              std::span<std::byte> target) const noexcept override;
};

/// Standard UTF-8, read with patience: bytes that open no sequence are passed over, a sequence that
/// breaks off or is not standard counts as U+0001, one that the data end in as nothing. U+FEFF is
/// dropped wherever it stands, so there is no header to read. A surrogate without its partner is
/// not written, nor is what stands in the partner's place; U+10FE01 to U+10FEFF are written as the
/// single byte of their low eight bits, for bytes that are no text.
class MEncoding::UTF8Codec final : public MEncoding::Codec
{
public:
    static const UTF8Codec& Get() noexcept;

    MString GetName() const override { return "utf8"; }
    MCodecProgress DecodeSome(MCodecState& state, std::span<const std::byte> source,
                              std::span<char16_t> target) const noexcept override;
    MCodecProgress EncodeSome(MCodecState& state, std::span<const char16_t> source,
                              std::span<std::byte> target) const noexcept override;
};

/// Units as they are, low byte first. A single byte at the end of the data is dropped.
class MEncoding::UTF16Codec final : public MEncoding::Codec
{
public:
    static const UTF16Codec& Get() noexcept;

    MString GetName() const override { return "utf16"; }
    /// @throws MException (256) "Invalid UTF8 header." if the mark is missing.
    void ReadHeader(MStream& stream) const override;
    void WriteHeader(MStream& stream) const override;
    MCodecProgress DecodeSome(MCodecState& state, std::span<const std::byte> source,
                              std::span<char16_t> target) const noexcept override;
    MCodecProgress EncodeSome(MCodecState& state, std::span<const char16_t> source,
                              std::span<std::byte> target) const noexcept override;

protected:
    std::size_t FindLineEnd(const MCodecState& state,
                            std::span<const std::byte> bytes) const noexcept override;
};

/// One byte a character; those from 128 on stand in a table. A byte that the encoding leaves open
/// is the control character of its number below 160, else U+FFFD, which is never written. A
/// character that has no byte is dropped.
class MEncoding::TableCodec final : public MEncoding::Codec
{
public:
    static constexpr std::size_t MaxNames = 7;

    struct Table
    {
        std::array<const char*, MaxNames>
            names;                           ///< what it calls itself first; null behind the last
        std::array<char16_t, 128> upperHalf; ///< of the bytes from 128 on
    };

    explicit TableCodec(const Table& usedTable) noexcept : table(usedTable) {}

    /// The 28 that there are.
    static std::span<const TableCodec> All();

    const Table& GetTable() const noexcept { return table; }

    MString GetName() const override { return table.names[0]; }
    MCodecProgress DecodeSome(MCodecState& state, std::span<const std::byte> source,
                              std::span<char16_t> target) const noexcept override;
    MCodecProgress EncodeSome(MCodecState& state, std::span<const char16_t> source,
                              std::span<std::byte> target) const noexcept override;

private:
    static constexpr std::size_t Buckets = 32;

    struct Pair
    {
        char16_t character;
        std::uint8_t byte;
    };

    /// From the characters of the upper half to bytes.
    struct Reverse
    {
        std::array<Pair, 128> pairs;                  ///< by bucket, then by character
        std::array<std::uint8_t, Buckets + 1> starts; ///< of each bucket in pairs, and their end
    };

    static std::size_t BucketOf(char16_t character) noexcept { return character % Buckets; }
    /// The byte of a character of the upper half, or 0.
    std::uint8_t FindByte(char16_t character) const noexcept;
    void BuildReverse() const noexcept;

    const Table& table;
    mutable std::once_flag reverseOnce;
    mutable Reverse reverse; ///< built by the first encoding
};
