#include "gui/text/MFontInstance.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "gui/text/CodePoints.h"
#include "gui/text/GlyphCache.h"

namespace
{

constexpr double BoldnessPerHeight = 1.0 / 24.0;

int Round(double pixels) noexcept
{
    return static_cast<int>(std::floor(pixels + 0.5));
}

std::uint64_t NextId() noexcept
{
    static std::uint64_t last = 0;
    return ++last;
}

} // namespace

MFontInstance::MFontInstance(const MFontDescription& description, FontCollection& fontCollection,
                             GlyphCache& glyphCache)
    : id(NextId()),
      wanted(description),
      collection(fontCollection),
      cache(glyphCache),
      face(collection.Match(wanted.face, {wanted.isBold, wanted.isItalic}))
{
    wanted.height = std::clamp(wanted.height, 1, MFontDescription::MaxSide);
    wanted.width = std::clamp(wanted.width, 0, MFontDescription::MaxSide);
    SetMetrics();
}

void MFontInstance::SetMetrics()
{
    ascent = wanted.height;
    lineHeight = wanted.height;
    const FontFace* const opened = face != FontCollection::NoFace ? collection.Open(face) : nullptr;
    if (opened == nullptr)
        return;
    const FontFace::Metrics units = opened->GetMetrics();
    const double height = wanted.height;
    const double cell = units.ascent + units.descent;
    ascent = Round(units.ascent * height / cell);
    descent = wanted.height - ascent;
    lineHeight = std::max(1, Round((cell + units.lineGap) * height / cell));
    emHeight = units.unitsPerEm * height / cell;
    emWidth = wanted.width > 0 ? units.unitsPerEm * wanted.width / cell : emHeight;
}

const Glyph* MFontInstance::GetGlyph(char32_t code)
{
    const Place& place = FindPlace(code);
    if (place.face == FontCollection::NoFace)
        return nullptr;
    const GlyphCache::Key key = {id, place.face, place.glyph};
    if (const Glyph* const known = cache.Find(key); known != nullptr)
        return known->mask.IsEmpty() ? nullptr : known;

    const FontFace* const opened = collection.Open(place.face);
    auto rendered = opened != nullptr ? opened->Render(place.glyph, GetLook(place.face)) : nullptr;
    // One without coverage, as that of a blank, is remembered, too.
    const Glyph* const added =
        cache.Add(key, rendered ? std::move(rendered) : std::make_unique<Glyph>());
    return added->mask.IsEmpty() ? nullptr : added;
}

const MFontInstance::Place& MFontInstance::FindPlace(char32_t code)
{
    if (code >= PlainCodes && others.size() >= MostOthers && !others.contains(code))
        others.clear();
    Place& place = code < PlainCodes ? plain[code] : others[code];
    if (place.advance == Unknown)
        place = MakePlace(code);
    return place;
}

MFontInstance::Place MFontInstance::MakePlace(char32_t code)
{
    if (code == U'\t')
        return {.advance = BlanksPerTab * GetAdvance(U' ')};
    const FontFace* const opened = face != FontCollection::NoFace ? collection.Open(face) : nullptr;
    if (IsControl(code) || opened == nullptr)
        return {.advance = 0};

    Place place = {.face = face, .glyph = opened->FindGlyph(code)};
    if (place.glyph == 0 && !IsSurrogate(code))
        if (const int other = collection.MatchCode(code, {wanted.isBold, wanted.isItalic});
            other != FontCollection::NoFace)
            if (const FontFace* const openedOther = collection.Open(other); openedOther != nullptr)
                place = {.face = other, .glyph = openedOther->FindGlyph(code)};
    place.advance = FindAdvance(place.face, place.glyph);
    return place;
}

int MFontInstance::FindAdvance(int placeFace, std::uint32_t glyph)
{
    const FontFace* const opened = collection.Open(placeFace);
    if (opened == nullptr)
        return 0;
    const double units = opened->GetAdvance(glyph);
    const double width = units * emWidth / opened->GetMetrics().unitsPerEm;
    return Round(width > 0.0 ? width + GetLook(placeFace).boldness : 0.0);
}

FontFace::Look MFontInstance::GetLook(int placeFace) const noexcept
{
    const FontFaceInfo& info = collection.GetInfo(placeFace);
    const bool lacksBold = wanted.isBold && info.weight < FontFaceInfo::SemiBoldWeight;
    return {.emWidth = emWidth,
            .emHeight = emHeight,
            .boldness = lacksBold ? wanted.height * BoldnessPerHeight : 0.0,
            .isSlanted = wanted.isItalic && !info.isItalic};
}
