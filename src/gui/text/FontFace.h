#pragma once

#include <cstdint>
#include <memory>

#include "foundation/strings/MString.h"
#include "gui/text/FontFaceInfo.h"
#include "gui/text/Glyph.h"

class MMemoryStream;
struct FontFaceFile;

/// One face of a font file, open. The file stays open with it and is read as far as needed.
/// Faces may be opened and closed on any thread, each is used by one thread at a time.
class FontFace
{
public:
    /// Height of the ascenders, depth of the descenders (positive) and gap between lines, in units
    /// of which unitsPerEm make an em.
    struct Metrics
    {
        int ascent;
        int descent;
        int lineGap;
        int unitsPerEm;
    };
    /// How glyphs are drawn.
    struct Look
    {
        double emWidth;  ///< pixels
        double emHeight; ///< pixels
        double boldness; ///< pixels by which glyphs are wider and higher; 0 for as they are
        bool isSlanted;
    };

    /// The face @p index of @p bytes, or of a file. Null if the font is none, has no outlines or no
    /// sensible metrics, or is longer than limits::FontFileBytes; @p faceCount then still tells how
    /// many faces the file has, 0 if none.
    static std::unique_ptr<FontFace> Open(const MMemoryStream& bytes, int index, int& faceCount);
    static std::unique_ptr<FontFace> Open(const MString& fileName, int index, int& faceCount);

    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    ~FontFace();

    /// All but file, index and isPacked.
    FontFaceInfo Describe() const;
    Metrics GetMetrics() const noexcept;
    /// 0 if the face lacks it.
    std::uint32_t FindGlyph(char32_t code) const noexcept;
    /// In units; 0 for a glyph that cannot be read.
    int GetAdvance(std::uint32_t glyph) const noexcept;
    /// Null if there is nothing to see, and for what cannot be drawn or is larger than
    /// MaxGlyphSide.
    std::unique_ptr<Glyph> Render(std::uint32_t glyph, const Look& look) const;

    static constexpr int MaxGlyphSide = 4096; ///< pixels

private:
    explicit FontFace(std::unique_ptr<FontFaceFile> openFile) noexcept;
    static std::unique_ptr<FontFace> Open(std::unique_ptr<FontFaceFile> file, int index,
                                          int& faceCount);

    std::unique_ptr<FontFaceFile> file;
};
