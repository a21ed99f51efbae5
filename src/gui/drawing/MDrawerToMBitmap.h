#pragma once

#include <cstdint>

#include "gui/drawing/MDrawer.h"

/// Draws into the pixels of a true-colour bitmap; on a paletted one it changes nothing. Clip and
/// pens are those of the bitmap.
///
/// Should an operation fail nevertheless, for want of memory, it is reported to the trace function
/// under its name and what it had not drawn is missing: no drawing takes a host down. Most
/// operations allocate nothing; FillPolygon, the stretching ones and those on a paletted source do.
class MDrawerToMBitmap : public MDrawer
{
public:
    /// @p drawTarget has to live as long; it may be emptied or resized between calls.
    explicit MDrawerToMBitmap(MBitmap& drawTarget) noexcept : MDrawer(nullptr), bitmap(drawTarget)
    {
    }

    int GetWidth() const noexcept override;
    int GetHeight() const noexcept override;

    MRectangle GetClipRect() const noexcept override;
    void SetClipRect(const MRectangle& rectangle) noexcept override;

    void PatBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1, int sx2,
                int sy2, MColor colour, MColorOp op) noexcept override;
    void BitBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx, int sy,
                MColor colour, MColorOp op) noexcept override;
    void MaskBlt(int x1, int y1, int x2, int y2, const MAlphaMask* mask, int mx, int my,
                 MColor colour, MColorOp op, bool invert = false) noexcept override;
    void StretchBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                    int sx2, int sy2, MColor colour, MColorOp op) noexcept override;
    void StretchBltH(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                     int sx2, int sy2, MColor colour, MColorOp op) noexcept override;
    void StretchBltV(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                     int sx2, int sy2, MColor colour, MColorOp op) noexcept override;
    void AlignedBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                    int sx2, int sy2, int flags, MColor colour, MColorOp op) noexcept override;

    void AlignedTextOut(const MFont& font, int x1, int y1, int x2, int y2, const MString& text,
                        int flags, MColor colour, MColorOp op) noexcept override;

    void MoveTo(int x, int y) noexcept override;
    void LineTo(int x, int y, MColor colour, MColorOp op) noexcept override;
    void MoveToF(double x, double y) noexcept override;
    void LineToF(double x, double y, MColor colour, MColorOp op) noexcept override;

    void Rectangle(int x1, int y1, int x2, int y2, MColor colour, MColorOp op) noexcept override;
    /// Stores an opaque colour instead of blending it, so that a background gets just this colour.
    void FillRectangle(int x1, int y1, int x2, int y2, MColor colour,
                       MColorOp op) noexcept override;
    void FillRectangleGradient(int x1, int y1, int x2, int y2, MColor colour1, MColor colour2,
                               int direction, MColorOp op) noexcept override;
    void RoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                        MColorOp op) noexcept override;
    void FillRoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                            MColorOp op) noexcept override;
    void Circle(int x, int y, int radius, MColor colour, MColorOp op) noexcept override;
    void FillCircle(int x, int y, int radius, MColor colour, MColorOp op) noexcept override;
    void PolyLine(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept override;
    void FillPolygon(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept override;

    MColor GetPixel(int x, int y) const noexcept override;
    void SetPixel(int x, int y, MColor colour) noexcept override;

    MBitmap& GetTarget() noexcept { return bitmap; }

    /// Of the shadow below texts, 0 for none to 255 for one as opaque as the text.
    void SetTextShadow(std::uint8_t strength) noexcept { textShadow = strength; }

private:
    MBitmap& bitmap;
    std::uint8_t textShadow = 0;
};
