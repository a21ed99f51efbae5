#pragma once

#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gui/drawing/MBitmap.h"
#include "gui/drawing/MDrawerToMBitmap.h"

constexpr MColor White(255, 255, 255);
constexpr MColor Black(0, 0, 0);

inline void PrintTo(const MColor& colour, std::ostream* out)
{
    *out << std::hex << colour.GetValue() << std::dec;
}

/// All operations that draw.
inline std::vector<MColorOp> AllOperations()
{
    std::vector<MColorOp> operations;
    for (int op = 1; op <= static_cast<int>(MColorOp::AddAndOverflow); ++op)
        operations.push_back(static_cast<MColorOp>(op));
    return operations;
}

/// Any pixels, always the same for a @p seed.
inline void FillWithNoise(MBitmap& bitmap, unsigned seed)
{
    std::mt19937 random(seed);
    if (bitmap.IsPaletted())
        for (MColor& colour : bitmap.GetPalette())
            colour = MColor(static_cast<std::uint32_t>(random()));
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            if (bitmap.IsPaletted())
                *bitmap.GetIndexRow(y, x) = static_cast<std::uint8_t>(random());
            else
                *bitmap.GetRow(y, x) = MColor(static_cast<std::uint32_t>(random()));
}

inline std::vector<MColor> PixelsOf(const MBitmap& bitmap)
{
    std::vector<MColor> pixels;
    for (int y = 0; y < bitmap.GetHeight(); ++y)
        for (int x = 0; x < bitmap.GetWidth(); ++x)
            pixels.push_back(bitmap.GetColor(x, y));
    return pixels;
}

/// A black bitmap on which white is added, so that a channel of a pixel is the coverage that it
/// got, or how often it was painted if 1 is added with overflow.
class Canvas
{
public:
    Canvas(int width, int height) : bitmap(width, height) {}

    int CoverageAt(int x, int y) const { return bitmap.GetColor(x, y).GetGreen(); }
    double Sum() const
    {
        double sum = 0.0;
        for (const MColor& pixel : PixelsOf(bitmap))
            sum += pixel.GetGreen();
        return sum;
    }
    /// Rows of characters: "." for nothing, "#" for full coverage, "+" between.
    std::vector<std::string> Picture() const
    {
        std::vector<std::string> rows;
        for (int y = 0; y < bitmap.GetHeight(); ++y)
        {
            rows.emplace_back();
            for (int x = 0; x < bitmap.GetWidth(); ++x)
                rows.back() += CoverageAt(x, y) == 0 ? '.' : CoverageAt(x, y) == 255 ? '#' : '+';
        }
        return rows;
    }
    int MostOften() const
    {
        int most = 0;
        for (const MColor& pixel : PixelsOf(bitmap))
            most = std::max<int>(most, pixel.GetGreen());
        return most;
    }

    MBitmap bitmap;
    MDrawerToMBitmap drawer{bitmap};
};

/// To count paintings with, by AddAndOverflow.
constexpr MColor One(1, 1, 1);
