#include "gui/text/FontFace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

#include <ft2build.h>

#include <freetype/freetype.h>
#include <freetype/ftadvanc.h>
#include <freetype/ftoutln.h>
#include <freetype/tttables.h>

#include "foundation/limits.h"
#include "foundation/streams/MMemoryStream.h"
#include "foundation/streams/MStdFileStream.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MGuard.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MLockGuard.h"

namespace
{

constexpr double SubPixels = 64.0; ///< of FreeType's lengths
constexpr FT_Fixed Slant = 0x10000 / 5;
constexpr FT_Int32 Loading = FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;

/// The library knows its faces, so opening and closing one needs the lock; using one does not.
class FreeType
{
public:
    static FreeType& Get()
    {
        static FreeType freeType;
        return freeType;
    }
    FreeType(const FreeType&) = delete;
    FreeType& operator=(const FreeType&) = delete;
    ~FreeType() { FT_Done_FreeType(library); }

    FT_Face Open(const FT_Open_Args& source, int index)
    {
        const MLockGuard guard(lock);
        FT_Face face = nullptr;
        return library != nullptr && FT_Open_Face(library, &source, index, &face) == 0 ? face
                                                                                       : nullptr;
    }
    void Close(FT_Face face)
    {
        const MLockGuard guard(lock);
        FT_Done_Face(face);
    }

private:
    FreeType() { FT_Init_FreeType(&library); } // null if it fails

    MLock lock;
    FT_Library library = nullptr;
};

/// For FreeType's stream: reads at @p offset, or only looks whether that can be if @p count is 0.
unsigned long ReadAt(FT_Stream record, unsigned long offset, unsigned char* buffer,
                     unsigned long count)
{
    if (count == 0)
        return offset > record->size ? 1 : 0;
    return MGuarded("FontFace::ReadAt", 0UL,
                    [&]() -> unsigned long
                    {
                        auto& stream = *static_cast<MStream*>(record->descriptor.pointer);
                        stream.Seek(static_cast<std::int64_t>(offset), MStream::FromStart);
                        return static_cast<unsigned long>(
                            stream.Read(std::as_writable_bytes(std::span(buffer, count))));
                    });
}

/// A cell far from an em high is a mistake, and would make glyphs of any size.
bool HasSensibleMetrics(FT_Face face) noexcept
{
    constexpr int MostEms = 16;
    const int units = face->units_per_EM;
    const int cell = face->ascender - face->descender;
    return FT_IS_SCALABLE(face) && units > 0 && cell > units / MostEms && cell < units * MostEms;
}

int FindWeight(FT_Face face) noexcept
{
    const auto* table = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (table != nullptr && table->usWeightClass >= 1 &&
        table->usWeightClass <= FontFaceInfo::MaxWeight)
        return table->usWeightClass;
    return (face->style_flags & FT_STYLE_FLAG_BOLD) != 0 ? FontFaceInfo::BoldWeight
                                                         : FontFaceInfo::RegularWeight;
}

std::bitset<FontFaceInfo::PageCount> FindPages(FT_Face face)
{
    std::bitset<FontFaceInfo::PageCount> pages;
    FT_UInt glyph = 0;
    // The next code behind a page is on the next page that has any.
    for (FT_ULong code = FT_Get_First_Char(face, &glyph); glyph != 0;)
    {
        const FT_ULong page = code / FontFaceInfo::PageSize;
        if (page >= FontFaceInfo::PageCount)
            break;
        pages.set(page);
        const FT_ULong last = (page + 1) * FontFaceInfo::PageSize - 1;
        code = FT_Get_Next_Char(face, last, &glyph);
        if (code <= last)
            break;
    }
    return pages;
}

} // namespace

/// What FreeType reads from, and the face that it makes of it.
struct FontFaceFile
{
    FontFaceFile() = default;
    FontFaceFile(const FontFaceFile&) = delete;
    FontFaceFile& operator=(const FontFaceFile&) = delete;
    ~FontFaceFile()
    {
        if (face != nullptr)
            FreeType::Get().Close(face);
    }

    MMemoryStream bytes;                  ///< empty if it is a file
    std::unique_ptr<MStdFileStream> file; ///< null if it is in memory
    FT_StreamRec record{};                ///< for a file
    FT_Face face = nullptr;
};

FontFace::FontFace(std::unique_ptr<FontFaceFile> openFile) noexcept : file(std::move(openFile)) {}

FontFace::~FontFace() = default;

std::unique_ptr<FontFace> FontFace::Open(const MMemoryStream& bytes, int index, int& faceCount)
{
    auto file = std::make_unique<FontFaceFile>();
    file->bytes = bytes;
    return Open(std::move(file), index, faceCount);
}

std::unique_ptr<FontFace> FontFace::Open(const MString& fileName, int index, int& faceCount)
{
    faceCount = 0;
    auto file = std::make_unique<FontFaceFile>();
    const std::int64_t size = MGuarded("FontFace::Open", std::int64_t{0},
                                       [&]
                                       {
                                           file->file = std::make_unique<MStdFileStream>(
                                               fileName, MStdFileStream::Opening::Existing);
                                           return file->file->GetSize();
                                       });
    if (size < 1 || size > limits::FontFileBytes)
        return nullptr;
    file->record.size = static_cast<unsigned long>(size);
    file->record.descriptor.pointer = static_cast<MStream*>(file->file.get());
    file->record.read = &ReadAt;
    return Open(std::move(file), index, faceCount);
}

std::unique_ptr<FontFace> FontFace::Open(std::unique_ptr<FontFaceFile> file, int index,
                                         int& faceCount)
{
    FT_Open_Args source{};
    if (file->file)
    {
        source.flags = FT_OPEN_STREAM;
        source.stream = &file->record;
    }
    else
    {
        const std::span<const std::byte> bytes = file->bytes.GetData();
        source.flags = FT_OPEN_MEMORY;
        source.memory_base = reinterpret_cast<const FT_Byte*>(bytes.data());
        source.memory_size = static_cast<FT_Long>(bytes.size());
    }
    file->face = FreeType::Get().Open(source, index);
    faceCount = file->face != nullptr ? static_cast<int>(file->face->num_faces) : 0;
    if (file->face == nullptr || !HasSensibleMetrics(file->face))
        return nullptr;
    // Where a font has no table of Unicode, FreeType has chosen none, and no code is found.
    return std::unique_ptr<FontFace>(new FontFace(std::move(file)));
}

FontFaceInfo FontFace::Describe() const
{
    auto* const face = file->face;
    const auto text = [](const char* name)
    { return MString::FromUTF8(name != nullptr ? name : ""); };
    FontFaceInfo info;
    info.family = text(face->family_name);
    info.style = text(face->style_name);
    info.weight = FindWeight(face);
    info.isItalic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    info.isFixedWidth = FT_IS_FIXED_WIDTH(face);
    info.pages = FindPages(face);
    return info;
}

FontFace::Metrics FontFace::GetMetrics() const noexcept
{
    auto* const face = file->face;
    const int cell = face->ascender - face->descender;
    return {.ascent = face->ascender,
            .descent = -face->descender,
            .lineGap = std::max(0, face->height - cell),
            .unitsPerEm = face->units_per_EM};
}

std::uint32_t FontFace::FindGlyph(char32_t code) const noexcept
{
    return FT_Get_Char_Index(file->face, code);
}

int FontFace::GetAdvance(std::uint32_t glyph) const noexcept
{
    FT_Fixed advance = 0;
    if (FT_Get_Advance(file->face, glyph, FT_LOAD_NO_SCALE, &advance) != 0)
        return 0;
    return static_cast<int>(std::clamp<FT_Fixed>(advance, 0, UINT16_MAX));
}

std::unique_ptr<Glyph> FontFace::Render(std::uint32_t glyph, const Look& look) const
{
    auto* const face = file->face;
    const auto subPixels = [](double pixels) { return std::lround(pixels * SubPixels); };
    if (FT_Set_Char_Size(face, subPixels(look.emWidth), subPixels(look.emHeight), 0, 0) != 0 ||
        FT_Load_Glyph(face, glyph, Loading) != 0 || face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return nullptr;

    FT_Outline& outline = face->glyph->outline;
    if (look.boldness > 0.0)
        FT_Outline_Embolden(&outline, subPixels(look.boldness));
    if (look.isSlanted)
    {
        const FT_Matrix matrix = {.xx = 0x10000, .xy = Slant, .yx = 0, .yy = 0x10000};
        FT_Outline_Transform(&outline, &matrix);
    }
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    const auto isSane = [](FT_Pos low, FT_Pos high)
    {
        constexpr FT_Pos MaxSide =
            FT_Pos{MaxGlyphSide - 1} * 64; // and a part of a pixel on each side
        return high > low && low > -MaxSide && high < MaxSide && high - low < MaxSide;
    };
    if (!isSane(box.xMin, box.xMax) || !isSane(box.yMin, box.yMax) ||
        FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) != 0)
        return nullptr;

    const FT_Bitmap& bitmap = face->glyph->bitmap;
    if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY || bitmap.width == 0 || bitmap.rows == 0)
        return nullptr;
    auto rendered = std::make_unique<Glyph>();
    rendered->mask.Assign(bitmap.buffer, bitmap.pitch, static_cast<int>(bitmap.width),
                          static_cast<int>(bitmap.rows));
    rendered->left = face->glyph->bitmap_left;
    rendered->top = face->glyph->bitmap_top;
    return rendered;
}
