#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>

#include "gui/drawing/MColor.h"

// The arithmetic of the colour operations, one struct each. Apply combines the source @p s, whose
// own alpha does not count, with the pixel @p d. @p a is the effective alpha from 0 to 255, in
// which coverage and transparency are one. All is in integers, so pixels are the same everywhere.

/// How an operation changes a pixel.
template <typename Op>
concept MPixelOp = requires(MPixel& d, const MPixel& s, int a)
{
    {
        Op::Apply(d, s, a)
    }
    noexcept->std::same_as<void>;
};

namespace pixels
{

constexpr std::uint8_t ToByte(int value) noexcept
{
    return static_cast<std::uint8_t>(value);
}

constexpr std::uint8_t Clamped(int value) noexcept
{
    return ToByte(std::clamp(value, 0, 255));
}

/// @p a of 255 leaves @p factor as it is.
constexpr int Scaled(int factor, int a) noexcept
{
    return ((factor + 1) * a) >> 8;
}

/// From @p d to @p x. Loses up to one step even at either end, which belongs to the look.
constexpr std::uint8_t Blend(int d, int x, int a) noexcept
{
    return ToByte((x * a + d * (255 - a)) >> 8);
}

constexpr int Largest(const MPixel& pixel) noexcept
{
    return std::max({pixel.red, pixel.green, pixel.blue});
}

/// d = change(d, s) for each of the three colours.
template <typename Change>
constexpr void ForColours(MPixel& d, const MPixel& s, Change change) noexcept
{
    d.red = change(d.red, s.red);
    d.green = change(d.green, s.green);
    d.blue = change(d.blue, s.blue);
}

/// The same with a blend to what @p target makes of d and s.
template <typename Target>
constexpr void BlendColours(MPixel& d, const MPixel& s, int a, Target target) noexcept
{
    ForColours(d, s, [=](int to, int from) { return Blend(to, target(to, from), a); });
}

/// Brings the largest colour of @p d to @p value and the others in proportion.
constexpr void ScaleTo(MPixel& d, int value) noexcept
{
    const int largest = Largest(d);
    ForColours(d, d,
               [=](int to, int) { return ToByte(largest == 0 ? value : to * value / largest); });
}

/// Hue, saturation and value. The hue runs from red through green (85) and blue (170), and wraps.
struct HueColour
{
    std::uint8_t hue = 0;
    std::uint8_t saturation = 0;
    std::uint8_t value = 0;

    constexpr explicit HueColour(const MPixel& pixel) noexcept : value(ToByte(Largest(pixel)))
    {
        const int range = value - std::min({pixel.red, pixel.green, pixel.blue});
        if (range == 0)
            return;
        saturation = ToByte(range * 255 / value);
        const auto part = [range](int from, int to) { return (from - to) * 255 / (6 * range); };
        if (value == pixel.red)
            hue = ToByte(part(pixel.green, pixel.blue));
        else if (value == pixel.green)
            hue = ToByte(part(pixel.blue, pixel.red) + 85);
        else
            hue = ToByte(part(pixel.red, pixel.green) + 170);
    }

    /// Without alpha.
    constexpr MPixel GetPixel() const noexcept
    {
        const auto of = [](int red, int green, int blue)
        { return MPixel{.blue = ToByte(blue), .green = ToByte(green), .red = ToByte(red)}; };
        const int v = value;
        if (saturation == 0)
            return of(v, v, v);

        const int turn = hue * 1530;
        const int f = (turn / 255) & 255;
        const auto part = [v](int share) { return (share * (v + 1)) >> 8; };
        const int low = part(255 - saturation);
        const int falling = part(255 - Scaled(saturation, f));
        const int rising = part(255 - Scaled(saturation, 255 - f));
        switch (turn / 65280)
        {
        case 0:
            return of(v, rising, low);
        case 1:
            return of(falling, v, low);
        case 2:
            return of(low, v, rising);
        case 3:
            return of(low, falling, v);
        case 4:
            return of(rising, low, v);
        default:
            return of(v, low, falling);
        }
    }
};

} // namespace pixels

struct MPixelOpAlphablend
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::BlendColours(d, s, a, [](int, int from) { return from; });
    }
};

struct MPixelOpModulate
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::BlendColours(d, s, a, pixels::Scaled);
    }
};

/// Replaces the whole pixel, also where nothing is covered.
struct MPixelOpCopy
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        d = s;
        d.alpha = pixels::ToByte(a);
    }
};

/// Blends, but into what is transparent; alpha adds up. For images that are themselves layers.
struct MPixelOpOverlay
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        if (d.alpha == 0)
            return MPixelOpCopy::Apply(d, s, a);
        MPixelOpAlphablend::Apply(d, s, a);
        d.alpha = pixels::Clamped(d.alpha + a);
    }
};

/// Takes the hue of the source.
struct MPixelOpColor
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::HueColour colour(d);
        colour.hue = pixels::HueColour(s).hue;
        pixels::BlendColours(d, colour.GetPixel(), a, [](int, int from) { return from; });
    }
};

struct MPixelOpInvert
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::BlendColours(d, s, a, [](int to, int) { return 255 - to; });
    }
};

struct MPixelOpAdd
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::ForColours(
            d, s, [a](int to, int from) { return pixels::Clamped(to + pixels::Scaled(from, a)); });
    }
};

struct MPixelOpSubtract
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::ForColours(
            d, s, [a](int to, int from) { return pixels::Clamped(to - pixels::Scaled(from, a)); });
    }
};

/// Raises the brightness by the one of the source.
struct MPixelOpLighten
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        const int added = pixels::Scaled(pixels::Largest(s), a);
        pixels::ScaleTo(d, std::min(255, pixels::Largest(d) + added));
    }
};

/// Lowers it by what the source lacks of white.
struct MPixelOpDarken
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        const int taken = pixels::Scaled(255 - pixels::Largest(s), a);
        pixels::ScaleTo(d, std::max(0, pixels::Largest(d) - taken));
    }
};

/// By how much the source is brighter; one-sided on purpose.
struct MPixelOpDifference
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::BlendColours(
            d, s, a, [](int to, int from) { return std::max(0, from - pixels::Scaled(to, 255)); });
    }
};

/// Contrast times 17 for a black source, down to 1 for a white one.
struct MPixelOpIncContrast
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::BlendColours(
            d, s, a,
            [](int to, int from)
            { return std::clamp(127 + (4335 - 16 * from) * (to - 127) / 255, 0, 255); });
    }
};

/// Contrast times 1 for a white source, down to flat grey for a black one.
struct MPixelOpDecContrast
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::BlendColours(d, s, a,
                             [](int to, int from)
                             { return std::clamp(127 + from * (to - 127) / 255, 0, 255); });
    }
};

/// Moves the white point down by the source.
struct MPixelOpLightenByContrast
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::ForColours(d, s,
                           [a](int to, int from)
                           {
                               const int k = pixels::Scaled(from, a);
                               return pixels::ToByte(k < 255 ? std::min(255, to * 255 / (255 - k))
                                                             : 255);
                           });
    }
};

/// Moves the black point up by what the source lacks of white.
struct MPixelOpDarkenByContrast
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int a) noexcept
    {
        pixels::ForColours(d, s,
                           [a](int to, int from)
                           {
                               const int k = pixels::Scaled(255 - from, a);
                               return k < 255 ? pixels::Clamped((to - k) * 255 / (255 - k))
                                              : std::uint8_t{0};
                           });
    }
};

/// Adds and wraps; neither alpha nor coverage counts.
struct MPixelOpAddAndOverflow
{
    static constexpr void Apply(MPixel& d, const MPixel& s, int /*a*/) noexcept
    {
        pixels::ForColours(d, s, [](int to, int from) { return pixels::ToByte(to + from); });
    }
};
