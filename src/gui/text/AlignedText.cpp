#include "gui/text/AlignedText.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "gui/drawing/MDrawer.h"
#include "gui/text/CodePoints.h"
#include "gui/text/MFont.h"
#include "gui/text/TextLines.h"

namespace
{

constexpr int MostHeightWithoutShadow = 10; ///< pixels

/// Where @p size pixels start between @p from and @p to; the odd pixel lies behind them.
std::int64_t Aligned(int from, int to, std::int64_t size, bool isAtEnd, bool isCentred) noexcept
{
    const std::int64_t room = std::int64_t{to} - from + 1 - size;
    if (isAtEnd)
        return from + room;
    return isCentred ? from + (room >> 1) : from; // rounds down, also below 0
}

/// Paints one line after the other in one colour.
class LinePainter
{
public:
    LinePainter(MDrawer& targetDrawer, const AlignedText& paintedText, MColor textColour)
        : drawer(targetDrawer),
          aligned(paintedText),
          colour(textColour),
          clip(targetDrawer.GetClipRect()),
          instance(paintedText.font.GetInstance())
    {
    }
    LinePainter(const LinePainter&) = delete;
    LinePainter& operator=(const LinePainter&) = delete;

    void Paint(const TextLine& line, std::int64_t x, std::int64_t baseline)
    {
        const int space = aligned.font.GetSpace();
        for (int i = line.first; i < line.first + line.count;)
        {
            const char32_t code = ReadCodePoint(aligned.text, i);
            if (const Glyph* const glyph = instance->GetGlyph(code); glyph != nullptr)
                Paint(*glyph, x + glyph->left, baseline - glyph->top);
            x += instance->GetAdvance(code);
            x += code == U'\t' ? BlanksPerTab * space : IsControl(code) ? 0 : space;
        }
    }

private:
    void Paint(const Glyph& glyph, std::int64_t left, std::int64_t top)
    {
        const std::int64_t right = left + glyph.mask.GetWidth() - 1;
        const std::int64_t bottom = top + glyph.mask.GetHeight() - 1;
        // What lies outside may also have coordinates that are too large.
        if (left > clip.right || right < clip.left || top > clip.bottom || bottom < clip.top)
            return;
        drawer.MaskBlt(static_cast<int>(left), static_cast<int>(top), static_cast<int>(right),
                       static_cast<int>(bottom), &glyph.mask, 0, 0, colour, aligned.op);
    }

    MDrawer& drawer;
    const AlignedText& aligned;
    MColor colour;
    MRectangle clip;
    std::shared_ptr<MFontInstance> instance; ///< also if the font finds a better one meanwhile
};

void PaintLines(MDrawer& drawer, const AlignedText& aligned, const std::vector<TextLine>& lines,
                MColor colour, int offset)
{
    using namespace alignedtext;
    constexpr std::int64_t CellsAround = 2; ///< that glyphs may stick out
    const MRectangle& box = aligned.rectangle;
    const auto has = [&](int flag) { return (aligned.flags & flag) != 0; };
    const std::int64_t lineHeight = aligned.font.GetHeight();
    const std::int64_t around =
        CellsAround * (aligned.font.GetAscent() + aligned.font.GetDescent());
    const MRectangle clip = drawer.GetClipRect();

    LinePainter painter(drawer, aligned, colour);
    const auto count = static_cast<std::int64_t>(lines.size());
    std::int64_t baseline =
        Aligned(box.top, box.bottom, count * lineHeight, has(Bottom), has(VCenter)) +
        aligned.font.GetAscent() + offset;
    for (const TextLine& line : lines)
    {
        if (baseline + around >= clip.top && baseline - around <= clip.bottom)
            painter.Paint(
                line, Aligned(box.left, box.right, line.width, has(Right), has(Center)) + offset,
                baseline);
        baseline += lineHeight;
    }
}

} // namespace

void AlignedText::Draw(MDrawer& drawer, MColor colour, std::uint8_t shadowStrength) const
{
    if (rectangle.IsEmpty() || op == MColorOp::None)
        return;
    const std::int64_t width = std::int64_t{rectangle.right} - rectangle.left + 1;
    const std::vector<TextLine> lines =
        BreakLines(font, text, static_cast<int>(std::min<std::int64_t>(width, INT32_MAX)),
                   (flags & alignedtext::SingleLine) != 0);
    const int shadowAlpha = ((colour.GetAlpha() + 1) * shadowStrength) >> 8;
    if (font.GetDescription().height > MostHeightWithoutShadow && shadowAlpha > 0)
    {
        const MColor shadow(255 - colour.GetRed(), 255 - colour.GetGreen(), 255 - colour.GetBlue(),
                            shadowAlpha);
        PaintLines(drawer, *this, lines, shadow, 1);
    }
    PaintLines(drawer, *this, lines, colour, 0);
}
