#pragma once

#include <cstdint>
#include <memory>

#include "gui/text/MFontDescription.h"
#include "gui/text/MFontInstance.h"

/// A font as a value, compared by what it describes. Fonts of one description share an
/// MFontInstance, which is made when it is first needed, and anew when the system's fonts become
/// known. GUI thread; a test or a program without a window may use any one thread instead.
class MFont
{
public:
    MFont() = default;
    explicit MFont(const MFontDescription& fontDescription) : description(fontDescription) {}

    const MFontDescription& GetDescription() const noexcept { return description; }
    bool operator==(const MFont& other) const noexcept { return description == other.description; }

    /// Pixels from one line to the next, at least 1: the height and the gap between lines.
    int GetHeight() const { return GetInstance()->GetLineHeight(); }
    int GetAscent() const { return GetInstance()->GetAscent(); }
    int GetDescent() const { return GetInstance()->GetDescent(); }
    /// Whole pixels, so that widths of texts add up.
    int GetAdvance(char32_t code) const { return GetInstance()->GetAdvance(code); }
    /// Pixels between characters.
    int GetSpace() const noexcept { return description.space; }
    /// The width of @p count 16-bit units of @p text from @p from on: advances and the space
    /// between them. Control characters do not count, a tab counts as four blanks.
    int MeasureRun(const MString& text, int from, int count) const;
    /// The same with the space behind the last one, too, so that the parts of a text add up.
    int MeasureSpaced(const MString& text, int from, int count) const;

    /// To be held while it is used: as soon as the system's fonts are known, this font lets it go.
    std::shared_ptr<MFontInstance> GetInstance() const;

private:
    struct Extent
    {
        std::int64_t advances;   ///< pixels
        std::int64_t characters; ///< each with a space behind it

        /// Stays at the ends of the numbers.
        int WithSpaces(std::int64_t spaces, int space) const noexcept;
    };
    Extent Measure(const MString& text, int from, int count) const;

    MFontDescription description;
    mutable std::shared_ptr<MFontInstance> instance; ///< null until it is needed
    mutable int generation = 0;                      ///< of the collection, when it was made
};
