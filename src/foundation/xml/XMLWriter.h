#pragma once

#include <array>

#include "foundation/strings/MEncoding.h"

class MStream;
class MXMLItem;

/// Writes item trees as XML. Characters gather in a block, which the codec turns into bytes at
/// once.
class XMLWriter
{
public:
    /// Both have to outlive this.
    XMLWriter(MStream& writtenStream, const MEncoding::Codec& usedCodec);

    /// The mark of the encoding, if it has one, and the line "<?xml ... ?>".
    void WriteDeclaration(const MString& encoding);
    /// Without white space, but for a line end behind the root and its subitems.
    /// @throws MException (2) "XML entity cannot have empty name."
    void WriteCompact(const MXMLItem& item, int depth = 0);
    /// An element, a text and a closing tag have lines of their own, indented by tabs.
    /// @throws MException (2) "XML entity cannot have empty name."
    void WriteReadable(const MXMLItem& item, int depth = 0);
    /// Sends what is left to the stream. To be called last; the destructor does not write.
    void Flush();

private:
    static constexpr std::size_t BlockCharacters = 1024;

    void Put(char16_t character);
    void Put(const MString& text);
    void PutEncoded(const MString& text);
    template <typename Character>
    void PutEncoded(std::span<const Character> text);
    template <typename Character>
    void PutPlain(std::span<const Character> text);
    /// "<", the name and the attributes.
    void PutTagStart(const MXMLItem& item);
    void PutTabs(int count);
    void PutTextLines(const MString& text, int depth);
    void EncodeBlock();

    MStream& stream;
    const MEncoding::Codec& codec;
    MCodecState state;
    std::size_t fill = 0;
    std::array<char16_t, BlockCharacters> block;
    std::array<std::byte, 4 * BlockCharacters> bytes;
};
