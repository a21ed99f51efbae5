// Opens strangers' fonts, describes them and draws some of their glyphs.

#include <cstdlib>
#include <span>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "gui/text/FontFace.h"

namespace
{

void Use(const FontFace& face)
{
    const FontFaceInfo info = face.Describe();
    const FontFace::Metrics metrics = face.GetMetrics();
    if (info.weight < 1 || info.weight > FontFaceInfo::MaxWeight || metrics.unitsPerEm < 1 ||
        metrics.ascent + metrics.descent < 1 || metrics.lineGap < 0)
        std::abort();
    for (char32_t code = U' '; code < U'\x80'; ++code)
    {
        const std::uint32_t glyph = face.FindGlyph(code);
        if (face.GetAdvance(glyph) < 0 || (glyph != 0 && !info.MayHave(code)))
            std::abort();
    }
    constexpr FontFace::Look Looks[] = {{20.0, 20.0, 0.0, false}, {300.0, 5.0, 2.0, true}};
    for (const FontFace::Look& look : Looks)
        for (std::uint32_t glyph = 0; glyph < 8; ++glyph)
            if (const auto rendered = face.Render(glyph, look);
                rendered &&
                (rendered->mask.IsEmpty() || rendered->mask.GetWidth() > FontFace::MaxGlyphSide ||
                 rendered->mask.GetHeight() > FontFace::MaxGlyphSide))
                std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr int MaxFaces = 4; // the others are no different
    const MMemoryStream bytes = MMemoryStream::Refer(std::as_bytes(std::span(data, size)));
    int count = 1;
    for (int i = 0; i < count && i < MaxFaces; ++i)
    {
        int faceCount = 0;
        const auto face = FontFace::Open(bytes, i, faceCount);
        if (i == 0)
            count = faceCount;
        if (face)
            Use(*face);
    }
    return 0;
}
