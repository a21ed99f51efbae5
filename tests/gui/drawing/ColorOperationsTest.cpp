#include "gui/drawing/ColorOperations.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "gui/drawing/MPixelPainter.h"
#include "tests/gui/drawing/Canvas.h"

namespace
{

constexpr int Levels[] = {0, 1, 2, 63, 64, 126, 127, 128, 129, 200, 254, 255};

/// One channel on its own, written out: @p d and @p s may be 0 to 255, @p a as well.
int Expected(MColorOp op, int d, int s, int a)
{
    const auto blend = [=](int x) { return (x * a + d * (255 - a)) / 256; };
    const int shared = (s + 1) * a / 256;
    const int sharedRest = (256 - s) * a / 256;
    switch (op)
    {
    case MColorOp::Alphablend:
    case MColorOp::Overlay: // on a pixel that is not transparent
        return blend(s);
    case MColorOp::Modulate:
        return blend((d + 1) * s / 256);
    case MColorOp::Copy:
        return s;
    case MColorOp::Invert:
        return blend(255 - d);
    case MColorOp::Add:
        return std::min(255, d + shared);
    case MColorOp::Subtract:
        return std::max(0, d - shared);
    case MColorOp::Difference:
        return blend(std::max(0, s - d));
    case MColorOp::IncContrast:
        return blend(std::clamp(127 + (4335 - 16 * s) * (d - 127) / 255, 0, 255));
    case MColorOp::DecContrast:
        return blend(std::clamp(127 + s * (d - 127) / 255, 0, 255));
    case MColorOp::LightenByContrast:
        return shared < 255 ? std::min(255, d * 255 / (255 - shared)) : 255;
    case MColorOp::DarkenByContrast:
        return sharedRest < 255 ? std::max(0, (d - sharedRest) * 255 / (255 - sharedRest)) : 0;
    case MColorOp::AddAndOverflow:
        return (d + s) % 256;
    default:
        return -1; // mixes the channels
    }
}

MColor Painted(MColorOp op, MColor colour, MColor on, int coverage)
{
    WithPainter(op, colour, [&](const auto& painter) { painter.Cover(on, coverage); });
    return on;
}

TEST(ColorOperations, ChangeEachChannelAsTheFormulaTells)
{
    for (const MColorOp op : AllOperations())
        for (const int a : {0, 1, 100, 254, 255})
            for (int d = 0; d < 256; ++d)
                for (const int s : Levels)
                {
                    // Three channels at once, which would show if they were confused.
                    const int d2 = 255 - d;
                    const int s2 = 255 - s;
                    const MColor painted =
                        Painted(op, MColor(s, s2, s, a), MColor(d, d, d2, 77), 255);
                    if (Expected(op, d, s, a) < 0)
                        continue;
                    const int alpha = op == MColorOp::Copy      ? a
                                      : op == MColorOp::Overlay ? std::min(255, 77 + a)
                                                                : 77;
                    ASSERT_EQ(painted, MColor(Expected(op, d, s, a), Expected(op, d, s2, a),
                                              Expected(op, d2, s, a), alpha))
                        << NameOf(op).ToUTF8() << " of " << s << " on " << d << " by " << a;
                }
}

TEST(ColorOperations, BlitAndRowsAgreeWithSinglePixels)
{
    constexpr int Count = 37;
    MBitmap source(Count, 1);
    MBitmap target(Count, 1);
    FillWithNoise(source, 1);
    for (const MColorOp op : AllOperations())
        for (const int level : {0, 3, 128, 255})
        {
            const MColor colour(10, 130, 250, level);
            WithPainter(op, colour,
                        [&](const auto& painter)
                        {
                            FillWithNoise(target, 2);
                            const std::vector<MColor> old = PixelsOf(target);
                            painter.CoverRow(target.GetRow(0), Count, 201);
                            for (int i = 0; i < Count; ++i)
                            {
                                const int a = (level + 1) * 201 / 256;
                                EXPECT_EQ(target.GetColor(i, 0), Painted(op, colour.WithAlpha(a),
                                                                         old[std::size_t(i)], 255))
                                    << NameOf(op).ToUTF8();
                            }
                            FillWithNoise(target, 2);
                            painter.BlitRow(target.GetRow(0), source.GetRow(0), Count);
                            for (int i = 0; i < Count; ++i)
                            {
                                const MColor from = source.GetColor(i, 0);
                                const int a = (from.GetAlpha() + 1) * level / 256;
                                EXPECT_EQ(target.GetColor(i, 0),
                                          Painted(op, from.WithAlpha(a), old[std::size_t(i)], 255))
                                    << NameOf(op).ToUTF8();
                            }
                        });
        }
}

struct ColourCase
{
    const char* what;
    MColorOp op;
    MColor source;
    MColor target;
    MColor expected;
};

constexpr ColourCase Cases[] = {
    {"a full blend loses a step", MColorOp::Alphablend, MColor(9, 255, 0), Black,
     MColor(8, 254, 0)},
    {"white on white", MColorOp::Difference, White, White, Black},
    {"black on white", MColorOp::Difference, Black, White, Black},
    {"most contrast", MColorOp::IncContrast, Black, MColor(128, 120, 127), MColor(143, 7, 126)},
    {"into what is transparent", MColorOp::Overlay, MColor(9, 8, 7, 99), MColor(50, 60, 70, 0),
     MColor(9, 8, 7, 99)},
    {"brightness of 100 added to 100", MColorOp::Lighten, MColor(50, 99, 0), MColor(100, 60, 10, 7),
     MColor(199, 119, 19, 7)},
    {"black has no proportion", MColorOp::Lighten, MColor(50, 99, 0), Black, MColor(99, 99, 99)},
    {"brightness of 156 taken from 200", MColorOp::Darken, MColor(50, 100, 0), MColor(200, 100, 20),
     MColor(45, 22, 4)},
    {"a blue hue", MColorOp::Color, MColor(0, 0, 255), MColor(200, 100, 50), MColor(49, 50, 199)},
    {"grey has no hue", MColorOp::Color, MColor(0, 0, 255), MColor(90, 90, 90), MColor(89, 89, 89)},
};

TEST(ColorOperations, GiveWhatIsWorkedByHand)
{
    for (const ColourCase& row : Cases)
        EXPECT_EQ(Painted(row.op, row.source, row.target, 255), row.expected) << row.what;
}

TEST(ColorOperations, ColorKeepsBrightnessAndReachesTheHue)
{
    // A step of hue moves a channel by 6, two thirds of the circle come out 4 short as a byte, and
    // the saturation and the blend lose 1 each.
    for (int red = 0; red < 256; red += 15)
        for (int green = 0; green < 256; green += 15)
            for (int blue = 0; blue < 256; blue += 15)
            {
                const MColor colour(red, green, blue);
                const MPixel same = Painted(MColorOp::Color, colour, colour, 255).GetPixel();
                EXPECT_NEAR(same.red, red, 12);
                EXPECT_NEAR(same.green, green, 12);
                EXPECT_NEAR(same.blue, blue, 12);
                const MPixel turned =
                    Painted(MColorOp::Color, MColor(3, 2, 1), colour, 255).GetPixel();
                EXPECT_GE(turned.red + 1, std::max(turned.green, turned.blue)); // orange
                EXPECT_NEAR(std::max({turned.red, turned.green, turned.blue}),
                            std::max({red, green, blue}), 1);
            }
}

TEST(ColorOperations, NoneAndUnknownOnesDrawNothing)
{
    for (const int op : {0, 17, -1, 1000})
        EXPECT_EQ(Painted(static_cast<MColorOp>(op), White, MColor(1, 2, 3), 255), MColor(1, 2, 3));
}

} // namespace
