// All primitives, by chance: what lies outside the clip stays, and what lies inside is what the
// same call draws without a clip.

#include <limits>
#include <random>

#include "gui/drawing/MAlphaMask.h"
#include "tests/gui/drawing/Canvas.h"

namespace
{

constexpr int Width = 48;
constexpr int Height = 40;

/// What a primitive is called with.
struct Arguments
{
    int x1, y1, x2, y2;
    MColor colour;
    MColorOp op;
};

/// What they draw with.
struct Sources
{
    Sources() : bitmap(23, 17), mask(31, 29)
    {
        FillWithNoise(bitmap, 11);
        for (int i = 0; i < 31 * 29; i += 3)
            mask.Set(i % 31, i / 31, static_cast<std::uint8_t>(i));
    }

    MBitmap bitmap;
    MAlphaMask mask;
};

struct Primitive
{
    const char* what;
    bool isIndependent; ///< of the clip, inside it: lines and scaling begin where the clip does
    void (*draw)(MDrawer& to, const Sources& sources, const Arguments& a);
};

const Primitive Primitives[] = {
    {"PatBlt", true,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.PatBlt(a.x1, a.y1, a.x2, a.y2, &sources.bitmap, 1, 2, 9, 11, a.colour, a.op); }},
    {"BitBlt", true,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.BitBlt(a.x1, a.y1, a.x2, a.y2, &sources.bitmap, -3, 2, a.colour, a.op); }},
    {"MaskBlt", true,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.MaskBlt(a.x1, a.y1, a.x2, a.y2, &sources.mask, 2, -4, a.colour, a.op, true); }},
    {"StretchBlt", false,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.StretchBlt(a.x1, a.y1, a.x2, a.y2, &sources.bitmap, 0, 0, 22, 16, a.colour, a.op); }},
    {"StretchBltH", false,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.StretchBltH(a.x1, a.y1, a.x2, a.y2, &sources.bitmap, 0, 0, 22, 16, a.colour, a.op); }},
    {"StretchBltV", false,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.StretchBltV(a.x1, a.y1, a.x2, a.y2, &sources.bitmap, 0, 0, 22, 16, a.colour, a.op); }},
    {"AlignedBlt", false,
     [](MDrawer& to, const Sources& sources, const Arguments& a)
     { to.AlignedBlt(a.x1, a.y1, a.x2, a.y2, &sources.bitmap, 0, 0, 22, 16, 4, a.colour, a.op); }},
    {"LineTo", false,
     [](MDrawer& to, const Sources&, const Arguments& a)
     {
         to.MoveTo(a.x1, a.y1);
         to.LineTo(a.x2, a.y2, a.colour, a.op);
     }},
    {"LineToF", false,
     [](MDrawer& to, const Sources&, const Arguments& a)
     {
         to.MoveToF(a.x1 + 0.25, a.y1 - 0.125);
         to.LineToF(a.x2 * 1.125, a.y2 + 0.75, a.colour, a.op);
     }},
    {"Rectangle", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.Rectangle(a.x1, a.y1, a.x2, a.y2, a.colour, a.op); }},
    {"FillRectangle", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.FillRectangle(a.x1, a.y1, a.x2, a.y2, a.colour, a.op); }},
    {"FillRectangleGradient", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.FillRectangleGradient(a.x1, a.y1, a.x2, a.y2, a.colour, White, a.x1 & 1, a.op); }},
    {"RoundRectangle", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.RoundRectangle(a.x1, a.y1, a.x2, a.y2, 9, a.colour, a.op); }},
    {"FillRoundRectangle", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.FillRoundRectangle(a.x1, a.y1, a.x2, a.y2, 9, a.colour, a.op); }},
    {"Circle", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.Circle(a.x1, a.y1, a.x2, a.colour, a.op); }},
    {"FillCircle", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     { to.FillCircle(a.x1, a.y1, a.x2, a.colour, a.op); }},
    {"PolyLine", false,
     [](MDrawer& to, const Sources&, const Arguments& a)
     {
         const std::vector<MPoint> points{{a.x1, a.y1}, {a.x2, 15}, {a.x2, a.y2}};
         to.PolyLine(points, a.colour, a.op);
     }},
    {"FillPolygon", true,
     [](MDrawer& to, const Sources&, const Arguments& a)
     {
         const std::vector<MPoint> points{{a.x1, a.y1}, {a.x2, 5}, {7, a.y2}, {a.x2, a.y1}, {3, 9}};
         to.FillPolygon(points, a.colour, a.op);
     }},
    {"SetPixel", true,
     [](MDrawer& to, const Sources&, const Arguments& a) { to.SetPixel(a.x1, a.y1, a.colour); }},
};

class Chance
{
public:
    int Coordinate()
    {
        constexpr int Ends[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
                                -1, 0, 1'000'000'000};
        const auto choice = random();
        return choice % 12 < 5 && choice % 5 == 0 ? Ends[random() % 5]
                                                  : static_cast<int>(random() % 80) - 15;
    }
    Arguments Make(MColorOp op)
    {
        return {Coordinate(),
                Coordinate(),
                Coordinate(),
                Coordinate(),
                MColor(static_cast<std::uint32_t>(random())),
                op};
    }
    MRectangle Clip()
    {
        const auto x = static_cast<int>(random() % Width);
        const auto y = static_cast<int>(random() % Height);
        return {x, y, x + static_cast<int>(random() % 30), y + static_cast<int>(random() % 30)};
    }

private:
    std::mt19937 random{17};
};

TEST(Clipping, ChangesNothingOutsideAndDrawsTheSameInside)
{
    const Sources sources;
    Chance chance;
    MBitmap clipped(Width, Height);
    MBitmap whole(Width, Height);
    MBitmap untouched(Width, Height);
    FillWithNoise(untouched, 12);
    for (const Primitive& primitive : Primitives)
        for (const MColorOp op : AllOperations())
            for (int round = 0; round < 40; ++round)
            {
                const Arguments arguments = chance.Make(op);
                const MRectangle clip = chance.Clip();
                clipped.Assign(untouched);
                whole.Assign(untouched);
                clipped.SetClip(clip);
                MDrawerToMBitmap drawer(clipped);
                MDrawerToMBitmap wholeDrawer(whole);
                primitive.draw(drawer, sources, arguments);
                primitive.draw(wholeDrawer, sources, arguments);
                for (int y = 0; y < Height; ++y)
                    for (int x = 0; x < Width; ++x)
                    {
                        const bool isInside = clip.Contains(x, y);
                        if (isInside && !primitive.isIndependent)
                            continue;
                        ASSERT_EQ(clipped.GetColor(x, y),
                                  (isInside ? whole : untouched).GetColor(x, y))
                            << primitive.what << ", round " << round << " at " << x << ", " << y;
                    }
            }
}

TEST(Clipping, FrameOfADrawerMovesAllThatIsDrawn)
{
    const Sources sources;
    Chance chance;
    for (const Primitive& primitive : Primitives)
    {
        // The bitmap is as if its first pixels lay at (6, 9).
        MBitmap moved(Width, Height);
        MBitmap plain(Width, Height);
        MDrawerToMBitmap target(moved);
        MDrawer drawer(&target, -6, -9);
        MDrawerToMBitmap plainDrawer(plain);
        for (int round = 0; round < 8; ++round)
        {
            Arguments arguments = chance.Make(MColorOp::Add);
            arguments.x1 = 12 + round;
            arguments.y1 = 14;
            arguments.x2 = 30;
            arguments.y2 = 33 - round;
            moved.Create(Width, Height);
            plain.Create(Width, Height);
            // Far from all edges, so that no clip is in the way.
            primitive.draw(drawer, sources, arguments);
            primitive.draw(plainDrawer, sources, arguments);
            for (int y = 14; y < Height - 9; ++y)
                for (int x = 14; x < Width - 6; ++x)
                    ASSERT_EQ(moved.GetColor(x - 6, y - 9), plain.GetColor(x, y)) << primitive.what;
        }
    }
}

} // namespace
