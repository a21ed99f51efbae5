#pragma once

#include <cstdint>
#include <span>

#include "gui/drawing/MColor.h"
#include "gui/drawing/MColorOp.h"
#include "gui/drawing/MRectangle.h"

class MAlphaMask;
class MBitmap;
class MFont;
class MString;

struct MPoint
{
    std::int32_t x = 0;
    std::int32_t y = 0;

    constexpr bool operator==(const MPoint&) const noexcept = default;
};

/// How MDrawer::AlignedBlt places an image; flags to be added.
namespace alignedblt
{
constexpr int Left = 1;
constexpr int Right = 2;
constexpr int FullWidth = 4; ///< goes before Left and Right
constexpr int Top = 8;
constexpr int Bottom = 16;
constexpr int FullHeight = 32; ///< goes before Top and Bottom
} // namespace alignedblt

/// How MDrawer::AlignedTextOut places a text, at the left and the top unless told; flags to be
/// added.
namespace alignedtext
{
constexpr int Right = 1;
constexpr int Center = 2; ///< from left to right
constexpr int Bottom = 4;
constexpr int VCenter = 8;
constexpr int SingleLine = 16; ///< does not break lines, nor does a line feed
} // namespace alignedtext

/// What everything that can be seen is painted with. One of this class draws on another with an
/// offset, which is how a control gets coordinates of its own.
///
/// Rectangles x1, y1, x2, y2 and sx1, sy1, sx2, sy2 (of a source) have both corners included; an
/// inverted one, a null or empty source, and an operation that is none draw nothing, and no
/// coordinates are too large. Nothing outside the clip rectangle changes. Nothing throws. A source
/// bitmap of either form must not be the target. Pixels are combined as ColorOperations.h tells;
/// of the colour of blits only the alpha counts, but for MaskBlt. GUI thread.
class MDrawer
{
public:
    /// Draws on @p drawTarget, which has to live as long, or on nothing for null. A width or height
    /// of 0 is what the target has beyond the offset.
    explicit MDrawer(MDrawer* drawTarget, int x = 0, int y = 0, int ownWidth = 0,
                     int ownHeight = 0) noexcept
        : target(drawTarget),
          xOffset(x),
          yOffset(y),
          widthOverride(ownWidth),
          heightOverride(ownHeight)
    {
    }
    MDrawer(const MDrawer&) = delete;
    MDrawer& operator=(const MDrawer&) = delete;
    virtual ~MDrawer() = default;

    virtual int GetWidth() const noexcept;
    virtual int GetHeight() const noexcept;

    virtual MRectangle GetClipRect() const noexcept;
    virtual void SetClipRect(const MRectangle& rectangle) noexcept;

    /// Tiles the part of the source, of which what lies outside the bitmap does not count; tiles
    /// begin at x1, y1 whatever the clip.
    virtual void PatBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                        int sx2, int sy2, MColor colour, MColorOp op) noexcept;
    virtual void BitBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx, int sy,
                        MColor colour, MColorOp op) noexcept;
    /// Paints the colour by the coverage, or by what it leaves of 255 if @p invert is set; of a
    /// mask with spans only those, in either case.
    virtual void MaskBlt(int x1, int y1, int x2, int y2, const MAlphaMask* mask, int mx, int my,
                         MColor colour, MColorOp op, bool invert = false) noexcept;
    /// Bilinear, corners to corners; shrinking does not average.
    virtual void StretchBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                            int sx2, int sy2, MColor colour, MColorOp op) noexcept;
    /// Scales along x and repeats along y.
    virtual void StretchBltH(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                             int sy1, int sx2, int sy2, MColor colour, MColorOp op) noexcept;
    /// Scales along y and repeats along x.
    virtual void StretchBltV(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1,
                             int sy1, int sx2, int sy2, MColor colour, MColorOp op) noexcept;
    /// Places the part of the source, made smaller to fit but never larger, in the rectangle;
    /// @p flags of alignedblt, without which it stands in the middle.
    virtual void AlignedBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                            int sx2, int sy2, int flags, MColor colour, MColorOp op) noexcept;

    /// Text in lines that fit the width, @p flags of alignedtext; it may stick out of the rectangle
    /// where it does not fit. AlignedText.h tells more.
    virtual void AlignedTextOut(const MFont& font, int x1, int y1, int x2, int y2,
                                const MString& text, int flags, MColor colour,
                                MColorOp op) noexcept;

    virtual void MoveTo(int x, int y) noexcept;
    /// Antialiased, from the pen to the point, where the pen then stands; nothing if it is there.
    virtual void LineTo(int x, int y, MColor colour, MColorOp op) noexcept;
    /// Moves a pen of its own.
    virtual void MoveToF(double x, double y) noexcept;
    /// Between any two places, pixel (0, 0) lying at 0.0. Numbers that are not finite are ignored.
    virtual void LineToF(double x, double y, MColor colour, MColorOp op) noexcept;

    virtual void Rectangle(int x1, int y1, int x2, int y2, MColor colour, MColorOp op) noexcept;
    virtual void FillRectangle(int x1, int y1, int x2, int y2, MColor colour, MColorOp op) noexcept;
    /// Along x for direction 1, along y for any other.
    virtual void FillRectangleGradient(int x1, int y1, int x2, int y2, MColor colour1,
                                       MColor colour2, int direction, MColorOp op) noexcept;
    /// A radius beyond half the smaller side is cut to it, one below 0 is 0.
    virtual void RoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                                MColorOp op) noexcept;
    virtual void FillRoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                                    MColorOp op) noexcept;
    /// A radius below 0 draws nothing.
    virtual void Circle(int x, int y, int radius, MColor colour, MColorOp op) noexcept;
    virtual void FillCircle(int x, int y, int radius, MColor colour, MColorOp op) noexcept;
    /// Lines from the first to the second point and so on; moves the pen.
    virtual void PolyLine(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept;
    /// The inside of the outline, edges included; not antialiased. PolygonScanner.h tells what is
    /// inside.
    virtual void FillPolygon(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept;

    /// What is stored, or opaque black outside the clip.
    virtual MColor GetPixel(int x, int y) const noexcept;
    /// Stores the colour as it is.
    virtual void SetPixel(int x, int y, MColor colour) noexcept;

    void SetOffset(int x, int y) noexcept
    {
        xOffset = x;
        yOffset = y;
    }

private:
    /// In the frame of the target; stays at the ends of the numbers.
    int ToTargetX(int x) const noexcept;
    int ToTargetY(int y) const noexcept;
    /// Calls @p draw with the target and the rectangle in its frame.
    template <typename Draw>
    void Forward(int x1, int y1, int x2, int y2, Draw draw) const noexcept;
    template <typename Draw>
    void Forward(std::span<const MPoint> points, Draw draw) const noexcept;

    MDrawer* target;
    int xOffset;
    int yOffset;
    int widthOverride;
    int heightOverride;
};
