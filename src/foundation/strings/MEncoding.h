#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "foundation/strings/MString.h"

class MStream;
class MTextStream;

/// What the end of one piece of a text leaves open for the next piece. Fresh at the start of a
/// text; what the fields mean is the codec's own business.
struct MCodecState
{
    std::uint32_t code = 0;   ///< bits of a character that is not complete
    std::uint8_t pending = 0; ///< units that are still to come
};

/// How far a codec came with a piece.
struct MCodecProgress
{
    std::size_t read;    ///< units of the source that are used up
    std::size_t written; ///< units of the target that are filled
};

/// Text to and from bytes. Codecs are singletons without state; any thread.
class MEncoding
{
public:
    class ASCIICodec;
    class UTF8Codec;
    class UTF16Codec;
    class TableCodec;

    class Codec
    {
    public:
        virtual ~Codec() = default;

        /// "ascii", "utf8" or the like.
        virtual MString GetName() const = 0;
        /// All of @p memory; a NUL ends the text.
        virtual MString Decode(std::span<const std::byte> memory) const;
        /// All of @p text and, if wanted, a terminator of one unit.
        virtual std::vector<std::byte> Encode(const MString& text, bool addTerminator) const;
        /// Reads a byte-order mark, where the encoding has one.
        virtual void ReadHeader(MStream& stream) const;
        virtual void WriteHeader(MStream& stream) const;
        /// Reads up to LF or NUL and drops CR. @throws MException (256) "No more data in source
        /// stream." if the data end before the first character.
        virtual void ReadLine(MTextStream& source, MString& target) const;
        virtual void Write(MTextStream& target, const MString& text) const;
        /// The same and a LF.
        virtual void WriteLine(MTextStream& target, const MString& text) const;

        /// Decodes as much of @p source as @p target has room for, which must be 2 or more. Never
        /// fails: what is wrong is passed over or marked.
        virtual MCodecProgress DecodeSome(MCodecState& state, std::span<const std::byte> source,
                                          std::span<char16_t> target) const noexcept = 0;
        /// Encodes as much of @p source as @p target has room for, which must be 8 bytes or more.
        virtual MCodecProgress EncodeSome(MCodecState& state, std::span<const char16_t> source,
                                          std::span<std::byte> target) const noexcept = 0;

    protected:
        /// How many of @p bytes a line takes with the LF or NUL at its end; 0 if it goes on.
        virtual std::size_t FindLineEnd(const MCodecState& state,
                                        std::span<const std::byte> bytes) const noexcept;
    };

    /// The codec of an encoding; the empty name is ASCII. Names are compared by MString::Compare.
    /// @throws MException (256) "No codec found for encoding {0}.".
    static const Codec& GetCodec(const MString& name);
};
