#include "gui/drawing/MDrawer.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "foundation/threads/MGuard.h"

namespace
{

/// The sum, or the end of the numbers beyond which it lies.
int SaturatedSum(int a, int b) noexcept
{
    return static_cast<int>(std::clamp<std::int64_t>(
        std::int64_t{a} + b, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

int SaturatedDifference(int a, int b) noexcept
{
    return static_cast<int>(std::clamp<std::int64_t>(
        std::int64_t{a} - b, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

int MDrawer::ToTargetX(int x) const noexcept
{
    return SaturatedSum(x, xOffset);
}

int MDrawer::ToTargetY(int y) const noexcept
{
    return SaturatedSum(y, yOffset);
}

template <typename Draw>
void MDrawer::Forward(int x1, int y1, int x2, int y2, Draw draw) const noexcept
{
    if (target != nullptr)
        draw(*target, ToTargetX(x1), ToTargetY(y1), ToTargetX(x2), ToTargetY(y2));
}

template <typename Draw>
void MDrawer::Forward(std::span<const MPoint> points, Draw draw) const noexcept
{
    if (target == nullptr)
        return;
    MGuarded("MDrawer::Forward", 0,
             [&]
             {
                 std::vector<MPoint> moved(points.begin(), points.end());
                 for (MPoint& point : moved)
                     point = {ToTargetX(point.x), ToTargetY(point.y)};
                 draw(*target, std::span<const MPoint>(moved));
                 return 0;
             });
}

int MDrawer::GetWidth() const noexcept
{
    if (widthOverride != 0 || target == nullptr)
        return widthOverride;
    return SaturatedDifference(target->GetWidth(), xOffset);
}

int MDrawer::GetHeight() const noexcept
{
    if (heightOverride != 0 || target == nullptr)
        return heightOverride;
    return SaturatedDifference(target->GetHeight(), yOffset);
}

MRectangle MDrawer::GetClipRect() const noexcept
{
    if (target == nullptr)
        return {};
    const MRectangle clip = target->GetClipRect();
    return {SaturatedDifference(clip.left, xOffset), SaturatedDifference(clip.top, yOffset),
            SaturatedDifference(clip.right, xOffset), SaturatedDifference(clip.bottom, yOffset)};
}

void MDrawer::SetClipRect(const MRectangle& rectangle) noexcept
{
    Forward(rectangle.left, rectangle.top, rectangle.right, rectangle.bottom,
            [](MDrawer& to, int x1, int y1, int x2, int y2) {
                to.SetClipRect({x1, y1, x2, y2});
            });
}

void MDrawer::PatBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                     int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.PatBlt(rectangle..., source, sx1, sy1, sx2, sy2, colour, op); });
}

void MDrawer::BitBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx, int sy,
                     MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.BitBlt(rectangle..., source, sx, sy, colour, op); });
}

void MDrawer::MaskBlt(int x1, int y1, int x2, int y2, const MAlphaMask* mask, int mx, int my,
                      MColor colour, MColorOp op, bool invert) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.MaskBlt(rectangle..., mask, mx, my, colour, op, invert); });
}

void MDrawer::StretchBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                         int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.StretchBlt(rectangle..., source, sx1, sy1, sx2, sy2, colour, op); });
}

void MDrawer::StretchBltH(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                          int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.StretchBltH(rectangle..., source, sx1, sy1, sx2, sy2, colour, op); });
}

void MDrawer::StretchBltV(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                          int sx2, int sy2, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.StretchBltV(rectangle..., source, sx1, sy1, sx2, sy2, colour, op); });
}

void MDrawer::AlignedBlt(int x1, int y1, int x2, int y2, const MBitmap* source, int sx1, int sy1,
                         int sx2, int sy2, int flags, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.AlignedBlt(rectangle..., source, sx1, sy1, sx2, sy2, flags, colour, op); });
}

void MDrawer::AlignedTextOut(const MFont& font, int x1, int y1, int x2, int y2, const MString& text,
                             int flags, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.AlignedTextOut(font, rectangle..., text, flags, colour, op); });
}

void MDrawer::MoveTo(int x, int y) noexcept
{
    if (target != nullptr)
        target->MoveTo(ToTargetX(x), ToTargetY(y));
}

void MDrawer::LineTo(int x, int y, MColor colour, MColorOp op) noexcept
{
    if (target != nullptr)
        target->LineTo(ToTargetX(x), ToTargetY(y), colour, op);
}

void MDrawer::MoveToF(double x, double y) noexcept
{
    if (target != nullptr)
        target->MoveToF(x + xOffset, y + yOffset);
}

void MDrawer::LineToF(double x, double y, MColor colour, MColorOp op) noexcept
{
    if (target != nullptr)
        target->LineToF(x + xOffset, y + yOffset, colour, op);
}

void MDrawer::Rectangle(int x1, int y1, int x2, int y2, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle) { to.Rectangle(rectangle..., colour, op); });
}

void MDrawer::FillRectangle(int x1, int y1, int x2, int y2, MColor colour, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle) { to.FillRectangle(rectangle..., colour, op); });
}

void MDrawer::FillRectangleGradient(int x1, int y1, int x2, int y2, MColor colour1, MColor colour2,
                                    int direction, MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.FillRectangleGradient(rectangle..., colour1, colour2, direction, op); });
}

void MDrawer::RoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                             MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.RoundRectangle(rectangle..., radius, colour, op); });
}

void MDrawer::FillRoundRectangle(int x1, int y1, int x2, int y2, int radius, MColor colour,
                                 MColorOp op) noexcept
{
    Forward(x1, y1, x2, y2,
            [&](MDrawer& to, auto... rectangle)
            { to.FillRoundRectangle(rectangle..., radius, colour, op); });
}

void MDrawer::Circle(int x, int y, int radius, MColor colour, MColorOp op) noexcept
{
    if (target != nullptr)
        target->Circle(ToTargetX(x), ToTargetY(y), radius, colour, op);
}

void MDrawer::FillCircle(int x, int y, int radius, MColor colour, MColorOp op) noexcept
{
    if (target != nullptr)
        target->FillCircle(ToTargetX(x), ToTargetY(y), radius, colour, op);
}

void MDrawer::PolyLine(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept
{
    Forward(points, [&](MDrawer& to, auto moved) { to.PolyLine(moved, colour, op); });
}

void MDrawer::FillPolygon(std::span<const MPoint> points, MColor colour, MColorOp op) noexcept
{
    Forward(points, [&](MDrawer& to, auto moved) { to.FillPolygon(moved, colour, op); });
}

MColor MDrawer::GetPixel(int x, int y) const noexcept
{
    return target != nullptr ? target->GetPixel(ToTargetX(x), ToTargetY(y)) : MColor(0, 0, 0);
}

void MDrawer::SetPixel(int x, int y, MColor colour) noexcept
{
    if (target != nullptr)
        target->SetPixel(ToTargetX(x), ToTargetY(y), colour);
}
