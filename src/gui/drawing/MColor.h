#pragma once

#include <cstdint>

/// The four channels of a pixel one by one, 0 to 255 each, not multiplied by alpha.
struct MPixel
{
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
    std::uint8_t alpha = 0; ///< 255 is opaque

    constexpr bool operator==(const MPixel&) const noexcept = default;
};

/// A colour, and a pixel as bitmaps store it: alpha in the bits 24 to 31, then red, green and blue,
/// which in memory are the bytes blue, green, red, alpha.
class MColor
{
public:
    /// Transparent black.
    constexpr MColor() noexcept = default;
    constexpr explicit MColor(std::uint32_t argb) noexcept : value(argb) {}
    /// Of each number the lower eight bits count.
    constexpr MColor(int red, int green, int blue, int alpha = 255) noexcept
        : value(Shifted(alpha, 24) | Shifted(red, 16) | Shifted(green, 8) | Shifted(blue, 0))
    {
    }
    /// Shifts instead of a cast of the bytes: those would go through memory.
    constexpr explicit MColor(const MPixel& pixel) noexcept
        : MColor(pixel.red, pixel.green, pixel.blue, pixel.alpha)
    {
    }

    constexpr std::uint32_t GetValue() const noexcept { return value; }
    constexpr std::uint8_t GetAlpha() const noexcept { return Byte(24); }
    constexpr std::uint8_t GetRed() const noexcept { return Byte(16); }
    constexpr std::uint8_t GetGreen() const noexcept { return Byte(8); }
    constexpr std::uint8_t GetBlue() const noexcept { return Byte(0); }
    constexpr MPixel GetPixel() const noexcept
    {
        return {.blue = Byte(0), .green = Byte(8), .red = Byte(16), .alpha = Byte(24)};
    }

    constexpr MColor WithAlpha(int alpha) const noexcept
    {
        return MColor((value & 0x00FFFFFFU) | Shifted(alpha, 24));
    }

    constexpr bool operator==(const MColor&) const noexcept = default;

private:
    static constexpr std::uint32_t Shifted(int channel, int bits) noexcept
    {
        return (static_cast<std::uint32_t>(channel) & 0xFFU) << bits;
    }
    constexpr std::uint8_t Byte(int bits) const noexcept
    {
        return static_cast<std::uint8_t>(value >> bits);
    }

    std::uint32_t value = 0;
};
static_assert(sizeof(MColor) == 4);
