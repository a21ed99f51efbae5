#pragma once

#include "foundation/streams/MStream.h"

/// Bytes as hexadecimal text in another stream, two digits a byte, the high one first; how binary
/// data stand in item trees.
class MHexaStream : public MStream
{
public:
    /// @p textTarget holds the text; it has to outlive this stream.
    explicit MHexaStream(MStream& textTarget) noexcept : target(textTarget) {}

    /// In upper-case digits.
    void Write(std::span<const std::byte> bytes) override;
    /// Takes digits of both cases and passes over characters up to the blank; takes no more text
    /// than the bytes asked for need. @throws MException (256) "Could not read required data from
    /// stream." for any other character and for half a pair at the end.
    std::size_t Read(std::span<std::byte> buffer) override;

    /// The hexadecimal text of all that remains in @p source.
    static MString ToText(MStream& source);

private:
    MStream& target;
};
