#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/limits.h"
#include "foundation/strings/MString.h"
#include "foundation/strings/MStringSlab.h"
#include "foundation/xml/MAttribute.h"

class MStream;
class XMLSource;

/// How much a parser takes before it refuses; as told in limits.h unless a test wants less.
struct MMLLimits
{
    int depth = limits::XMLDepth;
    int items = limits::XMLItems;
    std::size_t attributes = limits::XMLAttributes;
    std::size_t nameCharacters = limits::XMLNameCharacters;
    std::size_t textCharacters = limits::XMLTextCharacters;
};

/// Reads a markup text and hands its elements and texts to whoever derives from it.
///
/// Delimiters are the characters <>"/!= and white space is everything up to U+0020. A name is a run
/// of neither. It is more tolerant than XML: attribute values may stand without quotes, an element
/// may be left open at the end, entities need no semicolon, and case does not matter in them.
/// Comments and declarations are passed over. An element whose name begins with "?" goes nowhere,
/// but its attribute "encoding" chooses the codec for what follows.
class MMLParser
{
public:
    explicit MMLParser(const MMLLimits& usedLimits = {}) : limits(usedLimits) {}
    virtual ~MMLParser() = default;
    MMLParser(const MMLParser&) = delete;
    MMLParser& operator=(const MMLParser&) = delete;

    /// Reads UTF-8, or UTF-16 behind a mark, up to the end or until a receiver stops it.
    /// @throws MException (256) "Invalid file contents. ..." and what is wrong; "No codec found for
    /// encoding {0}."; and what the stream throws.
    void Parse(MStream& stream);

protected:
    /// An element begins, or ends if @p isClosing. The attributes are as they came, perhaps with
    /// one name twice, and may be moved from. An element that closes itself comes twice.
    /// Returns true to stop.
    virtual bool OnElement(const MString& name, std::vector<MAttribute>& received,
                           bool isClosing) = 0;
    /// A text between elements, not empty: entities are decoded, and each run of white space is one
    /// blank, at both ends too. Returns true to stop.
    virtual bool OnText(const MString& text) = 0;

    [[noreturn]] static void Refuse(const MString& what);

    const MMLLimits limits;

private:
    // Each of these returns whether a receiver stopped the parse.
    bool ReadText(XMLSource& source);
    bool ReadTag(XMLSource& source);
    bool ReadClosingTag(XMLSource& source);
    bool ReadDeclaration(XMLSource& source);
    bool ReadCharacterData(XMLSource& source);
    bool ReadElement(XMLSource& source);
    bool FinishElement(XMLSource& source, const MString& name, bool isClosingItself);

    /// Reads a name into @p guess, which is the one that stood at a like place before: most often
    /// it stands here again.
    const MString& ReadName(XMLSource& source, MString& guess);
    /// Likewise, so that what is the same in many records is one text.
    MString ReadValue(XMLSource& source, MString& guess);
    MString Decode(std::u16string_view encoded);
    MString MakeValue(std::u16string_view characters);
    void CheckText(std::size_t characters) const;
    void ChooseCodec(XMLSource& source) const;
    /// Skips what lies before @p mark and the mark itself.
    static void SkipPast(XMLSource& source, std::u16string_view mark);

    /// The text of @p characters, shared with an earlier one of the same spelling if possible.
    MString ShareText(std::u16string_view characters);

    std::vector<MAttribute> attributes; ///< of the element that is being read
    std::u16string collected;           ///< of the text that is being read
    std::size_t attributeCount = 0;     ///< of the last element
    MString elementGuess;
    MString closingGuess;
    std::array<MString, 16> attributeGuesses; ///< by their number, the last one for all others
    std::array<MString, 16> valueGuesses;     ///< likewise
    MStringSlab values;
    std::array<MString, 128> texts; ///< seen lately, by a hash of their spelling
};
