// Draws anything anywhere: coordinates at the ends of 32 bits, inverted and empty rectangles, clips
// outside the bitmap, sources of all forms and sizes, operations that are none. Whatever comes,
// nothing outside the clip changes.

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "gui/drawing/FillBitmap.h"
#include "gui/drawing/MAlphaMask.h"
#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"

namespace
{

constexpr int Ends[] = {
    std::numeric_limits<int>::min(),
    std::numeric_limits<int>::min() + 1,
    std::numeric_limits<int>::max(),
    std::numeric_limits<int>::max() - 1,
    -65536,
    65536,
    -1,
    0,
};
constexpr double PreciseEnds[] = {1e308, -1e308, 1e18, -1e18, 1e-300, 0.0, -0.5, 2147483648.0};

void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

class Driver
{
public:
    explicit Driver(FuzzedDataProvider& source)
        : data(source),
          target(Side(), Side(), data.ConsumeIntegralInRange(0, 15) == 0),
          bitmap(Side(), Side(), data.ConsumeBool()),
          mask(Side(), Side())
    {
        if (bitmap.IsPaletted())
            bitmap.GetPalette().fill(MColor(data.ConsumeIntegral<std::uint32_t>()));
        for (int i = 0; i < mask.GetWidth() && i < mask.GetHeight(); ++i)
            mask.Set(i, i, data.ConsumeIntegral<std::uint8_t>());
        if (data.ConsumeBool())
            mask.Finish();
    }

    void Draw()
    {
        MDrawerToMBitmap onBitmap(target);
        MDrawer moved(&onBitmap, Coordinate(), Coordinate(), Coordinate(), Coordinate());
        while (data.remaining_bytes() > 0)
        {
            onBitmap.SetClipRect({Coordinate(), Coordinate(), Coordinate(), Coordinate()});
            const MRectangle clip = target.GetClip();
            MBitmap before;
            before.Assign(target);
            MDrawer& drawer = data.ConsumeBool() ? moved : onBitmap;
            for (int call = data.ConsumeIntegralInRange(1, 4); call > 0; --call)
                Call(drawer);
            for (int y = 0; y < target.GetHeight(); ++y)
                for (int x = 0; x < target.GetWidth(); ++x)
                    Require(clip.Contains(x, y) || target.GetColor(x, y) == before.GetColor(x, y));
        }
    }

private:
    int Side() { return data.ConsumeIntegralInRange(0, 40); }

    int Coordinate()
    {
        const auto choice = data.ConsumeIntegral<std::uint8_t>();
        if (choice < 224)
            return choice % 112 - 32;
        if (choice < 248)
            return Ends[choice % std::size(Ends)];
        return data.ConsumeIntegral<int>();
    }

    double PreciseCoordinate()
    {
        return data.ConsumeBool() ? Coordinate() * 0.37 : data.PickValueInArray(PreciseEnds);
    }

    std::vector<MPoint> Points()
    {
        std::vector<MPoint> points(data.ConsumeIntegralInRange<std::size_t>(0, 12));
        for (MPoint& point : points)
            point = {Coordinate(), Coordinate()};
        return points;
    }

    void Call(MDrawer& to)
    {
        const int x1 = Coordinate();
        const int y1 = Coordinate();
        const int x2 = Coordinate();
        const int y2 = Coordinate();
        const MColor colour(data.ConsumeIntegral<std::uint32_t>());
        const auto op = static_cast<MColorOp>(data.ConsumeIntegralInRange(0, 18));
        const auto part = [&](auto blit)
        { blit(Coordinate(), Coordinate(), Coordinate(), Coordinate()); };
        switch (data.ConsumeIntegralInRange(0, 20))
        {
        case 0:
            return part([&](auto... s) { to.PatBlt(x1, y1, x2, y2, &bitmap, s..., colour, op); });
        case 1:
            return to.BitBlt(x1, y1, x2, y2, &bitmap, Coordinate(), Coordinate(), colour, op);
        case 2:
            return to.MaskBlt(x1, y1, x2, y2, &mask, Coordinate(), Coordinate(), colour, op,
                              data.ConsumeBool());
        case 3:
            return part([&](auto... s)
                        { to.StretchBlt(x1, y1, x2, y2, &bitmap, s..., colour, op); });
        case 4:
            return part([&](auto... s)
                        { to.StretchBltH(x1, y1, x2, y2, &bitmap, s..., colour, op); });
        case 5:
            return part([&](auto... s)
                        { to.StretchBltV(x1, y1, x2, y2, &bitmap, s..., colour, op); });
        case 6:
            return part(
                [&](auto... s) {
                    to.AlignedBlt(x1, y1, x2, y2, &bitmap, s..., data.ConsumeIntegral<int>(),
                                  colour, op);
                });
        case 7:
            return FillBitmap(to, x1, y1, x2, y2, &bitmap,
                              static_cast<MBitmapFill>(data.ConsumeIntegralInRange(0, 3)), colour,
                              op);
        case 8:
            to.MoveTo(x1, y1);
            return to.LineTo(x2, y2, colour, op);
        case 9:
            to.MoveToF(PreciseCoordinate(), PreciseCoordinate());
            return to.LineToF(PreciseCoordinate(), PreciseCoordinate(), colour, op);
        case 10:
            return to.Rectangle(x1, y1, x2, y2, colour, op);
        case 11:
            return to.FillRectangle(x1, y1, x2, y2, colour, op);
        case 12:
            return to.FillRectangleGradient(x1, y1, x2, y2, colour, MColor(0, 0, 0),
                                            data.ConsumeBool(), op);
        case 13:
            return to.RoundRectangle(x1, y1, x2, y2, Coordinate(), colour, op);
        case 14:
            return to.FillRoundRectangle(x1, y1, x2, y2, Coordinate(), colour, op);
        case 15:
            return to.Circle(x1, y1, x2, colour, op);
        case 16:
            return to.FillCircle(x1, y1, x2, colour, op);
        case 17:
            return to.PolyLine(Points(), colour, op);
        case 18:
            return to.FillPolygon(Points(), colour, op);
        case 19:
            return to.SetPixel(x1, y1, colour);
        default:
            to.SetPixel(x1, y1, to.GetPixel(x2, y2));
        }
    }

    FuzzedDataProvider& data;
    MBitmap target;
    MBitmap bitmap;
    MAlphaMask mask;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Driver(data).Draw();
    return 0;
}
