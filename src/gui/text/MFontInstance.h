#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>

#include "gui/text/FontCollection.h"
#include "gui/text/FontFace.h"
#include "gui/text/MFontDescription.h"

class GlyphCache;

/// A face at a size: metrics, advances and glyphs, also of other faces for codes that it lacks.
/// All fonts of one description share it; see MFont. GUI thread.
class MFontInstance
{
public:
    /// Both have to outlive the instance.
    MFontInstance(const MFontDescription& description, FontCollection& fontCollection,
                  GlyphCache& glyphCache);
    MFontInstance(const MFontInstance&) = delete;
    MFontInstance& operator=(const MFontInstance&) = delete;

    /// Pixels from the top of a line to its baseline, and from there to the bottom; together the
    /// height of the description.
    int GetAscent() const noexcept { return ascent; }
    int GetDescent() const noexcept { return descent; }
    /// From one line to the next, in pixels, at least 1.
    int GetLineHeight() const noexcept { return lineHeight; }

    /// Pixels by which the pen goes on, 0 for control characters; a tab is as wide as four blanks.
    int GetAdvance(char32_t code) { return FindPlace(code).advance; }
    /// Null if there is nothing to paint. What no face has shows the missing glyph of the first
    /// one. Valid until the next call of this operation, of whatever instance.
    const Glyph* GetGlyph(char32_t code);

    /// Of FontCollection, or NoFace.
    int GetFace() const noexcept { return face; }
    /// The face that shows @p code.
    int GetFaceOf(char32_t code) { return FindPlace(code).face; }

private:
    static constexpr std::size_t PlainCodes = 128; ///< those that nearly all texts are made of
    static constexpr std::size_t MostOthers = 16'384;

    /// Where a code is found.
    struct Place
    {
        int face = FontCollection::NoFace; ///< NoFace if there is nothing to paint
        std::uint32_t glyph = 0;
        int advance = Unknown;
    };
    static constexpr int Unknown = -1;

    void SetMetrics();
    const Place& FindPlace(char32_t code);
    Place MakePlace(char32_t code);
    int FindAdvance(int placeFace, std::uint32_t glyph);
    FontFace::Look GetLook(int placeFace) const noexcept;

    const std::uint64_t id; ///< another one for each that was ever made
    MFontDescription wanted;
    FontCollection& collection;
    GlyphCache& cache;
    int face;
    double emWidth = 0.0;  ///< pixels
    double emHeight = 0.0; ///< pixels
    int ascent = 0;
    int descent = 0;
    int lineHeight = 1;
    std::array<Place, PlainCodes> plain;
    std::unordered_map<char32_t, Place> others;
};
